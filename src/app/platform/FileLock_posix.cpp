// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FileLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace telvo::app {

FileLock::FileLock(const std::string& path, std::chrono::milliseconds patience) {
    m_file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    if (m_file < 0) return;
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!(m_held = ::flock(m_file, LOCK_EX | LOCK_NB) == 0)) {
        const bool busy = errno == EWOULDBLOCK || errno == EINTR;
        if (!busy || std::chrono::steady_clock::now() >= end) return;
        std::this_thread::sleep_for(std::chrono::milliseconds{5});
    }
}

FileLock::~FileLock() {
    if (m_file >= 0) ::close(m_file);
}

} // namespace telvo::app
