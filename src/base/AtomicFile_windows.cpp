// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/AtomicFile.h"

#include "base/files.h"
#include "base/temporaryFiles.h"

#include <cstdint>
#include <fcntl.h>
#include <io.h>
#include <string>
#include <system_error>
#include <utility>
#include <windows.h>

namespace telvo {

namespace fs = std::filesystem;

Fault AtomicFile::fault(std::string_view step) const {
    const std::error_code error(static_cast<int>(::GetLastError()), std::system_category());
    return {"cannot be written: " + std::string(step) + error.message(), m_name};
}

Fault AtomicFile::exists() const {
    return {"the file exists", m_name};
}

bool AtomicFile::openTemporary(const fs::path& folder, bool) {
    const std::string name = utf8FromPath(m_target.filename());
    for (int count = 0; count < 10000; ++count) {
        m_temporary = folder / pathFromUtf8(temporaryName(name, count));
        m_slot = noteTemporaryFile(m_temporary);
        // Who asks for the path may write to it: workbooks are written so. A signal removes it.
        const HANDLE handle = ::CreateFileW(m_temporary.c_str(), GENERIC_WRITE,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                            nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle != INVALID_HANDLE_VALUE) {
            m_descriptor =
                _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_WRONLY | _O_BINARY);
            return m_descriptor >= 0;
        }
        const DWORD error = ::GetLastError();
        forgetTemporaryFile(std::exchange(m_slot, NoSlot));
        m_temporary.clear();
        ::SetLastError(error);
        if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS) return false;
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
    std::error_code error;
    file.m_target = pathFromUtf8(path);
    const bool isNamed =
        fs::symlink_status(file.m_target, error).type() != fs::file_type::not_found;
    if (const fs::path real = fs::canonical(file.m_target, error); !error) file.m_target = real;
    if (fs::is_directory(file.m_target, error))
        return Fault{"cannot be written: it is a directory", path};
    if (isNamed && existing == Existing::Refuse) return file.exists();
    const DWORD attributes = ::GetFileAttributesW(file.m_target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY))
        return Fault{"cannot be written: it is write-protected", path};
    const fs::path folder = file.m_target.has_parent_path() ? file.m_target.parent_path() : ".";
    if (!file.openTemporary(folder, false)) return file.fault("no temporary file beside it: ");
    return file;
}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : m_name(std::move(other.m_name)), m_target(std::move(other.m_target)),
      m_temporary(std::exchange(other.m_temporary, {})), m_remarks(std::move(other.m_remarks)),
      m_slot(std::exchange(other.m_slot, NoSlot)),
      m_descriptor(std::exchange(other.m_descriptor, -1)), m_existing(other.m_existing),
      m_inPlace(other.m_inPlace) {}

AtomicFile::~AtomicFile() {
    if (m_descriptor >= 0) _close(m_descriptor);
    removeTemporary();
}

void AtomicFile::removeTemporary() {
    if (!m_temporary.empty()) ::DeleteFileW(m_temporary.c_str());
    m_temporary.clear();
    forgetTemporaryFile(std::exchange(m_slot, NoSlot));
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
    bool done = false;
    if (m_existing == Existing::Refuse) {
        done = ::MoveFileExW(m_temporary.c_str(), m_target.c_str(), MOVEFILE_WRITE_THROUGH);
        const DWORD error = ::GetLastError();
        if (!done && (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS)) return exists();
    } else {
        // ReplaceFileW keeps the attributes and rights of the old file; it needs one to replace.
        done = ::ReplaceFileW(m_target.c_str(), m_temporary.c_str(), nullptr,
                              REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) ||
               ::MoveFileExW(m_temporary.c_str(), m_target.c_str(),
                             MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    }
    if (!done) return fault("");
    m_temporary.clear();
    forgetTemporaryFile(std::exchange(m_slot, NoSlot));
    return success();
}

} // namespace telvo
