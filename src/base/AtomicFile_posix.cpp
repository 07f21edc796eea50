// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/AtomicFile.h"

#include "base/files.h"
#include "base/temporaryFiles.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#ifdef __linux__
#include <sys/xattr.h>
#endif

namespace telvo {

namespace fs = std::filesystem;

namespace {

std::string reason(int error) {
    return std::generic_category().message(error);
}

/// A descriptor that is closed with its scope.
class OpenedFile {
  public:
    explicit OpenedFile(int descriptor) : m_descriptor(descriptor) {}
    OpenedFile(const OpenedFile&) = delete;
    ~OpenedFile() {
        const int error = errno;
        if (m_descriptor >= 0) ::close(m_descriptor);
        errno = error;
    }
    explicit operator bool() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

  private:
    int m_descriptor;
};

/// The file that a name stands for.
struct Target {
    fs::path path;
    bool isNamed = false; ///< something has the name, if only a link
    bool isThere = false; ///< `old` describes it
    struct stat old {};
};

/// The name at the end of a chain of symbolic links that leads nowhere.
fs::path endOfLinks(fs::path path) {
    constexpr int deepest = 40;
    std::error_code error;
    for (int depth = 0; depth < deepest && fs::is_symlink(path, error); ++depth) {
        const fs::path next = fs::read_symlink(path, error);
        if (error) break;
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
    return path;
}

/// Given: target  with its path as the caller named it
/// Returned: 0, or the error that keeps the name from being used.
int findTarget(Target& target) {
    struct stat named {};
    if (::lstat(target.path.c_str(), &named) != 0) return errno == ENOENT ? 0 : errno;
    target.isNamed = true;
    if (!S_ISLNK(named.st_mode)) {
        target.isThere = true;
        target.old = named;
        return 0;
    }
    // The system goes first, for it may refuse: a stranger's link in a folder that all may write
    // to.
    if (::stat(target.path.c_str(), &target.old) != 0) {
        if (errno != ENOENT) return errno;
        target.path = endOfLinks(target.path);
        return ::lstat(target.path.c_str(), &named) == 0 ? ELOOP : 0;
    }
    target.isThere = true;
    if (!S_ISREG(target.old.st_mode)) return 0;
    std::error_code error;
    target.path = fs::canonical(target.path, error);
    const bool same = !error && ::lstat(target.path.c_str(), &named) == 0 &&
                      named.st_dev == target.old.st_dev && named.st_ino == target.old.st_ino;
    return same ? 0 : ESTALE; // changed under our hands
}

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

/// Opens what is no regular file. It does not wait for a reader, for which nobody may be there.
int openDirectly(const fs::path& path) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor >= 0) ::fcntl(descriptor, F_SETFL, O_WRONLY);
    return descriptor;
}

#ifdef __linux__
constexpr const char* AccessList = "system.posix_acl_access";

/// Gives a file the extended attributes of another one, its access list among them.
/// Returned: whether all that users set could be given.
bool copyAttributes(const fs::path& from, int to) {
    // A folder may have given a new file an access list that the old one did not have.
    ::fremovexattr(to, AccessList);
    const ssize_t room = ::listxattr(from.c_str(), nullptr, 0);
    if (room <= 0) return true; // none, or a file system without them
    std::string names(static_cast<std::size_t>(room), '\0');
    const ssize_t listed = ::listxattr(from.c_str(), names.data(), names.size());
    bool all = listed >= 0;
    for (std::size_t at = 0; all && at < static_cast<std::size_t>(listed);) {
        const std::string name = names.c_str() + at;
        at += name.size() + 1;
        const ssize_t size = ::getxattr(from.c_str(), name.c_str(), nullptr, 0);
        std::string value(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
        const ssize_t got = ::getxattr(from.c_str(), name.c_str(), value.data(), value.size());
        const bool copied = got >= 0 && ::fsetxattr(to, name.c_str(), value.data(),
                                                    static_cast<std::size_t>(got), 0) == 0;
        // Others than these belong to the system, which labels the new file itself.
        if (!copied && (name == AccessList || name.starts_with("user."))) all = false;
    }
    return all;
}
#else
bool copyAttributes(const fs::path&, int) {
    return true;
}
#endif

/// Gives the new file what the old one has besides its content. Returned: whether its permissions
/// could be given, without which there is no replacing.
bool takeOver(const Target& target, int to, std::vector<std::string>& remarks) {
    const struct stat& old = target.old;
    mode_t mode = old.st_mode & 07777;
    if (::fchown(to, old.st_uid, old.st_gid) != 0) {
        remarks.emplace_back("the file was another user's and is yours now");
        if (::fchown(to, static_cast<uid_t>(-1), old.st_gid) != 0) {
            // The rights of one group are not those of another.
            mode &= static_cast<mode_t>(~(S_IRWXG | S_ISUID | S_ISGID));
            remarks.emplace_back("its group could not be kept and has no rights now");
        }
    }
    const bool attributes = copyAttributes(target.path, to);
    if (!attributes) remarks.emplace_back("its access list or attributes could not all be kept");
    if (old.st_nlink > 1)
        remarks.push_back("the file has " + std::to_string(old.st_nlink) +
                          " names (hard links); the others keep what it held before");
    // With an access list the mode is part of it already.
    struct stat now {};
    if (attributes && ::fstat(to, &now) == 0 && (now.st_mode & 07777) == mode) return true;
    return ::fchmod(to, mode) == 0;
}

/// Writes all that one file holds over the start of another, and cuts that one there.
bool overwrite(int to, int from) {
    std::array<char, 65536> block;
    off_t at = 0;
    for (;;) {
        const ssize_t got = ::pread(from, block.data(), block.size(), at);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return false;
        if (got == 0) break;
        for (ssize_t done = 0; done < got;) {
            const ssize_t written =
                ::pwrite(to, block.data() + done, static_cast<std::size_t>(got - done), at);
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) return false;
            done += written;
            at += written;
        }
    }
    return ::ftruncate(to, at) == 0 && ::fsync(to) == 0;
}

/// While it lives no signal ends the program.
class SignalsHeld {
  public:
    SignalsHeld() {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_BLOCK, &all, &m_before);
    }
    SignalsHeld(const SignalsHeld&) = delete;
    ~SignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

  private:
    sigset_t m_before;
};

/// Gives a file a name that nothing has. Returned: 0 or the error, EEXIST for a name that is taken.
int placeNew(const fs::path& from, const fs::path& to) {
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
#endif
    if (::link(from.c_str(), to.c_str()) == 0) {
        ::unlink(from.c_str());
        return 0;
    }
    if (errno == EEXIST) return errno;
    // A file system without links. Who makes an empty file of the name has the name.
    const OpenedFile made(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!made) return errno;
    if (::rename(from.c_str(), to.c_str()) == 0) return 0;
    const int error = errno;
    ::unlink(to.c_str());
    return error;
}

/// Errors of a folder that takes no new file, or none in the place of the old one.
bool forbidsReplacing(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == EXDEV;
}

} // namespace

Fault AtomicFile::fault(std::string_view step) const {
    return {"cannot be written: " + std::string(step) + reason(errno), m_name};
}

Fault AtomicFile::exists() const {
    return {"the file exists", m_name};
}

bool AtomicFile::openTemporary(const fs::path& folder, bool secret) {
    const std::string name = m_target.filename().string();
    for (int count = 0; count < 10000; ++count) {
        m_temporary = folder / temporaryName(name, count);
        m_slot = noteTemporaryFile(m_temporary);
        m_descriptor = ::open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                              secret ? 0600 : 0666);
        if (m_descriptor >= 0) return true;
        const int error = errno;
        forgetTemporaryFile(std::exchange(m_slot, NoSlot));
        m_temporary.clear();
        errno = error;
        if (error != EEXIST) return false;
    }
    return false;
}

Result<AtomicFile> AtomicFile::create(const std::string& path, Existing existing) {
    AtomicFile file;
    file.m_name = path;
    file.m_existing = existing;
    if (path.empty()) return Fault{"no file name is given", ""};
    if (path.find('\0') != std::string::npos)
        return Fault{"the file name holds a NUL character", path.substr(0, path.find('\0'))};
    Target target;
    target.path = pathFromUtf8(path);
    errno = findTarget(target);
    if (errno != 0) return file.fault("");
    file.m_target = target.path;

    if (target.isThere && S_ISDIR(target.old.st_mode))
        return Fault{"cannot be written: it is a directory", path};
    if (target.isThere && (S_ISCHR(target.old.st_mode) || S_ISFIFO(target.old.st_mode))) {
        file.m_descriptor = openDirectly(target.path);
        if (file.m_descriptor >= 0) return file;
        if (errno == ENXIO) return Fault{"cannot be written: nobody reads from this pipe", path};
        return file.fault("");
    }
    if (target.isThere && !S_ISREG(target.old.st_mode))
        return Fault{"cannot be written: it is no regular file", path};
    if (target.isNamed && existing == Existing::Refuse) return file.exists();
    // Replacing needs no right to write the old file; a write-protected case stays protected.
    if (target.isThere && ::access(target.path.c_str(), W_OK) != 0) return file.fault("");

    if (file.openTemporary(folderOf(target.path), target.isThere)) {
        if (target.isThere && !takeOver(target, file.m_descriptor, file.m_remarks))
            return file.fault("its permissions: ");
        return file;
    }
    std::error_code error;
    file.m_inPlace = target.isThere && forbidsReplacing(errno);
    if (file.m_inPlace && file.openTemporary(fs::temp_directory_path(error), true)) return file;
    return file.fault("no temporary file beside it: ");
}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : m_name(std::move(other.m_name)), m_target(std::move(other.m_target)),
      m_temporary(std::exchange(other.m_temporary, {})), m_remarks(std::move(other.m_remarks)),
      m_slot(std::exchange(other.m_slot, NoSlot)),
      m_descriptor(std::exchange(other.m_descriptor, -1)), m_existing(other.m_existing),
      m_inPlace(other.m_inPlace) {}

AtomicFile::~AtomicFile() {
    if (m_descriptor >= 0) ::close(m_descriptor);
    removeTemporary();
}

void AtomicFile::removeTemporary() {
    if (!m_temporary.empty()) ::unlink(m_temporary.c_str());
    m_temporary.clear();
    forgetTemporaryFile(std::exchange(m_slot, NoSlot));
}

Status AtomicFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(m_descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return fault("");
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return success();
}

Status AtomicFile::close() {
    if (isClosed() || ::close(std::exchange(m_descriptor, -1)) == 0) return success();
    return fault("");
}

Status AtomicFile::flush(const fs::path& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
#ifdef __linux__
    const bool flushed = descriptor >= 0 && ::syncfs(descriptor) == 0;
#else
    const bool flushed = descriptor >= 0;
    ::sync();
#endif
    const int error = errno;
    if (descriptor >= 0) ::close(descriptor);
    if (flushed) return success();
    return Fault{"cannot be written: " + reason(error), utf8FromPath(folder)};
}

Status AtomicFile::commit() {
    const bool direct = m_temporary.empty();
    const bool flushed = isClosed(); // with its folder, by the caller
    if (!flushed && !direct && ::fsync(m_descriptor) != 0) return fault("");
    if (const Status closed = close(); !closed) return closed.fault();
    if (direct) return success();
    if (m_inPlace) return writeInPlace();

    int error = 0;
    if (m_existing == Existing::Refuse)
        error = placeNew(m_temporary, m_target);
    else if (::rename(m_temporary.c_str(), m_target.c_str()) != 0)
        error = errno;
    if (error == EEXIST && m_existing == Existing::Refuse) return exists();
    if (m_existing == Existing::Replace && forbidsReplacing(error)) return writeInPlace();
    errno = error;
    if (error != 0) return fault("");
    m_temporary.clear();
    forgetTemporaryFile(std::exchange(m_slot, NoSlot));
    if (flushed) return success();
    // The new name is on the disk only after its folder is. The case itself is whole by now, so a
    // file system that cannot flush a folder is no failed save.
    const OpenedFile folder(::open(folderOf(m_target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder) ::fsync(folder.get());
    return success();
}

Status AtomicFile::writeInPlace() {
    const OpenedFile source(::open(m_temporary.c_str(), O_RDONLY | O_CLOEXEC));
    const OpenedFile target(::open(m_target.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    struct stat before {
    }, after{};
    if (!source || !target || ::fstat(source.get(), &after) != 0 ||
        ::fstat(target.get(), &before) != 0)
        return fault("");
    if (!S_ISREG(before.st_mode)) return Fault{"cannot be written: it is no regular file", m_name};

    // What it holds now is kept apart until the new content is on the disk, and the disk has room
    // for that before the first byte is changed.
    std::error_code error;
    std::string kept = utf8FromPath(fs::temp_directory_path(error) / "telvo-before-XXXXXX");
    const OpenedFile copy(::mkostemp(kept.data(), O_CLOEXEC));
    if (!copy) return fault("no copy of it can be kept meanwhile: ");
    const bool longer = after.st_size > before.st_size;
    const bool ready = overwrite(copy.get(), target.get());
    errno = ready && longer ? ::posix_fallocate(target.get(), 0, after.st_size) : errno;
    if (!ready || (longer && errno != 0 && errno != EOPNOTSUPP && errno != EINVAL)) {
        const Fault none = fault("");
        if (ready && ::ftruncate(target.get(), before.st_size) == 0) ::unlink(kept.c_str());
        if (!ready) ::unlink(kept.c_str());
        return none;
    }
    const SignalsHeld held;
    if (!overwrite(target.get(), source.get())) {
        Fault failed = fault("");
        if (overwrite(target.get(), copy.get()))
            ::unlink(kept.c_str());
        else
            failed.message += "; what it held before is in " + kept;
        return failed;
    }
    ::unlink(kept.c_str());
    removeTemporary();
    m_remarks.clear(); // it still is the old file
    m_remarks.emplace_back("was written where it is: its folder takes no other file in its place");
    return success();
}

} // namespace telvo
