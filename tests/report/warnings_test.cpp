// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/warnings.h"

#include "project/CaseFile.h"
#include "report/fixtures.h"
#include "run/caseRun.h"

#include <gtest/gtest.h>
#include <json-c/json.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace telvo::report {
namespace {

using std::string;
using Flags = std::vector<int>;

Flags flagsOf(const Warnings& warnings) {
    Flags set;
    for (std::size_t i = 0; i < warnings.WarningFlags.size(); ++i)
        if (warnings.WarningFlags[i]) set.push_back(static_cast<int>(i));
    return set;
}

TEST(WarningFlags, OfEveryLimitAndNotice) {
    std::ifstream table(TELVO_REPORT_TESTS_DIR "/flags.txt");
    int rows = 0;
    for (string line; std::getline(table, line);) {
        if (line[0] == '#') continue;
        ++rows;
        const auto row = cells(line, '|'); // label, settings, flags
        Panel panel;
        panel.apply(row[1]);
        std::istringstream numbers(row[2]);
        const Flags expected{std::istream_iterator<int>(numbers), {}};
        const Warnings warnings = panel.warnings();
        EXPECT_EQ(flagsOf(warnings), expected) << line;
        EXPECT_EQ(warnings.AnyWarning, !expected.empty()) << line;
        EXPECT_EQ(warnings.section.empty(), expected.empty()) << line;
        EXPECT_EQ(warnings.WarningIssued, warnings.WarningFlags[0]) << line;
    }
    EXPECT_GE(rows, 70);
}

TEST(WarningTexts, StandInTheirOrderWordForWord) {
    std::ifstream texts(TELVO_REPORT_TESTS_DIR "/warning_texts.txt");
    string panelOf, section, summary;
    int panels = 0;
    const auto compare = [&] {
        if (panelOf.empty()) return;
        ++panels;
        Panel panel;
        panel.apply(panelOf);
        const Warnings warnings = panel.warnings();
        EXPECT_EQ(warnings.section, "[WARNINGS]\r\n\r\n" + section) << panelOf;
        EXPECT_EQ(warnings.WarningSummary, summary) << panelOf;
    };
    for (string line; std::getline(texts, line);) {
        if (line[0] == '=') {
            compare();
            panelOf = line.substr(2);
            section = summary = "";
        } else if (line[0] != '#') {
            const bool risk = line.starts_with("risk|");
            const string text = line.substr(5, line.size() - 6);
            const string help = "  For more information, consult Help/Stability Factors.";
            section += WrapText(risk ? text + help : text, TextWidth) + "\r\n";
            if (risk) summary += text + "\r\n\r\n";
        }
    }
    compare();
    EXPECT_EQ(panels, 6);
}

TEST(Warnings, OfTheIndependentCasesAgree) {
    const string folder = TELVO_CASES_DIR "/verification/";
    const std::unique_ptr<json_object, int (*)(json_object*)> cases(
        json_object_from_file((folder + "expected.json").c_str()), json_object_put);
    ASSERT_TRUE(cases);
    ASSERT_EQ(json_object_array_length(cases.get()), 42U);
    for (std::size_t i = 0; i < 42; ++i) {
        json_object* one = json_object_array_get_idx(cases.get(), i);
        const string file = json_object_get_string(json_object_object_get(one, "file"));
        json_object* numbers = json_object_object_get(one, "flags");
        Flags flags;
        for (std::size_t f = 0; f < json_object_array_length(numbers); ++f)
            flags.push_back(json_object_get_int(json_object_array_get_idx(numbers, f)));

        auto current = project::newCase(project::English);
        ASSERT_FALSE(project::readCaseFile(folder + file, current).fault) << file;
        const auto outcome = run::runCase(current);
        const auto* run = std::get_if<run::Run>(&outcome);
        ASSERT_TRUE(run) << file;
        const Warnings warnings = assessWarnings(*run, {});
        EXPECT_EQ(flagsOf(warnings), flags) << file;
        EXPECT_EQ(warnings.WarningSummary,
                  json_object_get_string(json_object_object_get(one, "summary")))
            << file;
    }
}

} // namespace
} // namespace telvo::report
