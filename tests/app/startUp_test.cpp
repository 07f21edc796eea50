// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/startUp.h"

#include "base/TemporaryFolder.h"
#include "RecordedDialogs.h"
#include "RecordedMessages.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace telvo::app {
namespace {

using namespace std::chrono;

struct StartUp : testing::Test {
    test::TemporaryFolder folder;
    test::RecordedMessages messages;
    test::RecordedDialogs dialogs;
    Folders folders{folder.root, folder.root, folder.root, {"No documents folder"}};
    SettingsStore settings{folder.root + "TELVO.INI", {folder.root, "", "", "TELVO"}, messages};
};

TEST_F(StartUp, ReadsTheSettingsButChoosesRoundingAnew) {
    folder.put("TELVO.INI", "[Version]\r\nINIFileVersion=050817\r\n[Settings]\r\n"
                            "MaxDisplaySize=5000\r\n[TELVOOptions]\r\nRoundTELVOSF=2\r\n");
    prepareStart(folders, "windows.ini", settings, messages);
    EXPECT_EQ(messages.lines.front(), "No documents folder");
    EXPECT_EQ(settings.values().MaxDisplaySize, 5000);
    EXPECT_EQ(settings.values().RoundTELVOSF, 0);
    EXPECT_FALSE(settingsTrouble(settings, folders));
}

TEST_F(StartUp, TellsWhySettingsAreGone) {
    std::filesystem::create_directory(folder.root + "TELVO.INI");
    prepareStart(folders, "windows.ini", settings, messages);
    const auto trouble = settingsTrouble(settings, folders);
    ASSERT_TRUE(trouble);
    EXPECT_TRUE(trouble->starts_with("The settings file cannot be used. "));
    EXPECT_TRUE(trouble->ends_with("are not kept.\nNo documents folder."));
}

TEST_F(StartUp, BoxesComeAsTheSettingsWantThem) {
    Settings wanted;
    wanted.ShowDisclaim = wanted.RemindAnnualUpdates = 1;
    EXPECT_TRUE(firstBoxes(wanted, 2014y / 8 / 16).disclaimer);
    EXPECT_TRUE(firstBoxes(wanted, 2014y / 8 / 16).updateReminder); // 361 days after the release
    EXPECT_FALSE(firstBoxes(wanted, 2014y / 8 / 15).updateReminder);
    wanted.ShowDisclaim = wanted.RemindAnnualUpdates = 0;
    EXPECT_FALSE(firstBoxes(wanted, 2024y / 1 / 1).disclaimer);
    EXPECT_FALSE(firstBoxes(wanted, 2024y / 1 / 1).updateReminder);
}

TEST_F(StartUp, TheFileOfTheCommandLineIsLeftOpen) {
    const std::string last = TELVO_EXAMPLES_DIR "/deep-cover.TLV";
    const std::string given = TELVO_EXAMPLES_DIR "/two-side-gobs.TLV";
    ProjectSession session(settings, messages, dialogs);
    openFirstFiles(session, settings.values(), {});
    EXPECT_TRUE(session.isUntouched());
    ASSERT_TRUE(session.LoadProjFile(last));
    session.FileNew();
    settings.values().LoadLastInputFile = 0;
    openFirstFiles(session, settings.values(), {});
    EXPECT_TRUE(session.isUntouched());
    settings.values().LoadLastInputFile = 1;
    openFirstFiles(session, settings.values(), {});
    EXPECT_EQ(session.project().FileName, last);
    openFirstFiles(session, settings.values(), given);
    EXPECT_EQ(session.project().FileName, given);
    EXPECT_EQ(settings.values().RecentFiles[1].LastFileLong, last);
}

} // namespace
} // namespace telvo::app
