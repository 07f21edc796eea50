// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include "base/TemporaryFolder.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
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
