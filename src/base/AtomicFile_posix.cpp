// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace telvo {

namespace fs = std::filesystem;

namespace {

std::string reason(int error) {
    return std::generic_category().message(error);
}

/// The file at the end of a chain of symbolic links; the last link's text when it leads nowhere.
fs::path followLinks(fs::path path) {
    constexpr int deepest = 40;
    std::error_code error;
    for (int depth = 0; depth < deepest && fs::is_symlink(path, error); ++depth) {
        const fs::path next = fs::read_symlink(path, error);
        if (error) break;
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
    return path;
}

} // namespace

Fault AtomicFile::fault(std::string_view step) const {
    return {"cannot be written: " + std::string(step) + reason(errno), m_name};
}

Result<AtomicFile> AtomicFile::create(const std::string& path) {
    AtomicFile file;
    file.m_name = path;
    if (path.empty()) return Fault{"no file name is given", ""};
    if (path.find('\0') != std::string::npos)
        return Fault{"the file name holds a NUL character", path.substr(0, path.find('\0'))};
    file.m_target = followLinks(pathFromUtf8(path));

    struct stat old {};
    if (::lstat(file.m_target.c_str(), &old) == 0 && S_ISLNK(old.st_mode)) {
        errno = ELOOP;
        return file.fault("");
    }
    const bool exists = ::stat(file.m_target.c_str(), &old) == 0;
    if (exists && S_ISDIR(old.st_mode)) return Fault{"cannot be written: it is a directory", path};
    if (exists && !S_ISREG(old.st_mode)) {
        file.m_descriptor = ::open(file.m_target.c_str(), O_WRONLY | O_CLOEXEC);
        if (file.m_descriptor < 0) return file.fault("");
        return file;
    }
    // Replacing needs no right to write the old file; a write-protected case stays protected.
    if (exists && ::access(file.m_target.c_str(), W_OK) != 0) return file.fault("");

    const fs::path folder = file.m_target.has_parent_path() ? file.m_target.parent_path() : ".";
    // Only part of the name is kept: a longest possible name leaves no room for the rest.
    const std::string stem = "." + file.m_target.filename().string().substr(0, 100) + ".";
    // The process number keeps two programs apart, the count two saves of this one.
    for (int count = 0; count < 100 && file.m_descriptor < 0; ++count) {
        const fs::path temporary =
            folder / (stem + std::to_string(::getpid()) + "-" + std::to_string(count) + ".tmp");
        file.m_descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                                   exists ? 0600 : 0666);
        if (file.m_descriptor >= 0)
            file.m_temporary = temporary;
        else if (errno != EEXIST)
            break;
    }
    if (file.m_descriptor < 0) return file.fault("no temporary file beside it: ");
    if (exists) {
        // Best effort: only root may give a file away, and the owner mostly is the same.
        [[maybe_unused]] const int given = ::fchown(file.m_descriptor, old.st_uid, old.st_gid);
        if (::fchmod(file.m_descriptor, old.st_mode & 07777) != 0)
            return file.fault("its permissions: ");
    }
    return file;
}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : m_name(std::move(other.m_name)), m_target(std::move(other.m_target)),
      m_temporary(std::exchange(other.m_temporary, {})),
      m_descriptor(std::exchange(other.m_descriptor, -1)) {}

AtomicFile::~AtomicFile() {
    if (m_descriptor >= 0) ::close(m_descriptor);
    if (!m_temporary.empty()) ::unlink(m_temporary.c_str());
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

    if (::rename(m_temporary.c_str(), m_target.c_str()) != 0) return fault("");
    m_temporary.clear();
    if (flushed) return success();
    // The new name is on the disk only after its folder is. The case itself is whole by now, so a
    // file system that cannot flush a folder is no failed save.
    const fs::path folder = m_target.has_parent_path() ? m_target.parent_path() : ".";
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
    return success();
}

} // namespace telvo
