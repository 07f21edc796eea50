// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/temporaryFiles.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace telvo {

namespace {

// What a signal handler reads has to live as long as the program. A name belongs to whoever takes
// it out of its place, so that handler and program never free it twice.
constexpr std::size_t MostNoted = 8192;
std::array<std::atomic<char*>, MostNoted> notedFiles;
std::atomic<std::size_t> nextPlace = 0;
static_assert(std::atomic<char*>::is_always_lock_free);

extern "C" void removeNotedFiles(int signal) {
    const int error = errno;
    for (auto& place : notedFiles)
        if (const char* path = place.exchange(nullptr)) ::unlink(path);
    errno = error;
    ::raise(signal); // which now ends the program as if it had not been handled
}

} // namespace

void removeTemporaryFilesOnSignals() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
        struct sigaction now {};
        if (::sigaction(signal, nullptr, &now) != 0 || now.sa_handler != SIG_DFL) continue;
        now.sa_handler = removeNotedFiles;
        now.sa_flags = static_cast<int>(SA_RESETHAND);
        ::sigaction(signal, &now, nullptr);
    }
    // A file that grows past the limit of the shell is an error of writing, not the end.
    std::signal(SIGXFSZ, SIG_IGN);
}

std::size_t noteTemporaryFile(const std::filesystem::path& path) {
    char* const name = ::strdup(path.c_str());
    for (std::size_t tried = 0; name && tried < MostNoted; ++tried) {
        const std::size_t place = nextPlace++ % MostNoted;
        char* free = nullptr;
        if (notedFiles[place].compare_exchange_strong(free, name)) return place;
    }
    std::free(name);
    return MostNoted;
}

void forgetTemporaryFile(std::size_t place) {
    if (place < MostNoted) std::free(notedFiles[place].exchange(nullptr));
}

namespace processes {

unsigned long processNumber() {
    return static_cast<unsigned long>(::getpid());
}

bool isRunning(unsigned long process) {
    return ::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
}

unsigned processSpace() {
    // Machine and, in a container, its own count of processes; both may share a folder with others.
    char host[256] = {};
    ::gethostname(host, sizeof host - 1);
    unsigned number = 2166136261u;
    for (const char c : std::string_view(host))
        number = (number ^ static_cast<unsigned char>(c)) * 16777619u;
    struct stat own {};
    if (::stat("/proc/self/ns/pid", &own) == 0)
        number = (number ^ static_cast<unsigned>(own.st_ino)) * 16777619u;
    return number;
}

bool isOwnFile(const std::filesystem::path& path) {
    struct stat file {};
    return ::lstat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) && file.st_uid == ::geteuid();
}

} // namespace processes

} // namespace telvo
