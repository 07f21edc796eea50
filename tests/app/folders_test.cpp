// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/folders.h"

#include "app/reminders.h"
#include "base/TemporaryFolder.h"
#include "RecordedMessages.h"

#include <gtest/gtest.h>

namespace telvo::app {
namespace {

namespace fs = std::filesystem;

TEST(Folders, LieInTheDocumentsOrElseOnTheDesktopOrElseBesideTheProgram) {
    const test::TemporaryFolder folder;
    const std::string documents = folder.root + "documents", desktop = folder.root + "desktop";
    fs::create_directory(documents);
    fs::create_directory(desktop);
    for (const std::string ending : {"", "/"}) {
        const Folders folders = resolveFolders({folder.root, documents + ending, desktop});
        EXPECT_EQ(folders.DataFolder, documents + "/MyBODRA/");
        EXPECT_EQ(folders.TempDataFolder, documents + "/MyBODRA/Temp/");
        EXPECT_TRUE(fs::is_directory(folders.TempDataFolder) && folders.fallbacks.empty());
    }
    EXPECT_EQ(resolveFolders({folder.root, "", desktop}).DataFolder, desktop + "/MyBODRA/");
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
    EXPECT_EQ(installFolder(program), program);
    fs::create_directories(folder.root + "usr/share/telvo");
    EXPECT_EQ(installFolder(program), program) << "an empty folder is not an installation";
    folder.put("usr/share/telvo/a.tlv", "");
    EXPECT_EQ(installFolder(program), folder.root + "usr/share/telvo/");
    folder.put("usr/bin/TELVO.PDF", "");
    EXPECT_EQ(installFolder(program + "/"), program + "/");

    fs::create_directories(folder.root + "build/dev/src/app/ui");
    fs::create_directories(folder.root + "build/dev/docs");
    folder.put("build/dev/docs/TELVO.PDF", "");
    EXPECT_EQ(installFolder(folder.root + "build/dev/src/app/ui"), folder.root + "build/dev/docs/");
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

TEST(UpdateReminder, IsDueAfter360Days) {
    using namespace std::chrono;
    EXPECT_FALSE(isUpdateReminderDue(2014y / August / 15)); // 360 days
    EXPECT_TRUE(isUpdateReminderDue(2014y / August / 16));
}

} // namespace
} // namespace telvo::app
