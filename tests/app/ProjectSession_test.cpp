// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ProjectSession.h"

#include "app/MessageLog.h"
#include "app/recovery.h"
#include "base/TemporaryFolder.h"
#include "base/text.h"
#include "project/CaseFile.h"
#include "project/units.h"
#include "RecordedDialogs.h"
#include "RecordedMessages.h"
#include "report/sections.h"

#include <algorithm>
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

TEST_F(ProjectSessionTest, CancelKeepsTheCaseAndNoKeepsACopy) {
    std::vector<UnsavedCase> discarded;
    session.onDiscard = [&](const UnsavedCase& gone) { discarded.push_back(gone); };
    ASSERT_TRUE(session.LoadProjFile(example("two-side-gobs.TLV")));
    edit(8.5);
    const std::string other = example("deep-cover.TLV");
    for (int command = 0; command < 4; ++command) {
        messages.answers = {Answer::Cancel};
        dialogs.answers = {other};
        EXPECT_FALSE(command == 0   ? session.newCommand()
                     : command == 1 ? session.openCommand()
                     : command == 2 ? session.openNamed(other)
                                    : session.openRecent(1));
        EXPECT_EQ(session.windowTitle(), "two-side-gobs.TLV*") << command;
    }
    EXPECT_TRUE(discarded.empty());
    EXPECT_TRUE(session.openNamed(other)); // No is what a hasty Return answers
    EXPECT_EQ(session.windowTitle(), "deep-cover.TLV");
    ASSERT_EQ(discarded.size(), 1U);
    EXPECT_EQ(discarded[0].current.Input.EntryHeight, 8.5);
    EXPECT_EQ(discarded[0].current.FileName, folder.root + "two-side-gobs.TLV");
    session.acceptDiscarded(discarded[0]);
    EXPECT_EQ(session.windowTitle(), "Untitled*"); // a save cannot replace the file that it was
    EXPECT_EQ(session.project().Input, discarded[0].current.Input);
    messages.answers = {Answer::No};
    EXPECT_TRUE(session.mayClose());
    EXPECT_EQ(discarded.size(), 2U);
}

TEST_F(ProjectSessionTest, ASavedTitleAloneLeavesTheCaseEmpty) {
    session.FileNew();
    EXPECT_TRUE(session.isUntouched());
    session.acceptDescription("Mine", "");
    EXPECT_FALSE(session.isUntouched());
    dialogs.answers = {folder.root + "title.TLV"};
    ASSERT_TRUE(session.FileMenuSave(false));
    EXPECT_TRUE(session.isEmpty());
    EXPECT_FALSE(session.isUntouched());
    UnsavedCase copy = session.unsaved();
    session.acceptRecovered(copy);
    EXPECT_TRUE(session.isEmpty());
    copy.current.Input.DepthCover = 1;
    session.acceptRecovered(copy);
    EXPECT_FALSE(session.isEmpty());
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
    EXPECT_FALSE(session.LoadProjFile(damaged));
    EXPECT_TRUE(wasAsked(damaged));
    EXPECT_EQ(session.windowTitle(), "Untitled*");
    EXPECT_EQ(session.project().Input.EntryHeight, 5.5); // read before the damage
    EXPECT_EQ(settings.values().MaxLastFiles, 0);
    messages.answers = {Answer::Yes};
    dialogs.answers = {std::nullopt};
    EXPECT_FALSE(session.FileMenuSave(false)); // asks for a name
    EXPECT_EQ(folder.content("damaged.TLV"), bytes);
}

// A file of 2150 ft that breaks off behind the angle, over a metric case with other widths.
TEST_F(ProjectSessionTest, ADamagedFileTellsWhatItDidNotGive) {
    ASSERT_TRUE(session.LoadProjFile(example("metric-two-side-gobs.TLV")));
    const project::ProjectInput metric = session.project().Input;
    const std::string damaged =
        folder.put("half.TLV", "TELVO_602\r\n 0\r\nHalf\r\n##StartDesc##\r\n"
                               "##EndDesc##\r\n6\r\n2150\r\n90\r\n");
    EXPECT_FALSE(session.LoadProjFile(damaged));
    EXPECT_EQ(session.project().Input.EntryWidth, metric.EntryWidth);
    EXPECT_TRUE(
        wasAsked("From the file: Units English, Title \"Half\", Description, Entry Height 6 "
                 "(ft), Depth of Cover 2150 (ft), Crosscut Angle 90 (degrees)\n"));
    EXPECT_TRUE(
        wasAsked("Not from the file, but from the case before, metric-two-side-gobs.TLV, in "
                 "metric units (the numbers now count in English units; nothing was "
                 "converted): Entry Width 6 (m), Crosscut Spacing "));
    EXPECT_TRUE(wasAsked("Center to Center Distance #1 "));
    EXPECT_TRUE(wasAsked("Leave pillar Row 'A' in place no"));
    EXPECT_TRUE(wasAsked("Extent of First Gob"));
    // It has no factors until its values were accepted in the form.
    EXPECT_TRUE(session.isUnsettled());
    EXPECT_EQ(session.figuresOfOpen(session.project()).DevelopmentSF, "");
    EXPECT_NE(session.figures(session.project()).DevelopmentSF, "");
    // A save would hide what is not its own; a copy does not.
    messages.asked.clear();
    EXPECT_FALSE(session.FileMenuSave(false));
    EXPECT_TRUE(wasAsked("A part of this case is not from its file: Entry Width 6 (m)"));
    const auto copy = readRecovery(*recoveryText(session.unsaved()), "copy");
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->kept.items, session.kept().items);
    EXPECT_EQ(copy->kept.from, "metric-two-side-gobs.TLV");
    session.FileNew();
    EXPECT_FALSE(session.isUnsettled());
    session.acceptRecovered(*copy);
    EXPECT_TRUE(session.isUnsettled());
    EXPECT_EQ(session.kept().units, project::Metric);
    EXPECT_FALSE(session.acceptParameters(session.project().Input));
    EXPECT_FALSE(session.isUnsettled());
    EXPECT_NE(session.figuresOfOpen(session.project()).DevelopmentSF, "");
}

TEST_F(ProjectSessionTest, AnOlderLevelTellsWhatItLacks) {
    const std::string text =
        folder.content(fs::path(example("deep-cover.TLV")).filename().string());
    // Level 50 has no automatic arch factor, reserved item, arch factor, rows and widths.
    std::vector<std::string> lines;
    for (const auto line : splitLines(text))
        lines.emplace_back(line);
    std::string old = "TELVO_500\r\n";
    const std::size_t amz = lines.size() - 20; // flag of the automatic breadth
    for (std::size_t i = 1; i < lines.size() - 6; ++i)
        if (i != amz + 1 && i != amz + 3 && i != amz + 4) old += lines[i] + "\r\n";
    ASSERT_TRUE(session.LoadProjFile(folder.put("old.TLV", old)));
    EXPECT_EQ(session.kept().items,
              (std::vector<std::string>{"Arch", "Reserved", "ArchFactor", "RowA", "RowB", "RowC",
                                        "RowD", "WidthC", "WidthD"}));
    EXPECT_FALSE(session.isUnsettled());
    EXPECT_NE(session.figuresOfOpen(session.project()).DevelopmentSF, "");
    const auto told =
        std::find_if(messages.lines.begin(), messages.lines.end(), [](const auto& line) {
            return line.starts_with(
                "The file is of an older level; items that are not in it keep their "
                "previous values, those of the defaults of a new case, in English "
                "units: Pressure Arch Factor set automatically yes, Pressure Arch "
                "Factor 1, Leave pillar Row 'A' in place no");
        });
    EXPECT_NE(told, messages.lines.end());
    edit(5);
    EXPECT_TRUE(session.kept().items.empty());
}

TEST_F(ProjectSessionTest, AFailedSaveSaysWhyAndKeepsTheCaseUnsaved) {
    edit();
    dialogs.answers = {folder.root + "no/such/folder/case.TLV"};
    EXPECT_FALSE(session.FileMenuSave(false));
    EXPECT_TRUE(wasAsked("The file was not saved. The folder does not exist: " + folder.root +
                         "no/such/folder\nSave the case under another name?"));
    EXPECT_FALSE(session.isSaved());
    EXPECT_EQ(session.displayName(), "Untitled");
    dialogs.answers = {folder.root + "case.TLV"};
    EXPECT_TRUE(session.FileMenuSave(false));
    EXPECT_EQ(session.windowTitle(), "case.TLV");
    // From the box one comes to another name.
    messages.asked.clear();
    dialogs.answers = {folder.root, folder.root + "other.TLV"};
    EXPECT_TRUE(session.FileMenuSave(true));
    EXPECT_EQ(session.windowTitle(), "other.TLV");
    dialogs.answers = {folder.root + "case.TLV"};
    EXPECT_TRUE(session.FileMenuSave(true));
    EXPECT_EQ(settings.values().RecentFiles[0],
              (RecentFile{"case.TLV", 0, folder.root + "case.TLV"}));
    edit(8);
    EXPECT_TRUE(session.FileMenuSave(false)); // its own save is no change on disk
    EXPECT_EQ(messages.asked.size(), 1U);     // that of the folder
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

TEST_F(ProjectSessionTest, CommandsSayWhatTheyMissOfTheCase) {
    EXPECT_FALSE(session.mayRun());
    EXPECT_EQ(messages.lastStatus(), "No stability factors: the current file is empty");
    EXPECT_TRUE(wasAsked("Current file is empty"));
    EXPECT_EQ(session.graphRefusal()->message, "Current file is empty");
    EXPECT_FALSE(session.mayConvert());
    EXPECT_EQ(messages.lastStatus(), "File not converted");
    messages.answers = {Answer::No};
    EXPECT_FALSE(session.mayPrint());
    EXPECT_TRUE(wasAsked("Current file is empty. Continue?"));
    edit();
    EXPECT_TRUE(session.mayRun() && session.mayPrint() && session.mayShowFactors());
    EXPECT_FALSE(session.graphRefusal());
    EXPECT_FALSE(session.mayConvert());
    EXPECT_TRUE(wasAsked("Save Current File before accessing this option"));
    ASSERT_TRUE(session.LoadProjFile(example("two-side-gobs.TLV")));
    EXPECT_TRUE(session.mayConvert());
    // Of a damaged file nothing is computed before its values were accepted.
    folder.put("half.TLV", "TELVO_602\r\n 0\r\nHalf\r\n##StartDesc##\r\n##EndDesc##\r\n6\r\n");
    EXPECT_FALSE(session.LoadProjFile(folder.root + "half.TLV"));
    EXPECT_TRUE(session.mayRun());
    EXPECT_FALSE(session.mayShowFactors());
    EXPECT_TRUE(wasAsked("Not from the file: "));
    EXPECT_TRUE(session.graphRefusal()->message.starts_with("A part of this case is not from"));
    dialogs.answers = {folder.root + "kept.TLV"};
    messages.answers = {Answer::Yes};
    ASSERT_TRUE(session.FileMenuSave(false));
    EXPECT_FALSE(session.mayConvert()); // saved, but still not looked at
    EXPECT_TRUE(wasAsked("accept it there with OK"));
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
    EXPECT_EQ(session.inputEcho(), report::makeReport(std::get<run::Run>(outcome)).pages[0]);
}

TEST(MessageLog, DropsWholeOldestLines) {
    MessageLog history(12);
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
    const auto text = recoveryText({unsaved});
    ASSERT_TRUE(text);
    const auto kept = readRecovery(*text, "copy");
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->current, unsaved);
    EXPECT_TRUE(kept->kept.items.empty());
    EXPECT_EQ(recoveredName(*text), unsaved.FileName);
    EXPECT_EQ(recoveryQuestion("x", "noon", 0).find("Older"), std::string::npos);
    EXPECT_TRUE(
        recoveryQuestion("x", "noon", 2)
            .starts_with(
                "TELVO ended without saving the case: x\nA copy of noon was kept. Open it?\n"));
    EXPECT_NE(recoveryQuestion("x", "noon", 2).find("wait beside it: 2."), std::string::npos);
    // So does a copy of a damaged file, however its line was hurt.
    const auto damaged = *recoveryText({unsaved, {{"Units", "WidthD"}, "a b", 1, true}});
    EXPECT_EQ(readRecovery(damaged, "copy")->kept.items.size(), 2U);
    EXPECT_EQ(readRecovery(damaged, "copy")->kept.from, "a b");
    for (const char* line : {"", "1", "x ", ", ", "0 ,,", "9 Units"}) {
        std::string hurt = damaged;
        const auto at = hurt.find("1 Units,WidthD a b");
        hurt.replace(at, 18, line);
        const auto read = readRecovery(hurt, "copy");
        EXPECT_TRUE(!read || read->kept.damaged) << line;
    }
    // Whatever is cut off is damage, not half a case.
    for (std::size_t length = 0; length + 4 < text->size(); length += 3)
        EXPECT_FALSE(readRecovery(text->substr(0, length), "copy")) << length;
    unsaved.Input.NumberEntries = 11;
    EXPECT_FALSE(recoveryText({unsaved}));
}

} // namespace
} // namespace telvo::app
