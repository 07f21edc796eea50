// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/warnings.h"

#include "app/caseRun.h"
#include "project/CaseFile.h"
#include "report/fixtures.h"

#include <gtest/gtest.h>
#include <json-c/json.h>

#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace telvo::report {
namespace {

using namespace testing;
using std::string;
using Flags = std::vector<int>;

Flags flagsOf(const Warnings& warnings) {
    Flags set;
    for (std::size_t i = 0; i < warnings.WarningFlags.size(); ++i)
        if (warnings.WarningFlags[i]) set.push_back(static_cast<int>(i));
    return set;
}

constexpr double SameAsDevelopment = -1;

/// A panel as the depth and stability tests see it; what a row does not name raises nothing.
struct Panel {
    const char* label;
    Flags flags;
    double H = 500;
    double SF = 2.5;
    double retreatSF = SameAsDevelopment;
    double PW = 0; // 0: the panel's own 400 ft or 120 m
    int LC = 1;
    double BSF = 5; // of the first side, both passes
    double firstBarrier = 100;
    double extent = 0;
    double height = 0; // 0: the panel's own 6 ft or 2 m
    std::int16_t units = project::English;
    int mode = 0;
};

Warnings assess(const Panel& run) {
    project::ProjectCase current = plainCase(run.units);
    current.Input.DepthCover = run.H;
    current.Input.ExtentActiveGob = run.extent;
    current.Input.BarrierFirstGob = run.firstBarrier;
    if (run.height != 0) current.Input.EntryHeight = run.height;
    engine::AnalysisResults r = plainResults(run.LC, run.units);
    if (run.PW != 0) r.PanelWidth = run.PW;
    r.TELVOSF = {{run.SF, run.retreatSF == SameAsDevelopment ? run.SF : run.retreatSF}};
    for (int p = engine::Development; p <= engine::Retreat; ++p)
        r.BarrierSF[p][engine::FirstSide] = run.BSF;
    return assessWarnings(current, r, {.RoundTELVOSF = run.mode});
}

// The suggested factor falls from 1.5 at 650 ft by 0.2 over 350 ft: at 800 ft it is
// 1.5 - 0.2 x 150 / 350 = 1.4142857, at 1000 ft 1.3; 240 m are 787.40 ft, where it is 1.4215.
// Mean pillar width over height in a 400 ft panel of five 20 ft entries: 300 / (5 x height), which
// is 4 at 15 ft and 3.9 at 15.3846 ft; at 120 m, 30 m of entries and 2 m it is 9.
TEST(WarningFlags, OfDepthStabilityAndBarriers) {
    const Panel runs[] = {
        {.label = "strong", .flags = {}},
        {.label = "650 ft is shallow", .flags = {0}, .H = 650, .SF = 1.49},
        {.label = "650.1 ft is not", .flags = {1}, .H = 650.1, .SF = 1.49},
        {.label = "1.5 is enough", .flags = {}, .H = 650, .SF = 1.5},
        {.label = "1.495 shows 1.50", .flags = {}, .SF = 1.495},
        {.label = "1.4949 shows 1.49", .flags = {0}, .SF = 1.4949},
        {.label = "1.499 cut to 1.49", .flags = {0}, .SF = 1.499, .mode = 2},
        {.label = "1.499 unrounded", .flags = {0}, .SF = 1.499, .mode = 1},
        {.label = "development alone is weak", .flags = {0}, .SF = 1.4, .retreatSF = 2.5},
        {.label = "retreat alone, development only", .flags = {0}, .SF = 2.5, .retreatSF = 1.4},
        {.label = "800 ft, suggested", .flags = {}, .H = 800, .SF = 1.41, .LC = 2},
        {.label = "800 ft, less", .flags = {1}, .H = 800, .SF = 1.4, .LC = 2},
        {.label = "800 ft, cut", .flags = {}, .H = 800, .SF = 1.411, .LC = 2, .mode = 2},
        {.label = "800 ft, unrounded", .flags = {1}, .H = 800, .SF = 1.414, .LC = 2, .mode = 1},
        {.label = "425 ft wide", .flags = {}, .H = 800, .SF = 1.41, .PW = 425},
        {.label = "425.1 ft wide", .flags = {1}, .H = 800, .SF = 1.41, .PW = 425.1},
        {.label = "1000 ft, LC 2", .flags = {}, .H = 1000, .SF = 1.35, .LC = 2, .BSF = 0},
        {.label = "1000 ft, 1.30", .flags = {}, .H = 1000, .SF = 1.2951, .LC = 2},
        {.label = "1000 ft, 1.29", .flags = {1}, .H = 1000, .SF = 1.29, .LC = 2},
        {.label = "LC 3, barrier 2.0", .flags = {}, .H = 1000, .SF = 1.35, .LC = 3, .BSF = 2},
        {.label = "LC 3, 1.999", .flags = {1}, .H = 1000, .SF = 1.35, .LC = 3, .BSF = 1.999},
        {.label = "LC 3, too wide", .flags = {1}, .H = 1000, .SF = 1.35, .PW = 426, .LC = 3},
        {.label = "LC 3, weak", .flags = {1}, .H = 1000, .SF = 1.29, .LC = 3},
        {.label = "deep, 1.3", .flags = {}, .H = 1000.1, .SF = 1.3, .PW = 425, .LC = 2},
        {.label = "deep, 1.3 in single", .flags = {}, .H = 1001, .SF = 1.3, .LC = 2, .mode = 1},
        {.label = "deep, 1.29", .flags = {2}, .H = 1000.1, .SF = 1.29, .LC = 2},
        {.label = "deep, wide", .flags = {2}, .H = 1000.1, .SF = 1.3, .PW = 425.1, .LC = 2},
        {.label = "deep, LC 3", .flags = {}, .H = 1000.1, .SF = 1.3, .LC = 3, .BSF = 2},
        {.label = "deep, barrier 1.99", .flags = {2}, .H = 1001, .SF = 1.3, .LC = 3, .BSF = 1.99},
        {.label = "barrier 1.5", .flags = {}, .H = 700, .LC = 3, .BSF = 1.5},
        {.label = "barrier tested unrounded", .flags = {3}, .H = 700, .LC = 3, .BSF = 1.4999},
        {.label = "barrier, 650 ft", .flags = {}, .H = 650, .LC = 3, .BSF = 1},
        {.label = "barrier, 650.1 ft", .flags = {3}, .H = 650.1, .LC = 3, .BSF = 1},
        {.label = "barrier of LC 2", .flags = {}, .H = 700, .LC = 2, .BSF = 1},
        {.label = "barrier factor 0 counts", .flags = {3}, .H = 700, .LC = 3, .BSF = 0},
        {.label = "no barrier", .flags = {}, .H = 700, .LC = 3, .BSF = 0, .firstBarrier = 0},
        {.label = "slender", .flags = {5}, .SF = 1.9, .height = 15.3846154},
        {.label = "ratio 4.0", .flags = {}, .SF = 1.9, .height = 15},
        {.label = "slender, 2.0", .flags = {}, .SF = 1.995, .height = 15.3846154},
        {.label = "gob, 1000 ft", .flags = {}, .H = 1000, .LC = 2, .extent = 600},
        {.label = "gob, 1000.1 ft", .flags = {7}, .H = 1000.1, .LC = 2, .extent = 600},
        {.label = "gob, 2000 ft", .flags = {7}, .H = 2000, .LC = 2, .extent = 600},
        {.label = "gob, 2000.1 ft", .flags = {6, 7}, .H = 2000.1, .LC = 2, .extent = 600},
        {.label = "no gob, 2000.1 ft", .flags = {}, .H = 2000.1, .LC = 2},
        {.label = "198 m", .flags = {0}, .H = 198, .SF = 1.49, .units = 1}, // 649.6 ft
        {.label = "199 m", .flags = {1}, .H = 199, .SF = 1.49, .units = 1}, // 652.9 ft
        {.label = "424.9 ft wide", .flags = {}, .H = 240, .SF = 1.42, .PW = 129.5, .units = 1},
        {.label = "426.5 ft wide", .flags = {1}, .H = 240, .SF = 1.42, .PW = 130, .units = 1},
        {.label = "304 m", .flags = {}, .H = 304, .LC = 2, .extent = 99, .units = 1},  // 997.4 ft
        {.label = "305 m", .flags = {7}, .H = 305, .LC = 2, .extent = 99, .units = 1}, // 1000.7 ft
    };
    for (const Panel& run : runs) {
        const Warnings warnings = assess(run);
        EXPECT_EQ(flagsOf(warnings), run.flags) << run.label;
        EXPECT_EQ(warnings.AnyWarning, !run.flags.empty()) << run.label;
        EXPECT_EQ(warnings.section.empty(), run.flags.empty()) << run.label;
        EXPECT_EQ(warnings.WarningIssued, !run.flags.empty() && run.flags[0] == 0) << run.label;
    }
}

TEST(WarningFlags, OfTheWeakestBarrierOfTheSidesInUse) {
    for (int LC = 3; LC <= 4; ++LC)
        for (int p = 1; p <= 2; ++p)
            for (int k = 3; k <= 4; ++k) {
                project::ProjectCase current = plainCase();
                current.Input.DepthCover = 700;
                current.Input.BarrierFirstGob = current.Input.BarrierSecondGob = 100;
                engine::AnalysisResults r = plainResults(LC);
                r.BarrierSF[1] = r.BarrierSF[2] = {{5, 5}};
                r.BarrierSF[p][k] = 1.4;
                EXPECT_EQ(assessWarnings(current, r, {}).WarningFlags[3], k <= LC)
                    << "LC " << LC << ", pass " << p << ", side " << k;
            }
}

TEST(WarningFlags, OfInputsThatDepartFromTheDataBase) {
    using In = project::ProjectInput;
    const auto weights = [](double weight, double strength) {
        return [=](In& in) { in.UnitWeight = weight, in.CoalStrength = strength; };
    };
    const struct {
        const char* label;
        int LC;
        std::int16_t units;
        std::function<void(In&)> change;
        Flags flags;
    } rows[] = {
        {"AMZ by hand", 1, 0, [](In& in) { in.AMZ = 0; }, {9}},
        {"unit weight", 1, 0, weights(162.0001, 900), {10}},
        {"coal strength", 1, 0, weights(162, 899), {11}},
        {"metric values", 1, 1, weights(25.45, 6.21), {}},
        {"metric values, English case", 1, 0, weights(25.45, 6.21), {10, 11}},
        {"English values, metric case", 1, 1, weights(162, 900), {10, 11}},
        {"units 2 never", 1, 2, weights(1, 1), {}},
        {"active angle, LC 1", 1, 0, [](In& in) { in.AbutmentAngleActiveGob = 20; }, {}},
        {"active angle, LC 2", 2, 0, [](In& in) { in.AbutmentAngleActiveGob = 20; }, {12}},
        {"first angle, LC 2", 2, 0, [](In& in) { in.AbutmentAngleFirstGob = 22; }, {}},
        {"first angle, LC 3", 3, 0, [](In& in) { in.AbutmentAngleFirstGob = 22; }, {12}},
        {"second angle, LC 3", 3, 0, [](In& in) { in.AbutmentAngleSecondGob = 22; }, {}},
        {"second angle, LC 4", 4, 0, [](In& in) { in.AbutmentAngleSecondGob = 22; }, {12, 13}},
        {"two side gobs", 4, 0, [](In&) {}, {13}},
        {"arch by hand", 1, 0, [](In& in) { in.Arch = 0; }, {14}},
        {"arch below 1", 1, 0, [](In& in) { in.ArchFactor = 0.99F; }, {15}},
        {"arch above 1", 1, 0, [](In& in) { in.ArchFactor = 1.01F; }, {}},
    };
    for (const auto& row : rows) {
        project::ProjectCase current = plainCase(row.units);
        current.Units = row.units;
        row.change(current.Input);
        const auto warnings = assessWarnings(current, plainResults(row.LC, row.units), {});
        EXPECT_EQ(flagsOf(warnings), row.flags) << row.label;
        EXPECT_EQ(warnings.WarningSummary, "") << row.label;
    }
}

// warning_texts.txt, a line per text in report order, an end mark against lost blanks:
// "E", "M" or "*" (which units) | "risk" (with reference to the help and in the summary) or "note".
TEST(WarningTexts, StandInTheirOrderWordForWord) {
    project::ProjectCase current = plainCase();
    project::ProjectInput& in = current.Input;
    in.DepthCover = 2100;
    in.EntryHeight = 16;
    in.ExtentActiveGob = 600;
    in.BarrierFirstGob = 100; // its factor stays 0
    in.AMZ = in.Arch = 0;
    in.ArchFactor = 0.5F;
    in.AbutmentAngleActiveGob = 20;
    in.UnitWeight = in.CoalStrength = 160;
    engine::AnalysisResults r = plainResults(4);
    r.TELVOSF = {{1, 1}};
    for (const char units : {'E', 'M'}) {
        current.Units = units == 'E' ? project::English : project::Metric;
        string section = "[WARNINGS]\r\n\r\n";
        string summary;
        std::ifstream texts(TELVO_REPORT_TESTS_DIR "/warning_texts.txt");
        for (string line; std::getline(texts, line);) {
            if (line[0] != units && line[0] != '*') continue;
            const bool risk = line.substr(2, 4) == "risk";
            const string text = line.substr(7, line.size() - 8);
            const string help =
                risk ? "  For more information, consult Help/Stability Factors." : "";
            section += WrapText(text + help, TextWidth) + "\r\n";
            if (risk) summary += text + "\r\n\r\n";
        }
        const Warnings warnings = assessWarnings(current, r, {});
        EXPECT_EQ(warnings.section, section) << units;
        EXPECT_EQ(warnings.WarningSummary, summary) << units;
    }
}

// Wrapped by hand at the last blank within 70 columns.
TEST(WarningTexts, OfLowFactorsNameDepthAndSuggestedFactor) {
    const Panel shallow{.label = "", .flags = {}, .SF = 1.4};
    EXPECT_EQ(assess(shallow).section,
              withCrLf("[WARNINGS]\n\nA. Analysis of the TELVO case history data base suggests "
                       "that the\nrisk of pillar failure is increased when the TELVO SF is less "
                       "than\n1.5.  For more information, consult Help/Stability Factors.\n"));
    // Without a lower factor to offer, three blanks stand before the reference to the help.
    const Panel shortForm{.label = "", .flags = {}, .H = 650.1, .SF = 1.4};
    EXPECT_EQ(assess(shortForm).section,
              withCrLf("[WARNINGS]\n\nB. Analysis of the TELVO case history data base suggests "
                       "that when\nthe depth of cover is 650 ft, the risk of pillar failure is "
                       "increased\nwhen the TELVO SF is less than 1.5   For more information, "
                       "consult\nHelp/Stability Factors.\n"));
    EXPECT_TRUE(assess(shortForm).WarningSummary.ends_with("TELVO SF is less than 1.5 \r\n\r\n"));
    const Panel longForm{.label = "", .flags = {}, .H = 800, .SF = 1.4};
    EXPECT_EQ(assess(longForm).section,
              withCrLf("[WARNINGS]\n\nB. Analysis of the TELVO case history data base suggests "
                       "that when\nthe depth of cover is 800 ft, the risk of pillar failure is "
                       "increased\nwhen the TELVO SF is less than 1.5 or (1.41 if the panel width "
                       "is\nless than 425 ft and the Barrier Pillar SF exceeds 2.0.)   For more\n"
                       "information, consult Help/Stability Factors.\n"));
    // 240 m = 787.40 ft, where 1.4215 is suggested.
    const Panel metric{.label = "", .flags = {}, .H = 240, .SF = 1.4, .units = 1};
    EXPECT_TRUE(assess(metric).WarningSummary.ends_with(
        "the depth of cover is 240 m, the risk of pillar failure is increased when the TELVO SF is "
        "less than 1.5 or (1.42 if the panel width is less than 130 m and the Barrier Pillar SF "
        "exceeds 2.0.) \r\n\r\n"))
        << assess(metric).WarningSummary;
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
        const auto outcome = app::runCase(current);
        const auto* run = std::get_if<app::CaseRun>(&outcome);
        ASSERT_TRUE(run) << file;
        EXPECT_EQ(flagsOf(run->warnings), flags) << file;
        EXPECT_EQ(run->warnings.WarningSummary,
                  json_object_get_string(json_object_object_get(one, "summary")))
            << file;
    }
}

} // namespace
} // namespace telvo::report
