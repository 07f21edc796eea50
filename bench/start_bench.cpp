// SPDX-License-Identifier: GPL-3.0-or-later
//
// start_bench [RUNS]: time from the start of a process to its painted main window and its largest
// resident memory, of TELVO and of an empty Qt window of the same shape, in turns.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct Run {
    double milliseconds = 0;
    double megabytes = 0;
};

Run run(const std::string& program) {
    int ends[2];
    if (pipe(ends) != 0) std::exit(1);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string name = program;
    char* arguments[] = {name.data(), nullptr};
    pid_t child = 0;
    const auto start = std::chrono::steady_clock::now();
    if (posix_spawn(&child, program.c_str(), &actions, nullptr, arguments, environ) != 0)
        std::exit(1);
    close(ends[1]);
    char byte = 0;
    const bool shown = read(ends[0], &byte, 1) == 1;
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    close(ends[0]);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    posix_spawn_file_actions_destroy(&actions);
    if (!shown || status != 0) {
        std::fprintf(stderr, "%s did not show its window\n", program.c_str());
        std::exit(1);
    }
    return {time.count(), static_cast<double>(usage.ru_maxrss) / 1024};
}

void print(const char* name, std::vector<Run> runs) {
    std::sort(runs.begin(), runs.end(),
              [](const Run& a, const Run& b) { return a.milliseconds < b.milliseconds; });
    double most = 0;
    for (const Run& one : runs)
        most = std::max(most, one.megabytes);
    std::printf("%-14s min %6.1f  median %6.1f  max %6.1f ms   at most %5.1f MB\n", name,
                runs.front().milliseconds, runs[runs.size() / 2].milliseconds,
                runs.back().milliseconds, most);
}

} // namespace

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20;
    const fs::path folder = fs::canonical("/proc/self/exe").parent_path();
    const fs::path home = fs::temp_directory_path() / ("telvo-start-" + std::to_string(getpid()));
    fs::create_directories(home / "Documents/MyBODRA/Temp");
    std::ofstream(home / "Documents/MyBODRA/TELVO.INI")
        << "[Version]\nINIFileVersion=050817\n[Settings]\nDisplayHistoryWin=1\n"
           "EnableMainMenuToolbar=1\n";
    setenv("HOME", home.c_str(), 1);
    unsetenv("XDG_CONFIG_HOME");
    std::vector<Run> empty, telvo;
    for (int i = 0; i < count; ++i) {
        empty.push_back(run(folder / "empty_window"));
        telvo.push_back(run(folder / "telvo_start"));
    }
    print("empty window", empty);
    print("TELVO", telvo);
    fs::remove_all(home);
}
