// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include "base/temporaryFiles.h"
#include "base/TemporaryFolder.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace telvo;
using telvo::test::TemporaryFolder;
namespace fs = std::filesystem;

namespace {

/// Exit status of a child process, negative when a signal ended it; killed after a while if asked.
template <typename Work>
int inChild(Work work, useconds_t killAfter = 0) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(work());
    if (killAfter > 0) ::usleep(killAfter), ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

TEST(ReadFile, GivesEveryByteOrNamesTheFile) {
    const TemporaryFolder folder;
    const std::string bytes = std::string(100'000, 'x') + std::string("\0\r\n\x1A\xFF", 5);
    const std::string path = folder.put("Fl\xC3\xB6z.TLV", bytes);
    const auto read = readFile(path);
    ASSERT_TRUE(read) << faultText(read.fault());
    EXPECT_EQ(*read, bytes);

    for (const std::string& missing : {folder.root + "missing.TLV", path + "/below.TLV"})
        EXPECT_EQ(faultText(readFile(missing).fault()), "Requested File not found: " + missing);
    EXPECT_EQ(faultText(readFile(folder.root).fault()),
              folder.root + ": cannot be read: it is a directory");
    EXPECT_FALSE(readFile(path + std::string("\0.TLV", 5))) << "opened what stands before the NUL";
}

TEST(ReadFile, WaitsForNoPipeAndAsksForTheSizeFirst) {
    const TemporaryFolder folder;
    const std::string pipe = folder.root + "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(faultText(readFile(pipe).fault()),
              pipe + ": cannot be read: it is a pipe, not a file");
    EXPECT_EQ(readFile("/dev/zero").fault().message, "cannot be read: it is a device, not a file");

    const std::string huge = folder.put("huge", "");
    fs::resize_file(huge, std::uintmax_t{1} << 40); // a hole: nothing of it is on the disk
    EXPECT_EQ(readFile(huge).fault().message, "is larger than 256 MB");
    const std::string large = folder.put("large", std::string((1 << 20) + 1, 'x'));
    EXPECT_TRUE(readFile(large));
    EXPECT_EQ(readFile(large, 1 << 20).fault().message, "is larger than 1 MB");
    EXPECT_EQ(readFile(folder.put("full", std::string(1 << 20, 'x')), 1 << 20)->size(), 1u << 20);

    // What the caller of a program hands over is read, though it is a pipe.
    int ends[2] = {};
    ASSERT_EQ(::pipe(ends), 0);
    ASSERT_EQ(::write(ends[1], "case", 4), 4);
    ::close(ends[1]);
    EXPECT_EQ(*readFile("/dev/fd/" + std::to_string(ends[0])), "case");
    ::close(ends[0]);
}

TEST(WithoutFolder, KnowsTheFoldersOfAllSystems) {
    EXPECT_EQ(withoutFolder("/cases/a b.TLV"), "a b.TLV");
    EXPECT_EQ(withoutFolder("C:\\cases/\xC3\x84.TLV"), "\xC3\x84.TLV");
    EXPECT_EQ(withoutFolder("Untitled"), "Untitled");
    EXPECT_EQ(withoutFolder("/cases/"), "");
}

TEST(AtomicFile, ReplacesItsTargetOnlyOnCommit) {
    const TemporaryFolder folder;
    const std::string path = folder.put("case.TLV", "old");
    {
        auto file = AtomicFile::create(path);
        ASSERT_TRUE(file) << faultText(file.fault());
        EXPECT_TRUE(file->write("half"));
        EXPECT_EQ(folder.content("case.TLV"), "old");
    }
    EXPECT_EQ(folder.content("case.TLV"), "old");
    ASSERT_TRUE(writeFile(path, "new"));
    EXPECT_EQ(folder.content("case.TLV"), "new");
    EXPECT_EQ(faultText(writeFile(folder.root, "x").fault()),
              folder.root + ": cannot be written: it is a directory");
    EXPECT_EQ(writeFile(folder.root + "no/case", "x").fault().where, folder.root + "no/case");
    EXPECT_EQ(folder.fileCount(), 1) << "no temporary file stays";
}

TEST(AtomicFile, KilledAtAnyMomentLeavesOneOfTheTwoTextsWhole) {
    const TemporaryFolder folder;
    const std::string a(300'000, 'a');
    const std::string b(200'000, 'b');
    const std::string path = folder.put("case.TLV", a);
    const auto killedHalfWay = [&] {
        auto file = AtomicFile::create(path);
        return file && file->write("half") ? ::raise(SIGKILL) : 1;
    };
    EXPECT_EQ(inChild(killedHalfWay), -1);
    EXPECT_EQ(folder.content("case.TLV"), a);
    // The later rounds run longer: on a slow disk the first end before the first save does.
    bool replaced = false;
    for (int round = 0; round < 30 || !replaced; ++round) {
        const auto save = [&] {
            while (writeFile(path, b) && writeFile(path, a)) {
            }
            return 1;
        };
        ASSERT_EQ(inChild(save, static_cast<useconds_t>(500 + 20 * round * round)), -1);
        const std::string left = folder.content("case.TLV");
        ASSERT_TRUE(left == a || left == b) << "round " << round << ": " << left.size();
        replaced = replaced || left == b;
    }
}

TEST(AtomicFile, FullDiskIsAFaultAndLeavesTheOldFileWhole) {
    const TemporaryFolder folder;
    const std::string path = folder.put("case.TLV", "old");
    const auto save = [&] {
        // No file may grow beyond one page: writing fails as it does on a full disk.
        const rlimit limit{4096, 4096};
        std::signal(SIGXFSZ, SIG_IGN);
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
        const auto written = writeFile(path, std::string(100'000, 'n'));
        return !written && written.fault().where == path ? 0 : 1;
    };
    EXPECT_EQ(inChild(save), 0);
    EXPECT_EQ(folder.content("case.TLV"), "old");
    EXPECT_EQ(folder.fileCount(), 1) << "no temporary file stays";
}

TEST(AtomicFile, FollowsLinksAndKeepsPermissions) {
    const TemporaryFolder folder;
    fs::create_directory(folder.root + "store");
    const std::string path = folder.put("store/case.TLV", "old");
    ::chmod(path.c_str(), 0640);
    fs::create_symlink("case.TLV", folder.root + "store/second");
    fs::create_symlink("store/second", folder.root + "first");
    fs::create_symlink("store/made.TLV", folder.root + "dangling");
    ASSERT_TRUE(writeFile(folder.root + "first", "new"));
    ASSERT_TRUE(writeFile(folder.root + "dangling", "made"));
    EXPECT_EQ(folder.content("store/case.TLV"), "new");
    EXPECT_EQ(folder.content("store/made.TLV"), "made");
    for (const char* link : {"first", "store/second", "dangling"})
        EXPECT_TRUE(fs::is_symlink(folder.root + link)) << link;
    EXPECT_EQ(fs::status(path).permissions(), static_cast<fs::perms>(0640));
}

TEST(AtomicFile, WriteProtectedOrSecretFilesAreRefused) {
    if (::geteuid() == 0) GTEST_SKIP() << "root passes every permission";
    const TemporaryFolder folder;
    ::chmod(folder.put("protected", "old").c_str(), 0444);
    ::chmod(folder.put("secret", "old").c_str(), 0);
    EXPECT_FALSE(writeFile(folder.root + "protected", "new"));
    EXPECT_EQ(readFile(folder.root + "secret").fault().where, folder.root + "secret");
}

TEST(AtomicFile, OfManyThatMakeANewFileOneWins) {
    const TemporaryFolder folder;
    for (int round = 0; round < 10; ++round) {
        const std::string path = folder.root + std::to_string(round);
        std::vector<pid_t> writers;
        for (int i = 0; i < 8; ++i) {
            writers.push_back(::fork());
            if (writers.back() != 0) continue;
            const Status made = writeFile(path, std::to_string(i), Existing::Refuse);
            const bool right = made || faultText(made.fault()) == path + ": the file exists";
            ::_exit(!right ? 100 : made ? i : 50);
        }
        int winners = 0, winner = -1;
        for (const pid_t writer : writers) {
            int status = 0;
            ::waitpid(writer, &status, 0);
            ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) <= 50);
            if (WEXITSTATUS(status) == 50) continue;
            winner = WEXITSTATUS(status);
            ++winners;
        }
        EXPECT_EQ(winners, 1) << round;
        EXPECT_EQ(folder.content(std::to_string(round)), std::to_string(winner));
    }
    EXPECT_EQ(folder.fileCount(), 10) << "no temporary file stays";

    fs::create_symlink("nowhere", folder.root + "dangling");
    EXPECT_FALSE(writeFile(folder.root + "dangling", "x", Existing::Refuse));
    EXPECT_FALSE(fs::exists(folder.root + "nowhere"));
    EXPECT_TRUE(writeFile("/dev/null", "x", Existing::Refuse)) << "nothing to lose there";
}

TEST(AtomicFile, KeepsAttributesAndTellsOfOtherNames) {
    const TemporaryFolder folder;
    const std::string path = folder.put("case.TLV", "old");
    // Access list as the system stores it: version 2; the owner rw-, user 12345 ---, the group r--,
    // the mask r--, others r--.
    const char list[] = "\x02\0\0\0"
                        "\x01\0\x06\0\xFF\xFF\xFF\xFF"
                        "\x02\0\0\0\x39\x30\0\0"
                        "\x04\0\x04\0\xFF\xFF\xFF\xFF"
                        "\x10\0\x04\0\xFF\xFF\xFF\xFF"
                        "\x20\0\x04\0\xFF\xFF\xFF\xFF";
    const std::string access(list, sizeof list - 1);
    if (::setxattr(path.c_str(), "user.seam", "No. 5", 5, 0) != 0 ||
        ::setxattr(path.c_str(), "system.posix_acl_access", access.data(), access.size(), 0) != 0)
        GTEST_SKIP() << "a file system without attributes";
    std::vector<std::string> remarks;
    ASSERT_TRUE(writeFile(path, "new", Existing::Replace, &remarks));
    EXPECT_TRUE(remarks.empty());
    char value[256] = {};
    EXPECT_EQ(::getxattr(path.c_str(), "user.seam", value, sizeof value), 5);
    EXPECT_STREQ(value, "No. 5");
    const auto size = ::getxattr(path.c_str(), "system.posix_acl_access", value, sizeof value);
    EXPECT_EQ(std::string(value, size > 0 ? static_cast<std::size_t>(size) : 0), access);

    fs::create_hard_link(path, folder.root + "second");
    ASSERT_TRUE(writeFile(path, "newer", Existing::Replace, &remarks));
    ASSERT_EQ(remarks.size(), 1u);
    EXPECT_EQ(remarks[0], "the file has 2 names (hard links); the others keep what it held before");
    EXPECT_EQ(folder.content("second"), "new");
}

TEST(AtomicFile, WritesInPlaceWhereOnlyTheFileMayBeWritten) {
    const TemporaryFolder folder;
    const std::string path = folder.put("case.TLV", std::string(100'000, 'o'));
    const std::string secondName = folder.root + "second";
    fs::create_hard_link(path, secondName);
    constexpr uid_t nobody = 65534;
    const bool root = ::geteuid() == 0;
    if (root && ::chown(path.c_str(), nobody, nobody) != 0) GTEST_SKIP();
    ::chmod(folder.root.c_str(), 0555);
    const auto save = [&] {
        if (root && ::setuid(nobody) != 0) return 3;
        for (const std::size_t size : {300'000, 10}) { // longer, then shorter
            std::vector<std::string> remarks;
            if (!writeFile(path, std::string(size, 'n'), Existing::Replace, &remarks)) return 1;
            if (remarks.size() != 1 || !remarks[0].starts_with("was written where it is")) return 2;
        }
        return writeFile(folder.root + "new", "x") ? 4 : 0;
    };
    EXPECT_EQ(inChild(save), 0);
    ::chmod(folder.root.c_str(), 0755);
    EXPECT_EQ(folder.content("second"), std::string(10, 'n')) << "it still is the same file";
    EXPECT_EQ(folder.fileCount(), 2);

    // A disk that fills up on the way leaves what was there.
    ::chmod(folder.root.c_str(), 0555);
    const auto fill = [&] {
        if (root && ::setuid(nobody) != 0) return 3;
        removeTemporaryFilesOnSignals();
        const rlimit limit{200'000, 200'000};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
        return writeFile(path, std::string(250'000, 'x')) ? 1 : 0;
    };
    EXPECT_EQ(inChild(fill), 0);
    ::chmod(folder.root.c_str(), 0755);
    EXPECT_EQ(folder.content("second"), std::string(10, 'n'));
}

TEST(AtomicFile, AStrangersLinkInASharedFolderIsLeftToTheSystem) {
    std::string answer;
    std::getline(std::ifstream("/proc/sys/fs/protected_symlinks"), answer);
    if (::geteuid() != 0 || answer != "1") GTEST_SKIP() << "needs root and protected links";
    const TemporaryFolder folder;
    const std::string own = folder.put("own", "mine");
    fs::create_directory(folder.root + "shared");
    ::chmod((folder.root + "shared").c_str(), 01777);
    for (const char* name : {"own", "missing"}) {
        const std::string link = folder.root + "shared/" + name;
        fs::create_symlink("../" + std::string(name), link);
        ASSERT_EQ(::lchown(link.c_str(), 65534, 65534), 0);
        EXPECT_FALSE(writeFile(link, "theirs")) << name;
    }
    EXPECT_EQ(folder.content("own"), "mine");
    EXPECT_EQ(folder.fileCount(), 2);
}

TEST(TemporaryFiles, ASignalRemovesThem) {
    const TemporaryFolder folder;
    const auto interrupted = [&](int signal) {
        return [&folder, signal] {
            removeTemporaryFilesOnSignals();
            auto first = AtomicFile::create(folder.root + "first");
            auto second = AtomicFile::create(folder.root + "second");
            if (!first || !second || !first->write("half") || !second->close()) return 1;
            if (folder.fileCount() != 2) return 2;
            ::raise(signal);
            return 3;
        };
    };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        EXPECT_EQ(inChild(interrupted(signal)), -1) << "it still ends the program";
        EXPECT_EQ(folder.fileCount(), 0) << signal;
    }
    const auto ignored = [&] {
        std::signal(SIGHUP, SIG_IGN); // as nohup does
        return interrupted(SIGHUP)();
    };
    EXPECT_EQ(inChild(ignored), 3);
}

TEST(TemporaryFiles, ThoseOfEndedProgramsGoWithTheNextWrite) {
    const TemporaryFolder folder;
    const auto killed = [&] {
        auto file = AtomicFile::create(folder.root + std::string(255, 'x'));
        return file ? ::raise(SIGKILL) : 1;
    };
    EXPECT_EQ(inChild(killed), -1);
    ASSERT_EQ(folder.fileCount(), 1);
    // Files that are none of ours, one whose program runs, and one of another machine, which may.
    for (const std::string& name : {std::string(".vim.tmp"), std::string("x.1-0.tmp"),
                                    std::string(".1-0.tmp"), temporaryName("running", 0)})
        folder.put(name, "");
    const std::string strange = folder.put(".case.TLV.999999999-0-1.tmp", "");
    ASSERT_TRUE(writeFile(folder.root + "case.TLV", "case"));
    EXPECT_EQ(folder.fileCount(), 6) << "all but the left one, and the new case";
    fs::last_write_time(strange, fs::file_time_type::clock::now() - std::chrono::hours(25));
    EXPECT_EQ(removeLeftTemporaryFiles(folder.root), 1u);
    EXPECT_FALSE(fs::exists(strange));
}
