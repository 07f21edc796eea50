// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <utility>
#include <windows.h>

namespace telvo {

namespace fs = std::filesystem;

Fault AtomicFile::fault(std::string_view step) const {
    const std::error_code error(static_cast<int>(::GetLastError()), std::system_category());
    return {"cannot be written: " + std::string(step) + error.message(), m_name};
}

Result<AtomicFile> AtomicFile::create(const std::string& path) {
    AtomicFile file;
    file.m_name = path;
    if (path.empty()) return Fault{"no file name is given", ""};
    std::error_code error;
    file.m_target = pathFromUtf8(path);
    if (const fs::path real = fs::canonical(file.m_target, error); !error) file.m_target = real;
    if (fs::is_directory(file.m_target, error))
        return Fault{"cannot be written: it is a directory", path};
    const DWORD attributes = ::GetFileAttributesW(file.m_target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY))
        return Fault{"cannot be written: it is write-protected", path};

    // The process number keeps two programs apart, the count two saves of this one.
    for (int count = 0; count < 100 && file.m_descriptor < 0; ++count) {
        fs::path temporary = file.m_target;
        temporary +=
            "." + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(count) + ".tmp";
        if (_wsopen_s(&file.m_descriptor, temporary.c_str(),
                      // Who asks for the path may write to it: workbooks are written so.
                      _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _SH_DENYNO,
                      _S_IREAD | _S_IWRITE) == 0)
            file.m_temporary = temporary;
    }
    if (file.m_descriptor < 0) return file.fault("no temporary file beside it: ");
    return file;
}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : m_name(std::move(other.m_name)), m_target(std::move(other.m_target)),
      m_temporary(std::exchange(other.m_temporary, {})),
      m_descriptor(std::exchange(other.m_descriptor, -1)) {}

AtomicFile::~AtomicFile() {
    if (m_descriptor >= 0) _close(m_descriptor);
    if (!m_temporary.empty()) ::DeleteFileW(m_temporary.c_str());
}

Status AtomicFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        constexpr std::size_t most = std::size_t{1} << 30;
        const auto size = static_cast<unsigned>(bytes.size() < most ? bytes.size() : most);
        const int written = _write(m_descriptor, bytes.data(), size);
        if (written < 0) return fault("");
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return success();
}

Status AtomicFile::close() {
    if (isClosed()) return success();
    // There is no cheaper way to know that the bytes of several files are on the disk.
    if (_commit(m_descriptor) != 0) return fault("");
    if (_close(std::exchange(m_descriptor, -1)) != 0) return fault("");
    return success();
}

Status AtomicFile::flush(const fs::path&) {
    return success(); // close() has seen to it
}

Status AtomicFile::commit() {
    if (const Status closed = close(); !closed) return closed.fault();
    // ReplaceFileW keeps the attributes and rights of the old file; it needs one to replace.
    const bool replaced = ::ReplaceFileW(m_target.c_str(), m_temporary.c_str(), nullptr,
                                         REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) ||
                          ::MoveFileExW(m_temporary.c_str(), m_target.c_str(),
                                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    if (!replaced) return fault("");
    m_temporary.clear();
    return success();
}

} // namespace telvo
