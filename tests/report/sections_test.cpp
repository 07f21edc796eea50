// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/sections.h"

#include "app/caseRun.h"
#include "base/files.h"
#include "project/CaseFile.h"
#include "report/fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <string>

namespace telvo::report {
namespace {

using namespace testing;
using std::string;

constexpr double ton = 2000; // lb
constexpr double psi = 144;  // psf

/// A panel with every table of the report in it. Loads of a side tell their place by their digits:
/// quantity.pass-side, so 6.21E+06 tons is quantity 6 of pass 2 on the first side.
struct FullPanel {
    project::ProjectCase current = plainCase();
    engine::AnalysisResults r = plainResults(4);

    FullPanel() {
        project::ProjectInput& in = current.Input;
        in.ExtentActiveGob = 600;
        in.BarrierFirstGob = 120;
        in.BarrierSecondGob = 110;
        in.RowA = in.RowB = in.RowC = 1;
        r.AMZBreadth = 112.25;
        r.AMZArea = 44800;
        r.ExtractionRatioAMZ = 0.4167;
        r.TributaryLoadAMZ = 1.8144e6 * ton;
        r.FrontAbutmentLoad = 3886.6 * ton;
        r.SideAbutmentLoad = {{1000 * ton, 1500.5 * ton}};
        r.RFactorFront = 0.9018;
        r.RFactorSide = {{0.5, 0.9996}};
        r.ArchFactor = 0.1F;
        for (int i = 1; i <= 5; ++i) {
            in.XcutCenters[i] = 80 + i;
            r.MinDimension[i] = 50 + i;
            r.MaxDimension[i] = 70 + i;
            r.PillarArea[i] = 4000 + i;
            r.PillarStrength[i] = (1000 + i) * psi;
            r.PillarCapacity[i] = (1 + i / 10.0) * 1e6 * ton;
        }
        r.TotalCapacityAMZ = 7.62e6 * ton;
        for (int p = 1; p <= 2; ++p) {
            for (int c = 1; c <= 4; ++c)
                r.AMZLoad[p][c] = (p + c / 10.0) * 1e7 * ton;
            for (int c = 2; c <= 4; ++c)
                r.AbutmentLoadAMZ[p][c] = (c + p / 10.0) * 1e6 * ton;
            for (int k = 3; k <= 4; ++k) {
                const double place = p / 10.0 + (k - 2) / 100.0;
                const auto load = [&](int quantity) { return (quantity + place) * 1e6 * ton; };
                r.BarrierTributaryLoad[p][k] = load(1);
                r.BarrierFrontTransfer[p][k] = load(2); // shown with the slab corners: 3
                r.SlabCornerLoad[p][k] = 1e6 * ton;
                r.BarrierSideAbutmentLoad[p][k] = load(4);
                r.BarrierArchLoad[p][k] = load(5);
                r.BarrierLoad[p][k] = load(6);
                r.LTRANSBAR[p][k] = load(7);
                r.LTRANSREM[p][k] = load(8);
                r.LFBAR[p][k] = load(9);
                r.BarrierSF[p][k] = 1 + place;
            }
        }
        r.BarrierStrength = {{3003 * psi, 3004 * psi}};
        r.BarrierCapacity = {{4.3e6 * ton, 4.4e6 * ton}};
        r.BleederStrength[3] = 2003 * psi;
        r.BleederCapacity[3] = 3.3e6 * ton;
        r.BleederLoad[3] = 1.3e6 * ton;
        r.BleederExcess[3] = 2e6 * ton;
        r.AbutmentHalfWidth = 180; // of which the bleeder lends 180 / 90 times its excess
        r.RemnantWidth = {{80.25, 90}};
        r.RemnantTotalCapacity = {{2.1e6 * ton, 2.2e6 * ton}};
        r.RemnantSF = {{1.234, 0.456}};
    }
    ReportPages pages(ReportOptions options = {}) const {
        return writeReport({current, r, options, "build"}, assessWarnings(current, r, options));
    }
};

/// Pages 1 to 5 of that panel, written by hand from the columns' right edges. Row A: 162 pcf x 500
/// ft x 81 ft x 90 ft = 590,490,000 lb = 2.95E+05 tons, excess 1.1E6 - 295245 = 804755 tons; row B
/// with 85 ft: 309825 and 1.5E6 - 309825 = 1190175 tons. Depth to width: 500 / 400 = 1.25,
/// shown 1.3.
TEST(Sections, ValuesStandUnderTheirHeaderWords) {
    const auto expected = readFile(TELVO_REPORT_TESTS_DIR "/pages.txt");
    ASSERT_TRUE(expected);
    const FullPanel panel;
    const engine::AnalysisResults before = panel.r;
    const ReportPages pages = panel.pages();
    string all;
    for (std::size_t i = 1; i < pages.size(); ++i)
        all += "=== page " + std::to_string(i) + "\r\n" + pages[i];
    EXPECT_EQ(all, withCrLf(*expected));
    EXPECT_EQ(panel.r, before) << "the units of the report leaked into the results";
}

TEST(Sections, ForcesAndStressesFollowTheSettings) {
    const struct {
        const char* label;
        std::int16_t units;
        ReportOptions options;
        string pillar, total, front, rowA; // rowA: tributary load of 590,490,000 lb
    } rows[] = {
        {"tons, psi",
         0,
         {0, 1, 0},
         "1001.00      1.10E+06",
         "7.62E+06 (tons)",
         " (tons/ft)",
         "2.95E+05"},
        {"tons, psf",
         0,
         {0, 1, 1},
         "144144.00      1.10E+06",
         "7.62E+06 (tons)",
         " (tons/ft)",
         "2.95E+05"},
        {"lbs, psi",
         0,
         {0, 0, 0},
         "1001.00      2.20E+09",
         "1.52E+10 (lbs)",
         " (lbs/ft)",
         "5.90E+08"},
        {"lbs, psf",
         0,
         {0, 2, 5},
         "144144.00      2.20E+09",
         "1.52E+10 (lbs)",
         " (lbs/ft)",
         "5.90E+08"},
        {"metric stays",
         1,
         {0, 1, 0},
         "144144.00      2.20E+09",
         "1.52E+10 (kN)",
         " (kN/m)",
         "5.90E+08"},
    };
    for (const auto& row : rows) {
        FullPanel panel;
        panel.current.Units = row.units;
        const ReportPages pages = panel.pages(row.options);
        EXPECT_NE(pages[3].find("   " + row.pillar), string::npos) << row.label << pages[3];
        EXPECT_NE(pages[3].find(row.total + "\r\n"), string::npos) << row.label;
        EXPECT_NE(pages[2].find(row.front + "\r\n"), string::npos) << row.label;
        EXPECT_NE(pages[5].find("    " + row.rowA), string::npos) << row.label;
    }
}

/// Lines of a text that are not empty, joined by "|" and with leaders of dots cut to one.
string outline(const string& page) {
    string out;
    for (const auto line : splitLines(page))
        if (!line.empty()) out += string(line) + "|";
    out.erase(std::unique(out.begin(), out.end(),
                          [](char a, char b) { return a == b && (a == '.' || a == ' '); }),
              out.end());
    return out;
}

TEST(Sections, ShowWhatTheLoadingConditionHas) {
    const string dev = "[TELVO STABILITY FACTORS]|Development. 2.50|";
    const string barriers = "[BARRIER PILLAR STABILITY FACTORS]|";
    const struct {
        const char* label;
        int LC;
        double extent, first, second;
        string factors;
        int passes, barrierTables; // of pages 2 and 4
    } rows[] = {
        {"development", 1, 600, 120, 110, dev, 1, 0},
        {"active gob", 2, 600, 120, 110, dev + "Retreat. 2.25|", 2, 0},
        {"active gob of extent 0", 2, 0, 120, 110, dev, 1, 0},
        {"one side gob", 3, 600, 120, 110,
         dev +
             "*Development loading includes one side gob.|Retreat. 2.25|"
             "*Retreat loading includes one side gob.|" +
             barriers + "[FIRST SIDE GOB BARRIER]|Development. 1.11|Retreat. 1.21|",
         2, 2},
        {"one side gob, extent 0", 3, 0, 120, 110,
         dev + "*Development loading includes one side gob.|" + barriers +
             "[FIRST SIDE GOB BARRIER]|Development. 1.11|",
         1, 1},
        {"second barrier alone", 4, 0, 0, 110,
         dev + "*Development loading includes two side gobs.|" + barriers +
             "[SECOND SIDE GOB BARRIER]|Development. 1.12|",
         1, 1},
        {"only the other side has one", 3, 0, 0, 110,
         dev + "*Development loading includes one side gob.|" + barriers, 1, 0},
    };
    for (const auto& row : rows) {
        FullPanel panel;
        panel.r.AnalysisCase = row.LC;
        panel.current.Input.ExtentActiveGob = row.extent;
        panel.current.Input.BarrierFirstGob = row.first;
        panel.current.Input.BarrierSecondGob = row.second;
        const ReportPages pages = panel.pages();
        const string factors = outline(pages[1]);
        EXPECT_EQ(factors.substr(0, factors.find("[WARNINGS]")), row.factors) << row.label;
        EXPECT_EQ(pages[2].find("Development       Retreat") != string::npos, row.passes == 2)
            << row.label;
        int tables = 0;
        for (const auto line : splitLines(pages[4]))
            tables += line.starts_with("LTRANSBAR ");
        EXPECT_EQ(tables, row.barrierTables) << row.label;
        EXPECT_EQ(pages[4] == "[BARRIER PILLAR PARAMETERS]\r\n\r\n***none***\r\n",
                  row.barrierTables == 0)
            << row.label;
    }
}

TEST(Sections, RemnantsAndLeavePillarsSayNone) {
    const string title = "[REMNANT PILLAR AND LEAVE PILLAR PARAMETERS]|";
    const struct {
        const char* label;
        int LC;
        std::int16_t rows;
        double secondLoad;
        bool remnants, leave;
    } rows[] = {{"both", 4, 1, 1, true, true},
                {"leave only", 2, 1, 1, false, true},
                {"remnant only", 4, 0, 1, true, false},
                {"neither", 1, 0, 1, false, false},
                {"no load on one", 4, 0, 0, true, false}};
    for (const auto& row : rows) {
        FullPanel panel;
        panel.r.AnalysisCase = row.LC;
        project::ProjectInput& in = panel.current.Input;
        in.RowA = in.RowB = in.RowC = row.rows;
        panel.r.LFBAR[2][4] = row.secondLoad * ton;
        const string page = outline(panel.pages()[5]);
        if (!row.remnants && !row.leave) {
            EXPECT_EQ(page, title + "***none***|") << row.label;
            continue;
        }
        const auto has = [&](const char* text) { return page.find(text) != string::npos; };
        EXPECT_EQ(has("- DATA]|***none***|"), !row.remnants) << row.label;
        EXPECT_EQ(has("[LEAVE PILLAR PARAMETERS]|***none***|"), !row.leave) << row.label;
        EXPECT_EQ(has("|Second "), row.remnants && row.secondLoad > 0) << row.label;
        EXPECT_TRUE(page.ends_with("|*Adjusted for effective length of the remnant barrier.|"));
    }
}

TEST(InputEcho, ShowsInputsAsTheFilesDo) {
    FullPanel panel;
    panel.current.Input.DepthCover = 1000.0 / 3;
    panel.current.Input.ArchFactor = 0.82F;
    panel.current.Input.WidthC = 55.1F;
    panel.current.Input.Arch = 0;
    const string page = "\r\n" + panel.pages()[0];
    for (const string& line :
         {DotLeader("Depth of Cover", 50) + "333.3333333 (ft)",
          DotLeader("Number of Entries", 50) + "         6",
          DotLeader("Center to Center Distance #5", 50) + "        85 (ft)",
          DotLeader("Pressure Arch Factor", 50) + "      0.82",
          DotLeader("Width of pillars in row 'C'", 50) + "      55.1 (ft)",
          DotLeader("Abutment Angle of Second Gob", 50) + "        21 (deg)",
          DotLeader("Leave pillar Row 'C' in place", 50) + "       yes",
          DotLeader("Leave pillar Row 'D' in place", 50) + "        no",
          DotLeader("Loading Condition", 50) + "ONE ACTIVE SECTION AND TWO SIDE GOBS",
          string("AMZ set automatically"), string("Pressure Arch Factor set manualy"),
          string("Units: ft, in, lbs, psi, pcf"), string("TELVO module build: build")})
        EXPECT_NE(page.find("\r\n" + line + "\r\n"), string::npos) << line;
    EXPECT_EQ(page.find("Distance #6"), string::npos);
}

TEST(InputEcho, NoUserTextBreaksTheReport) {
    FullPanel panel;
    panel.current.FileName = "a\r\n[WARNINGS]\n.TLV";
    panel.current.Title = string(300, 'Q') + "\r\n\x1B[2J\f" + string(1, '\0') + "end";
    panel.current.Description = string(69, 'x') + " " + string(140, 'q') + "\r\n\r\nz\ta\x7F\rlast";
    const string page = panel.pages()[0];
    EXPECT_EQ(std::count(page.begin(), page.end(), 'Q'), 300);
    EXPECT_EQ(std::count(page.begin(), page.end(), 'q'), 140);
    EXPECT_EQ(page.find("\n[WARNINGS]"), string::npos);
    EXPECT_EQ(withCrLf(withLineFeeds(page)), page) << "a line break that is not CR LF";
    EXPECT_EQ(std::count_if(page.begin(), page.end(),
                            [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }),
              2 * std::count(page.begin(), page.end(), '\n'))
        << "a control character";
    const auto from = page.find("[PROJECT TITLE]");
    const auto to = page.find("[DEVELOPMENT GEOMETRY PARAMETERS]");
    for (const auto line : splitLines(page.substr(from, to - from)))
        EXPECT_LE(line.size(), 70U) << line;
}

app::CaseRun runFile(const std::filesystem::path& file, const string& name) {
    auto current = project::newCase(project::English);
    EXPECT_FALSE(project::readCaseFile(file.string(), current).fault) << file;
    current.FileName = name;
    auto outcome = app::runCase(current);
    if (auto* run = std::get_if<app::CaseRun>(&outcome)) return std::move(*run);
    ADD_FAILURE() << file << " cannot be computed";
    return {};
}

/// Checks that the rows of a page's tables of loads add up to TOTAL, within the digits shown.
void expectSums(const string& page, const string& label) {
    std::map<std::size_t, double> sums; // by column
    for (const auto part : splitLines(page)) {
        const string line(part);
        if (line.starts_with("LTRANSBAR")) continue; // below the total
        if (line.starts_with("Tributary Area")) sums.clear();
        for (auto at = line.find("E+"); at != string::npos; at = line.find("E+", at + 1)) {
            const double value = std::stod(line.substr(at - 5));
            if (!line.starts_with("TOTAL"))
                sums[at] += value;
            else
                EXPECT_NEAR(sums[at], value, 0.02 * std::abs(value)) << label << line;
        }
    }
}

TEST(Reports, OfTheIndependentCasesAreWellFormed) {
    std::size_t cases = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TELVO_CASES_DIR "/verification")) {
        if (entry.path().extension() != ".TLV") continue;
        ++cases;
        const app::CaseRun run = runFile(entry.path(), "x");
        EXPECT_EQ(run.pages[1].find("[WARNINGS]") != string::npos, run.warnings.AnyWarning);
        for (std::size_t i = 0; i < run.pages.size(); ++i) {
            const string& page = run.pages[i];
            const string label = entry.path().stem().string() + ", page " + std::to_string(i);
            const string end = i == 1 ? "\r\n\r\n" : "\r\n";
            EXPECT_TRUE(page.ends_with(end) && !page.ends_with("\r\n" + end)) << label;
            EXPECT_EQ(withCrLf(withLineFeeds(page)), page) << label;
            if (i == 2 || i == 4) expectSums(page, label);
        }
    }
    EXPECT_EQ(cases, 42U);
}

TEST(Reports, OfTheExamplesAreTheGoldenOnes) {
    std::size_t cases = 0;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(TELVO_EXAMPLES_DIR, missing)) {
        if (entry.path().extension() != ".TLV") continue;
        ++cases;
        const string name = entry.path().stem().string();
        string all;
        for (const string& page : runFile(entry.path(), "examples/" + name + ".TLV").pages)
            all += page;
        const auto golden = readFile(TELVO_CASES_DIR "/reports/" + name + ".report");
        EXPECT_TRUE(golden && all == *golden) << name;
    }
    EXPECT_GE(cases, 8U) << TELVO_EXAMPLES_DIR;
}

} // namespace
} // namespace telvo::report
