// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ProjectSession.h"

#include "app/History.h"
#include "app/recovery.h"
#include "base/TemporaryFolder.h"
#include "project/CaseFile.h"
#include "project/units.h"
#include "RecordedDialogs.h"
#include "RecordedMessages.h"

#include <gtest/gtest.h>

namespace telvo::app {
namespace {

namespace fs = std::filesystem;

/// A session with its settings in a temporary folder.
struct ProjectSessionTest : testing::Test {
    test::TemporaryFolder folder;
    test::RecordedMessages messages;
    test::RecordedDialogs dialogs;
    SettingsStore settings{folder.root + "TELVO.INI", {folder.root, "", "", "TELVO"}, messages};
    ProjectSession session{settings, messages, dialogs};

    std::string example(const std::string& name) {
        fs::copy_file(TELVO_EXAMPLES_DIR "/" + name, folder.root + name);
        return folder.root + name;
    }
    void edit(double height = 7) {
        project::ProjectInput in = session.project().Input;
        in.EntryHeight = height;
        session.acceptParameters(in);
    }
    bool wasAsked(const std::string& text) const {
        return !messages.asked.empty() && messages.asked.back().find(text) != std::string::npos;
    }
};

TEST_F(ProjectSessionTest, NewIsEmptyAndSavedUntilParametersAreAccepted) {
    session.FileNew();
    EXPECT_TRUE(session.isEmpty() && session.isSaved());
    EXPECT_EQ(session.windowTitle(), "Untitled");
    EXPECT_EQ(messages.lastStatus(), "File initialized. Use Edit-Project Parameters to enter data");
    EXPECT_FALSE(session.acceptParameters(session.project().Input)); // nothing was changed
    EXPECT_TRUE(session.isSaved());
    EXPECT_FALSE(session.isEmpty());
    edit();
    EXPECT_EQ(session.windowTitle(), "Untitled*");
}

TEST_F(ProjectSessionTest, UnsavedChangesAreAskedForBeforeTheyGo) {
    const std::string path = example("two-side-gobs.TLV");
    ASSERT_TRUE(session.LoadProjFile(path));
    edit();
    // The dialog comes first; its Cancel asks nothing.
    EXPECT_FALSE(session.openCommand());
    EXPECT_EQ(dialogs.asked.back(), "Open Project File|" + folder.root + "|TLV Files (*.TLV)");
    EXPECT_TRUE(messages.asked.empty());
    // Yes saves first; a save that is declined keeps the case.
    messages.answers = {Answer::Yes, Answer::No};
    folder.put("two-side-gobs.TLV", "changed by another program");
    EXPECT_FALSE(session.newCommand());
    EXPECT_TRUE(wasAsked("changed on disk"));
    EXPECT_FALSE(session.isSaved());
    EXPECT_EQ(folder.content("two-side-gobs.TLV"), "changed by another program");
    // No lets it go.
    messages.answers = {Answer::No};
    EXPECT_TRUE(session.newCommand());
    EXPECT_TRUE(wasAsked("Save changes to: " + path + "?"));
    EXPECT_EQ(session.displayName(), "Untitled");

    edit();
    messages.answers = {Answer::Cancel};
    EXPECT_FALSE(session.mayClose());
    messages.answers = {Answer::Yes}; // untitled goes to Save As, which is cancelled
    EXPECT_FALSE(session.mayClose());
    messages.answers = {Answer::Yes};
    dialogs.answers = {folder.root + "mine.TLV"};
    EXPECT_TRUE(session.mayClose());
    EXPECT_TRUE(fs::exists(folder.root + "mine.TLV"));
}

TEST_F(ProjectSessionTest, WhatDoesNotOpenLeavesTheCase) {
    const std::string path = example("two-side-gobs.TLV");
    ASSERT_TRUE(session.LoadProjFile(path));
    const project::ProjectCase before = session.project();
    EXPECT_FALSE(session.LoadProjFile(folder.root + "missing.TLV"));
    EXPECT_EQ(messages.asked.back(),
              "Message: Requested File not found: " + folder.root + "missing.TLV");
    EXPECT_FALSE(session.LoadProjFile(folder.put("other.TLV", "something else\n1\n2\n")));
    EXPECT_TRUE(wasAsked("Invalid file format"));
    EXPECT_FALSE(session.LoadProjFile(folder.put("binary.TLV", std::string(5000, '\0'))));
    EXPECT_FALSE(session.LoadProjFile(folder.root)); // a folder
    EXPECT_EQ(session.project(), before);
    EXPECT_TRUE(session.isSaved());
    EXPECT_EQ(settings.values().MaxLastFiles, 1);
}

TEST_F(ProjectSessionTest, ImportsAreUntitledAndNotInTheRecentList) {
    ASSERT_TRUE(session.LoadProjFile(example("two-side-gobs.TLV")));
    const project::ProjectCase before = session.project();
    edit();
    const std::string sibling =
        folder.put("mine.KRV", "KORV data\r\n" + folder.content("two-side-gobs.TLV") + "tail\r\n");
    // The dialog first, then the question; No lets the changes go.
    EXPECT_FALSE(session.importCommand());
    EXPECT_EQ(dialogs.asked.back(),
              "Import KORV Project Files|" + folder.root + "|KRV Files (*.KRV)");
    dialogs.answers = {sibling};
    messages.answers = {Answer::No};
    EXPECT_TRUE(session.importCommand());
    EXPECT_EQ(session.windowTitle(), "Untitled*");
    EXPECT_EQ(session.project().Input, before.Input);
    EXPECT_EQ(session.open().Working, before.Input);
    EXPECT_EQ(settings.values().MaxLastFiles, 1);
    EXPECT_FALSE(session.LoadKORVFile(folder.put("none.KRV", "nothing\n")));
    EXPECT_TRUE(wasAsked("Invalid file format"));
    EXPECT_EQ(session.project().Input, before.Input);
    // A save asks for a name; the sibling's file is not replaced.
    EXPECT_FALSE(session.FileMenuSave(false));
    EXPECT_NE(dialogs.asked.back().find("Save Project As|" + folder.root + "Untitled"),
              std::string::npos);
}

TEST_F(ProjectSessionTest, ADamagedFileOpensUnderNoName) {
    std::string bytes = folder.content(fs::path(example("two-side-gobs.TLV")).filename().string());
    bytes.resize(bytes.size() - 20);
    const std::string damaged = folder.put("damaged.TLV", bytes);
    session.open().Working.EntryHeight = 99;
    EXPECT_FALSE(session.LoadProjFile(damaged));
    EXPECT_TRUE(wasAsked(damaged));
    EXPECT_EQ(session.windowTitle(), "Untitled*");
    EXPECT_EQ(session.project().Input.EntryHeight, 5.5); // read before the damage
    EXPECT_EQ(session.open().Working.EntryHeight, 99);
    EXPECT_EQ(settings.values().MaxLastFiles, 0);
    dialogs.answers = {std::nullopt};
    EXPECT_FALSE(session.FileMenuSave(false)); // asks for a name
    EXPECT_EQ(folder.content("damaged.TLV"), bytes);
}

TEST_F(ProjectSessionTest, AFailedSaveSaysWhyAndKeepsTheCaseUnsaved) {
    edit();
    dialogs.answers = {folder.root + "no/such/folder/case.TLV"};
    EXPECT_FALSE(session.FileMenuSave(false));
    EXPECT_TRUE(wasAsked("The file was not saved. "));
    EXPECT_TRUE(wasAsked("no/such/folder"));
    EXPECT_FALSE(session.isSaved());
    EXPECT_EQ(session.displayName(), "Untitled");
    dialogs.answers = {folder.root + "case.TLV"};
    EXPECT_TRUE(session.FileMenuSave(false));
    EXPECT_EQ(session.windowTitle(), "case.TLV");
    EXPECT_EQ(settings.values().RecentFiles[0],
              (RecentFile{"case.TLV", 0, folder.root + "case.TLV"}));
    edit(8);
    EXPECT_TRUE(session.FileMenuSave(false)); // its own save is no change on disk
    EXPECT_EQ(messages.asked.size(), 1U);
    edit(9);
    fs::remove(folder.root + "case.TLV");
    EXPECT_TRUE(session.FileMenuSave(false)); // brings a removed file back
    project::ProjectCase read;
    ASSERT_TRUE(project::readCaseFile(folder.root + "case.TLV", read).accepted);
    EXPECT_EQ(read.Input.EntryHeight, 9);
}

TEST_F(ProjectSessionTest, AConvertedCaseIsSavedUnderItsNewName) {
    const std::string path = example("two-side-gobs.TLV");
    ASSERT_TRUE(session.LoadProjFile(path));
    const std::string bytes = folder.content("two-side-gobs.TLV");
    project::ProjectCase converted = session.project();
    ASSERT_TRUE(project::convertCase(converted));
    converted.FileName = folder.root + converted.FileName;
    session.acceptConverted(converted);
    EXPECT_EQ(session.windowTitle(), "Metric_two-side-gobs.TLV*");
    dialogs.answers = {converted.FileName};
    EXPECT_TRUE(session.FileMenuSave(false));
    EXPECT_EQ(dialogs.asked.back(), "Save Project As|" + converted.FileName + "|TLV Files (*.TLV)");
    EXPECT_EQ(folder.content("two-side-gobs.TLV"), bytes);
}

TEST_F(ProjectSessionTest, FiguresAreSilentAndThoseOfTheReport) {
    ASSERT_TRUE(session.LoadProjFile(example("two-side-gobs.TLV")));
    const auto lines = messages.lines.size();
    const project::KeyFigures figures = session.figures(session.project());
    EXPECT_EQ(figures.PanelWidth, "320");
    EXPECT_EQ(figures.DevelopmentSF, "2.97"); // pages 0 and 1 of the example's report
    EXPECT_EQ(figures.RetreatSF, "1.61");
    EXPECT_EQ(figures.BarrierSF, "1.08 (second side, retreat)");
    project::ProjectCase half = session.project();
    half.Input.DepthCover = 0;
    EXPECT_EQ(session.figures(half).PanelWidth, "320");
    EXPECT_EQ(session.figures(half).DevelopmentSF, "");
    EXPECT_EQ(messages.lines.size(), lines);
    const auto outcome = session.run(session.project());
    EXPECT_EQ(session.inputEcho(), std::get<CaseRun>(outcome).pages[0]);
}

TEST(History, DropsWholeOldestLines) {
    History history(12);
    EXPECT_EQ(history.append("one\ntwo"), 0U);                 // "one two"
    EXPECT_EQ(history.append("\xC3\xA4\xC3\xB6\xC3\xBC"), 0U); // three characters
    EXPECT_EQ(history.append("x"), 1U);
    EXPECT_EQ(history.append(std::string(50, 'y')), 2U); // too long, but the newest
    EXPECT_EQ(history.lines().size(), 1U);
}

TEST(Recovery, KeepsTheCaseAndItsName) {
    project::ProjectCase unsaved = project::newCase(project::Metric);
    unsaved.FileName = "/cases/\xC3\x84 b.TLV";
    unsaved.Title = "Unsaved";
    unsaved.Input.DepthCover = 312.5;
    const auto text = recoveryText(unsaved);
    ASSERT_TRUE(text);
    const auto kept = readRecovery(*text, "copy");
    ASSERT_TRUE(kept);
    EXPECT_EQ(*kept, unsaved);
    // Whatever is cut off is damage, not half a case.
    for (std::size_t length = 0; length + 4 < text->size(); length += 3)
        EXPECT_FALSE(readRecovery(text->substr(0, length), "copy")) << length;
    unsaved.Input.NumberEntries = 11;
    EXPECT_FALSE(recoveryText(unsaved));
}

} // namespace
} // namespace telvo::app
