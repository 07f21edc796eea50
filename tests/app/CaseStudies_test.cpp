// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CaseStudies.h"

#include "base/files.h"
#include "base/TemporaryFolder.h"
#include "goodCase.h"
#include "project/units.h"
#include "RecordedDialogs.h"
#include "RecordedMessages.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace telvo::app {
namespace {

/// Studies of cases in a temporary folder.
struct CaseStudiesTest : testing::Test {
    test::TemporaryFolder folder;
    test::RecordedMessages messages;
    test::RecordedDialogs dialogs;
    CaseStudies studies{messages, dialogs};
    project::ProjectCase current = tests::goodCase();
    std::size_t number = 0;
    bool hasFile = true;

    std::string path(const std::string& name) const { return folder.root + name; }
    void follow() { studies.follow({current, number, hasFile, 0}); }
    /// Opens a case, or goes on with one under another name.
    void open(const std::string& name) {
        current.FileName = path(name);
        ++number;
        follow();
        studies.load();
    }
    void put(const std::string& name, const std::string& text) {
        ASSERT_TRUE(writeFile(path(name), text));
    }
    std::string bytes(const std::string& name) {
        const auto read = readFile(path(name));
        return read ? *read : "";
    }
    bool wasTold(const std::string& text) {
        return !messages.asked.empty() && messages.asked.back().find(text) != std::string::npos;
    }
    void setDeep(double depth = 1200) {
        studies.settings().scenarios = {{"deep", {{project::Field::DepthCover, depth}}}};
    }
    double deep() {
        const auto& all = studies.settings().scenarios;
        return all.empty() ? 0 : all.front().set.front().second;
    }
};

constexpr auto Deep = "# TELVO study 1\n"
                      "# The layout of May\n"
                      "\n"
                      "kind = \"scenarios\"\n"
                      "case = \"panel.TLV\"\n"
                      "units = \"english\"\n"
                      "\n"
                      "[scenarios]\n"
                      "outputs = [\"PillarStrength.1\"]\n"
                      "\n"
                      "[[scenario]]\n"
                      "name = \"deep\"\n"
                      "set = { DepthCover = 1100 }\n";

TEST_F(CaseStudiesTest, NothingIsWrittenUnaskedAndNothingIsLost) {
    open("panel.TLV");
    EXPECT_FALSE(studies.isChanged());
    EXPECT_TRUE(studies.mayClose());
    EXPECT_TRUE(messages.asked.empty());
    setDeep();
    EXPECT_TRUE(studies.isChanged());
    open("other.TLV"); // in memory while another case is open
    EXPECT_EQ(deep(), 0);
    open("panel.TLV");
    EXPECT_EQ(deep(), 1200);
    messages.answers = {Answer::Cancel};
    EXPECT_FALSE(studies.mayClose());
    EXPECT_TRUE(wasTold("Save the studies of " + path("panel.TLV")));
    EXPECT_EQ(bytes("panel.study"), "");
    messages.answers = {Answer::Yes};
    EXPECT_TRUE(studies.mayClose());
    EXPECT_NE(bytes("panel.study").find("set = { DepthCover = 1200 }"), std::string::npos);
    EXPECT_FALSE(studies.isChanged());

    CaseStudies later(messages, dialogs);
    later.follow({current, 1, true, 0});
    later.load();
    EXPECT_EQ(later.settings().scenarios, studies.settings().scenarios);
    EXPECT_FALSE(later.isChanged());
    // All as it begins again: there is nothing to keep.
    later.settings() = {};
    messages.answers = {Answer::Yes};
    EXPECT_TRUE(later.save());
    EXPECT_TRUE(wasTold("Remove the file?"));
    EXPECT_FALSE(std::filesystem::exists(path("panel.study")));
    EXPECT_FALSE(later.isChanged());
}

TEST_F(CaseStudiesTest, WhatCameFromOutsideStays) {
    put("panel.study", Deep);
    open("panel.TLV");
    EXPECT_EQ(deep(), 1100);
    EXPECT_FALSE(studies.isChanged());
    // Another study joins; what no page shows just so, the outputs alone, stays with the comment.
    studies.settings().spider = true;
    EXPECT_TRUE(studies.save());
    EXPECT_TRUE(messages.asked.empty());
    const std::string now = bytes("panel.study");
    EXPECT_EQ(now.find("# TELVO study 1\n# The layout of May\n\n"
                       "kind = [\"tornado\", \"scenarios\"]\n"),
              0U)
        << now;
    EXPECT_NE(now.find("outputs = [\"PillarStrength.1\"]\n"), std::string::npos) << now;
    // Changed by somebody else meanwhile.
    put("panel.study", now + "# mine\n");
    setDeep();
    EXPECT_FALSE(studies.save());
    EXPECT_TRUE(wasTold("was changed on disk since it was read"));
    EXPECT_EQ(bytes("panel.study"), now + "# mine\n");
    EXPECT_TRUE(studies.isChanged());
    // Read anew when nothing would be lost by it; notes within are not dropped unasked.
    studies.settings().scenarios.front().set.front().second = 1100;
    EXPECT_FALSE(studies.isChanged());
    open("other.TLV");
    open("panel.TLV");
    setDeep(1300);
    EXPECT_FALSE(studies.save());
    EXPECT_TRUE(wasTold("Only the comments at the top of the study file are kept"));
    messages.answers = {Answer::Yes};
    EXPECT_TRUE(studies.save());
    EXPECT_EQ(bytes("panel.study").find("# mine"), std::string::npos);
    EXPECT_NE(bytes("panel.study").find("DepthCover = 1300"), std::string::npos);
    // No file is made where there is no folder any more.
    setDeep(1400);
    std::filesystem::remove_all(folder.root);
    EXPECT_FALSE(studies.save());
    EXPECT_TRUE(wasTold("The study was not saved. "));
    EXPECT_TRUE(studies.isChanged());
    std::filesystem::create_directories(folder.root);
}

TEST_F(CaseStudiesTest, AFileThatCannotBeTakenStaysAsItIs) {
    const std::string good = Deep;
    const auto changed = [&](const std::string& what, const std::string& by) {
        std::string text = good;
        return text.replace(text.find(what), what.size(), by);
    };
    const std::pair<std::string, std::string> wrong[] = {
        {changed("DepthCover", "Depth"), "panel.study, line 13: set: no input is called"},
        {changed("english", "metric"), "is in metric units, the case in English ones"},
        {changed("panel.TLV", "b.TLV"), "is a study of b.TLV, not of panel.TLV"},
        {"", "line 1: is no study"}};
    for (const auto& [text, message] : wrong) {
        put("panel.study", text);
        const std::size_t before = messages.asked.size();
        open("panel.TLV");
        EXPECT_EQ(messages.asked.size(), before + 1);
        EXPECT_TRUE(wasTold(message)) << messages.asked.back();
        EXPECT_FALSE(studies.isChanged());
        EXPECT_EQ(deep(), 0);
        setDeep();
        EXPECT_FALSE(studies.save());
        EXPECT_TRUE(wasTold("The study file is there already and was not read"));
        EXPECT_EQ(bytes("panel.study"), text);
        studies.settings() = {};
    }
    // What is asked there may be taken on purpose, with its numbers converted.
    put("theirs.study", changed("english", "metric"));
    dialogs.answers = {path("theirs.study")};
    messages.answers = {Answer::Yes};
    studies.open();
    EXPECT_TRUE(wasTold("It is in metric units; its numbers are converted."));
    EXPECT_EQ(deep(), 3608.92);
    EXPECT_TRUE(studies.isChanged());
    dialogs.answers = {path("theirs.study")};
    setDeep();
    studies.open(); // No
    EXPECT_TRUE(wasTold("Studies of this case that are not saved may be replaced."));
    EXPECT_EQ(deep(), 1200);
}

TEST_F(CaseStudiesTest, FollowTheCase) {
    put("panel.study", Deep);
    current.FileName = path("panel.TLV");
    number = 1;
    follow(); // not looked at yet
    EXPECT_EQ(deep(), 0);
    current.FileName = path("copy.TLV"); // saved under another name
    follow();
    EXPECT_EQ(deep(), 1100);
    EXPECT_TRUE(studies.isChanged());
    EXPECT_EQ(studies.fileName(), "copy.study");
    studies.takeRenewed();
    // Converted: numbers follow, and the copy keeps its own.
    const auto metric = project::convertedCase(current);
    ASSERT_TRUE(metric);
    current = *metric;
    hasFile = false;
    follow();
    EXPECT_EQ(deep(), 335.28);
    EXPECT_TRUE(studies.takeRenewed());
    hasFile = true; // and saved
    follow();
    EXPECT_EQ(deep(), 335.28);
    EXPECT_FALSE(studies.takeRenewed());
    EXPECT_TRUE(studies.save());
    EXPECT_NE(bytes("Metric_copy.study").find("case = \"Metric_copy.TLV\"\nunits = \"metric\""),
              std::string::npos);
    // A case that a study opened goes on with them, any other untitled one does not.
    studies.passOn();
    current.FileName = "Untitled";
    hasFile = false;
    ++number;
    follow();
    EXPECT_EQ(deep(), 335.28);
    EXPECT_FALSE(studies.takeRenewed());
    ++number;
    follow();
    EXPECT_EQ(deep(), 0);
    EXPECT_TRUE(studies.takeRenewed());
    messages.answers = {Answer::No}; // of the copy
    EXPECT_TRUE(studies.mayClose());
    EXPECT_EQ(bytes("copy.study"), "");
    EXPECT_EQ(bytes("panel.study"), Deep);
}

} // namespace
} // namespace telvo::app
