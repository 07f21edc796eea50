// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CaseDocument.h"

#include <gtest/gtest.h>

namespace telvo::app {
namespace {

/// A case of that depth; without a name, a new one.
CaseState caseOf(double depth, const std::string& name = {}) {
    CaseState state{project::newCase(project::English), {}, false, !name.empty()};
    state.Project.Input.DepthCover = depth;
    state.Project.FileName = name.empty() ? "Untitled" : name;
    return state;
}

double depthOf(const CaseDocument& document) {
    return document.state().Project.Input.DepthCover;
}

/// The present case in another depth.
CaseState deeper(const CaseDocument& document, double depth) {
    CaseState next = document.state();
    next.Project.Input.DepthCover = depth;
    return next;
}

TEST(CaseDocument, EveryAcceptedChangeIsOneStepBackAndForth) {
    CaseDocument document(caseOf(1));
    EXPECT_FALSE(document.undo() || document.redo());
    EXPECT_EQ(document.undoText(), "");
    EXPECT_TRUE(document.change(deeper(document, 2), "two"));
    EXPECT_FALSE(document.change(deeper(document, 2), "nothing new"));
    EXPECT_TRUE(document.change(deeper(document, 3), "three"));
    EXPECT_EQ(document.undoText(), "three");
    ASSERT_TRUE(document.undo());
    EXPECT_EQ(depthOf(document), 2);
    EXPECT_EQ(document.undoText(), "two");
    EXPECT_EQ(document.redoText(), "three");
    ASSERT_TRUE(document.undo());
    EXPECT_FALSE(document.undo());
    EXPECT_EQ(depthOf(document), 1);
    ASSERT_TRUE(document.redo() && document.redo());
    EXPECT_FALSE(document.redo());
    EXPECT_EQ(depthOf(document), 3);
    // A change after an undo goes on from there.
    document.undo();
    document.change(deeper(document, 4), "four");
    EXPECT_EQ(document.redoText(), "");
    document.undo();
    EXPECT_EQ(depthOf(document), 2);
    // With another case all of it is over.
    document.open(caseOf(9), true);
    EXPECT_FALSE(document.undo() || document.redo());
    for (std::size_t i = 0; i < CaseDocument::MaxEntries + 10; ++i)
        document.change(deeper(document, 100 + static_cast<double>(i)), "x");
    std::size_t steps = 0;
    while (document.undo())
        ++steps;
    EXPECT_EQ(steps, CaseDocument::MaxEntries - 1);
    EXPECT_EQ(depthOf(document), 110); // the oldest are gone
}

TEST(CaseDocument, AcceptingTheSameValuesSettlesThemWithoutAStep) {
    CaseDocument document(caseOf(1));
    CaseState damaged = caseOf(5);
    damaged.Kept = {{"RowD"}, "", project::English, true};
    document.open(damaged, false);
    CaseState accepted = damaged;
    accepted.Kept = {};
    EXPECT_FALSE(document.change(accepted, "parameters"));
    EXPECT_FALSE(document.state().Kept.damaged);
    EXPECT_FALSE(document.isSaved() || document.undo());
    // With other values the unsettled ones are a step back.
    document.open(damaged, false);
    accepted.Project.Input.DepthCover = 6;
    EXPECT_TRUE(document.change(accepted, "parameters"));
    ASSERT_TRUE(document.undo());
    EXPECT_TRUE(document.state().Kept.damaged);
    // A save settles an older level, and hides nothing of a damaged file.
    document.saved(document.state().Project, "bytes");
    EXPECT_TRUE(document.state().Kept.damaged);
}

TEST(CaseDocument, TheSavedMarkStaysWithTheSavedState) {
    CaseDocument document(caseOf(1));
    EXPECT_TRUE(document.isSaved());
    document.open(caseOf(1, "/a.TLV"), true, "one");
    document.change(deeper(document, 2), "two");
    EXPECT_FALSE(document.isSaved());
    document.undo();
    EXPECT_TRUE(document.isSaved()); // as the file has it
    document.redo();
    project::ProjectCase written = document.state().Project;
    written.Title = "as written";
    document.saved(written, "two");
    EXPECT_TRUE(document.isSaved());
    EXPECT_EQ(document.state().Project.Title, "as written");
    EXPECT_EQ(*document.bytesOnDisk(), "two");
    document.undo();
    EXPECT_FALSE(document.isSaved()); // the file has two by now
    EXPECT_EQ(*document.bytesOnDisk(), "two");
    document.redo();
    EXPECT_TRUE(document.isSaved());
    document.saved(document.state().Project, std::nullopt);
    EXPECT_EQ(document.bytesOnDisk(), nullptr);
}

TEST(CaseDocument, AfterSaveAsNoUndoLeadsBackToTheOldFile) {
    CaseDocument document(caseOf(1));
    document.open(caseOf(1, "/a.TLV"), true, "a1");
    document.change(deeper(document, 2), "two");
    project::ProjectCase written = document.state().Project;
    written.FileName = "/b.TLV";
    document.saved(written, "b2");
    document.undo();
    EXPECT_EQ(document.state().Project.FileName, "/b.TLV");
    EXPECT_TRUE(document.state().named);
    EXPECT_FALSE(document.isSaved());
    EXPECT_EQ(*document.bytesOnDisk(), "b2");
}

TEST(CaseDocument, UndoingAConversionGivesTheFileNameBack) {
    CaseDocument document(caseOf(1));
    document.open(caseOf(1, "/a.TLV"), true, "a1");
    CaseState metric = caseOf(0.3048);
    metric.Project.FileName = "Metric_a.TLV";
    document.change(metric, "conversion");
    EXPECT_FALSE(document.isSaved() || document.bytesOnDisk());
    project::ProjectCase written = document.state().Project;
    written.FileName = "/Metric_a.TLV";
    document.saved(written, "m");
    EXPECT_TRUE(document.isSaved());
    document.undo();
    EXPECT_EQ(document.state().Project.FileName, "/a.TLV");
    EXPECT_TRUE(document.state().named && document.isSaved());
    EXPECT_EQ(*document.bytesOnDisk(), "a1");
    document.redo();
    EXPECT_EQ(document.state().Project.FileName, "/Metric_a.TLV");
    EXPECT_TRUE(document.isSaved());
}

} // namespace
} // namespace telvo::app
