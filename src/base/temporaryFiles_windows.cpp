// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/temporaryFiles.h"

#include <array>
#include <atomic>
#include <string>
#include <system_error>
#include <windows.h>

namespace telvo {

namespace {

// What the handler of console events reads has to live as long as the program. A name belongs to
// whoever takes it out of its place, so that handler and program never free it twice.
constexpr std::size_t MostNoted = 8192;
std::array<std::atomic<std::wstring*>, MostNoted> notedFiles;
std::atomic<std::size_t> nextPlace = 0;

BOOL WINAPI removeNotedFiles(DWORD) {
    for (auto& place : notedFiles)
        if (const std::wstring* path = place.exchange(nullptr)) ::DeleteFileW(path->c_str());
    return FALSE; // the next handler ends the program
}

} // namespace

void removeTemporaryFilesOnSignals() {
    ::SetConsoleCtrlHandler(removeNotedFiles, TRUE);
}

std::size_t noteTemporaryFile(const std::filesystem::path& path) {
    auto* const name = new std::wstring(path.wstring());
    for (std::size_t tried = 0; tried < MostNoted; ++tried) {
        const std::size_t place = nextPlace++ % MostNoted;
        std::wstring* free = nullptr;
        if (notedFiles[place].compare_exchange_strong(free, name)) return place;
    }
    delete name;
    return MostNoted;
}

void forgetTemporaryFile(std::size_t place) {
    if (place < MostNoted) delete notedFiles[place].exchange(nullptr);
}

namespace processes {

unsigned long processNumber() {
    return ::GetCurrentProcessId();
}

bool isRunning(unsigned long process) {
    const HANDLE handle = ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process);
    if (!handle) return ::GetLastError() == ERROR_ACCESS_DENIED;
    DWORD status = 0;
    const bool running = ::GetExitCodeProcess(handle, &status) && status == STILL_ACTIVE;
    ::CloseHandle(handle);
    return running;
}

unsigned processSpace() {
    wchar_t host[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    ::GetComputerNameW(host, &length);
    unsigned number = 2166136261u;
    for (const wchar_t* c = host; *c; ++c)
        number = (number ^ static_cast<unsigned>(*c)) * 16777619u;
    return number;
}

bool isOwnFile(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::symlink_status(path, error).type() ==
           std::filesystem::file_type::regular; // who may not remove it, does not
}

} // namespace processes

} // namespace telvo
