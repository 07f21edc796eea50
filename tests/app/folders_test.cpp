// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/folders.h"

#include "app/leftFiles.h"
#include "app/reminders.h"
#include "base/TemporaryFolder.h"
#include "RecordedMessages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace telvo::app {
namespace {

namespace fs = std::filesystem;

/// A path in one way of writing it, on Windows too.
std::string slashed(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

TEST(Folders, LieInTheDocumentsOrElseOnTheDesktopOrElseBesideTheProgram) {
    const test::TemporaryFolder folder;
    const std::string documents = folder.root + "documents", desktop = folder.root + "desktop";
    fs::create_directory(documents);
    fs::create_directory(desktop);
    for (const std::string ending : {"", "/"}) {
        const Folders folders = resolveFolders({folder.root, documents + ending, desktop});
        EXPECT_EQ(slashed(folders.DataFolder), slashed(documents + "/MyBODRA/"));
        EXPECT_EQ(slashed(folders.TempDataFolder), slashed(documents + "/MyBODRA/Temp/"));
        EXPECT_TRUE(fs::is_directory(folders.TempDataFolder) && folders.fallbacks.empty());
    }
    EXPECT_EQ(slashed(resolveFolders({folder.root, "", desktop}).DataFolder),
              slashed(desktop + "/MyBODRA/"));
    const Folders none = resolveFolders({folder.root, {}, {}});
    EXPECT_EQ(none.DataFolder, none.InstallFolder);
    EXPECT_EQ(none.fallbacks.size(), 1U);

    folder.put("file", "");
    const Folders blocked = resolveFolders({folder.root, folder.root + "file", {}});
    EXPECT_EQ(blocked.DataFolder, folder.root);
    EXPECT_EQ(blocked.TempDataFolder, folder.root);
    EXPECT_EQ(blocked.fallbacks.size(), 2U);
}

TEST(InstallFolder, IsBesideTheProgramOrInItsPrefixOrInTheBuildTree) {
    const test::TemporaryFolder folder;
    const std::string program = folder.root + "usr/bin";
    fs::create_directories(program);
    EXPECT_EQ(slashed(installFolder(program)), slashed(program));
    fs::create_directories(folder.root + "usr/share/telvo");
    EXPECT_EQ(slashed(installFolder(program)), slashed(program))
        << "an empty folder is not an installation";
    folder.put("usr/share/telvo/a.tlv", "");
    EXPECT_EQ(slashed(installFolder(program)), slashed(folder.root + "usr/share/telvo/"));
    folder.put("usr/bin/TELVO.PDF", "");
    EXPECT_EQ(slashed(installFolder(program + "/")), slashed(program + "/"));

    fs::create_directories(folder.root + "build/dev/src/app/ui");
    fs::create_directories(folder.root + "build/dev/docs");
    folder.put("build/dev/docs/TELVO.PDF", "");
    EXPECT_EQ(slashed(installFolder(folder.root + "build/dev/src/app/ui")),
              slashed(folder.root + "build/dev/docs/"));
}

TEST(Examples, AreCopiedWhereMissingAndNeverOverAChangedOne) {
    const test::TemporaryFolder folder;
    fs::create_directory(folder.root + "documents");
    folder.put("a.TLV", "one\ntwo");
    folder.put("b.tlv", "b\r\n");
    folder.put("changed.TLV", "shipped\r\n");
    folder.put(".hidden.TLV", "");
    folder.put("readme.txt", "");
    fs::create_directory(folder.root + "folder.TLV");
    const Folders folders = resolveFolders({folder.root, folder.root + "documents", {}});
    folder.put("documents/MyBODRA/changed.TLV", "mine");
    test::RecordedMessages messages;
    copyExampleFiles(folders, messages);
    EXPECT_EQ(folder.content("documents/MyBODRA/a.TLV"), "one\r\ntwo\r\n");
    EXPECT_EQ(folder.content("documents/MyBODRA/b.tlv"), "b\r\n");
    EXPECT_EQ(folder.content("documents/MyBODRA/changed.TLV"), "mine");
    EXPECT_EQ(std::distance(fs::directory_iterator(folders.DataFolder), {}), 4); // with Temp
    EXPECT_TRUE(messages.lines.empty());
    EXPECT_FALSE(copyTextFile(folder.root + "no", folder.root + "x", messages));
    EXPECT_EQ(messages.lines.back(), "Message: Requested File not found: " + folder.root + "no");
}

TEST(LeftFiles, GoAtTheNextStartWithoutHarmToOthers) {
    const test::TemporaryFolder folder;
    const Folders folders = resolveFolders({folder.root, folder.root, {}});
    const auto put = [&](const std::string& name) {
        folder.put("MyBODRA/" + name, "");
        fs::last_write_time(folders.DataFolder + name,
                            fs::file_time_type::clock::now() - std::chrono::hours(25));
    };
    const std::vector<std::string> left = {".TELVO.INI.999999999-0.tmp",
                                           "Temp/.~recovery-1-2.tmp.999999999-0-1.tmp",
                                           "TELVO-windows.ini.aB3xYz"};
    const std::vector<std::string> kept = {"TELVO-windows.ini",
                                           "TELVO-windows.ini.lock",
                                           "TELVO-windows.ini.backup",
                                           "TELVO-windows.ini.Backup",
                                           "a.tmp",
                                           "Temp/~recovery-1-2.tmp"};
    for (const auto* names : {&left, &kept})
        std::for_each(names->begin(), names->end(), put);
    folder.put("MyBODRA/TELVO-windows.ini.QmvU41", ""); // another program is about to write it
    removeLeftFiles(folders, "TELVO-windows.ini");
    for (const std::string& name : left)
        EXPECT_FALSE(fs::exists(folders.DataFolder + name)) << name;
    for (const std::string& name : kept)
        EXPECT_TRUE(fs::exists(folders.DataFolder + name)) << name;
    EXPECT_TRUE(fs::exists(folders.DataFolder + "TELVO-windows.ini.QmvU41"));
}

TEST(UpdateReminder, IsDueAfter360Days) {
    using namespace std::chrono;
    EXPECT_FALSE(isUpdateReminderDue(2014y / August / 15)); // 360 days
    EXPECT_TRUE(isUpdateReminderDue(2014y / August / 16));
}

} // namespace
} // namespace telvo::app
