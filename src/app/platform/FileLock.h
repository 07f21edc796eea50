// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <string>

namespace telvo::app {

/// A lock between running programs, held as long as the object lives; the end of a program frees
/// it. The lock file stays and says nothing.
class FileLock {
  public:
    /// Waits for a program that holds the lock, at most `patience`. Where no lock can be had, as in
    /// a folder that cannot be written, the object holds none.
    explicit FileLock(const std::string& path,
                      std::chrono::milliseconds patience = std::chrono::seconds{2});
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool held() const { return m_held; }

  private:
#ifdef _WIN32
    void* m_file = nullptr;
#else
    int m_file = -1;
#endif
    bool m_held = false;
};

} // namespace telvo::app
