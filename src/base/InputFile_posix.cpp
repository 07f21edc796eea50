// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/InputFile.h"

#include "base/files.h"

#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace telvo {

namespace {

Fault cannotBeRead(const std::string& path, int error) {
    if (error == ENOENT || error == ENOTDIR) return {"Requested File not found: " + path, ""};
    return {"cannot be read: " + std::generic_category().message(error), path};
}

/// The descriptor that a name such as /dev/fd/3 stands for, which the caller of the program has
/// opened; negative for other names.
int handedOver(std::string_view path) {
    if (path == "/dev/stdin") return STDIN_FILENO;
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
        if (!path.starts_with(folder)) continue;
        const auto digits = path.substr(folder.size());
        int descriptor = -1;
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), descriptor);
        if (error == std::errc() && end == digits.data() + digits.size()) return descriptor;
    }
    return -1;
}

/// Why a file is not read; an empty text for one that is.
std::string_view refusalOf(const struct stat& file, std::string_view path) {
    if (S_ISDIR(file.st_mode)) return "cannot be read: it is a directory";
    if (S_ISREG(file.st_mode) || handedOver(path) >= 0) return {};
    return S_ISFIFO(file.st_mode) || S_ISSOCK(file.st_mode)
               ? "cannot be read: it is a pipe, not a file"
               : "cannot be read: it is a device, not a file";
}

} // namespace

Result<InputFile> InputFile::open(const std::string& path) {
    InputFile input;
    input.m_name = path;
    const auto file = pathFromUtf8(path);
    struct stat info {};
    // Asked before it is opened: opening alone makes whoever waits at a pipe believe in a reader.
    if (::stat(file.c_str(), &info) != 0) return cannotBeRead(path, errno);
    if (const auto refusal = refusalOf(info, path); !refusal.empty())
        return Fault{std::string(refusal), path};
    // Some files of the system wait for what comes next; nothing here is waited for.
    const bool regular = S_ISREG(info.st_mode);
    const int given = handedOver(path);
    // A pipe with a name whose writer has ended would not open a second time.
    input.m_handle =
        !regular && given >= 0
            ? ::fcntl(given, F_DUPFD_CLOEXEC, 0)
            : ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | (regular ? O_NONBLOCK : 0));
    if (input.m_handle < 0) return cannotBeRead(path, errno);
    if (::fstat(static_cast<int>(input.m_handle), &info) != 0) return cannotBeRead(path, errno);
    if (const auto refusal = refusalOf(info, path); !refusal.empty())
        return Fault{std::string(refusal), path};
    input.m_size = regular ? static_cast<std::uint64_t>(info.st_size) : 0;
    return input;
}

InputFile::InputFile(InputFile&& other) noexcept
    : m_name(std::move(other.m_name)), m_size(other.m_size),
      m_handle(std::exchange(other.m_handle, -1)) {}

InputFile::~InputFile() {
    if (m_handle >= 0) ::close(static_cast<int>(m_handle));
}

Result<std::size_t> InputFile::read(char* into, std::size_t most) {
    for (;;) {
        const ssize_t got = ::read(static_cast<int>(m_handle), into, most);
        if (got >= 0) return static_cast<std::size_t>(got);
        if (errno != EINTR) return cannotBeRead(m_name, errno);
    }
}

} // namespace telvo
