// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/InputFile.h"

#include "base/files.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <windows.h>

namespace telvo {

namespace {

HANDLE handleOf(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

Fault cannotBeRead(const std::string& path) {
    const DWORD error = ::GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND)
        return {"Requested File not found: " + path, ""};
    const std::error_code code(static_cast<int>(error), std::system_category());
    return {"cannot be read: " + code.message(), path};
}

} // namespace

Result<InputFile> InputFile::open(const std::string& path) {
    InputFile input;
    input.m_name = path;
    const auto file = pathFromUtf8(path);
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        return Fault{"cannot be read: it is a directory", path};
    const HANDLE handle =
        ::CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                      OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return cannotBeRead(path);
    input.m_handle = reinterpret_cast<std::intptr_t>(handle);
    if (::GetFileType(handle) != FILE_TYPE_DISK)
        return Fault{"cannot be read: it is a device, not a file", path};
    LARGE_INTEGER size = {};
    if (!::GetFileSizeEx(handle, &size)) return cannotBeRead(path);
    input.m_size = static_cast<std::uint64_t>(size.QuadPart);
    return input;
}

InputFile::InputFile(InputFile&& other) noexcept
    : m_name(std::move(other.m_name)), m_size(other.m_size),
      m_handle(std::exchange(other.m_handle, -1)) {}

InputFile::~InputFile() {
    if (m_handle != -1) ::CloseHandle(handleOf(m_handle));
}

Result<std::size_t> InputFile::read(char* into, std::size_t most) {
    DWORD got = 0;
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(most, std::size_t{1} << 30));
    if (!::ReadFile(handleOf(m_handle), into, wanted, &got, nullptr)) return cannotBeRead(m_name);
    return static_cast<std::size_t>(got);
}

} // namespace telvo
