// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FileLock.h"

#include "base/files.h"

#include <windows.h>

namespace telvo::app {

FileLock::FileLock(const std::string& path, std::chrono::milliseconds patience) {
    const auto name = pathFromUtf8(path);
    const auto end = std::chrono::steady_clock::now() + patience;
    while (true) {
        // Opened for one program alone, the file is the lock.
        const HANDLE file = ::CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                          OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        m_held = file != INVALID_HANDLE_VALUE;
        if (m_held) {
            m_file = file;
            return;
        }
        const bool busy = ::GetLastError() == ERROR_SHARING_VIOLATION;
        if (!busy || std::chrono::steady_clock::now() >= end) return;
        ::Sleep(5);
    }
}

FileLock::~FileLock() {
    if (m_held) ::CloseHandle(m_file);
}

} // namespace telvo::app
