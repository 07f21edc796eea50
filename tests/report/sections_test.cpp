// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/sections.h"

#include "base/files.h"
#include "project/CaseFile.h"
#include "report/fixtures.h"
#include "run/caseRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>

namespace telvo::report {
namespace {

using std::string;

constexpr double ton = 2000; // lb
constexpr double psi = 144;  // psf

/// A panel with every table of the report in it. Loads of a side tell their place by their digits:
/// quantity.pass-side, so 6.21E+06 tons is quantity 6 of pass 2 on the first side.
struct FullPanel : Panel {
    FullPanel() {
        current.Title = "North mains";
        current.Description = "A first line that is longer than seventy columns and so has to be "
                              "broken.\r\nA second one.";
        project::ProjectInput& in = current.Input;
        in.BreadthAMZ = 1000.0 / 3;
        in.ArchFactor = 0.82F;
        in.Arch = 0;
        in.WidthC = 55.1F;
        in.ExtentActiveGob = 600;
        in.BarrierFirstGob = 120;
        in.BarrierSecondGob = 110;
        in.RowA = in.RowB = in.RowC = 1;
        r.AnalysisCase = 4;
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
};

/// All pages of that panel, written by hand from the columns' right edges. Row A: 162 pcf x 500 ft
/// x 81 ft x 90 ft = 590,490,000 lb = 2.95E+05 tons, excess 1.1E6 - 295245 = 804755 tons; row B
/// with 85 ft: 309825 and 1.5E6 - 309825 = 1190175 tons. Depth to width: 500 / 400 = 1.25,
/// shown 1.3.
TEST(Sections, ValuesStandUnderTheirHeaderWords) {
    const auto expected = readFile(TELVO_REPORT_TESTS_DIR "/pages.txt");
    ASSERT_TRUE(expected);
    const FullPanel panel;
    const engine::AnalysisResults before = panel.r;
    const ReportPages pages = panel.pages();
    string all;
    for (std::size_t i = 0; i < pages.size(); ++i)
        all += "=== page " + std::to_string(i) + "\r\n" + pages[i];
    EXPECT_EQ(all, withCrLf(*expected));
    EXPECT_EQ(panel.r, before) << "the units of the report leaked into the results";
}

/// The record may hold a factor of another depth; an entered one is the one that is used.
TEST(Sections, PageOfTheInputShowsTheArchFactorThatWasUsed) {
    constexpr std::string_view used =
        "Pressure Arch Factor used by the analysis.........      0.71";
    FullPanel panel;
    panel.r.ArchFactor = 0.71F;
    for (const auto& [arch, stored, shown] :
         {std::tuple{1, 0.95F, true}, {1, 0.71F, false}, {0, 0.95F, false}}) {
        panel.current.Input.Arch = static_cast<std::int16_t>(arch);
        panel.current.Input.ArchFactor = stored;
        EXPECT_EQ(panel.pages()[0].find(used) != string::npos, shown) << arch << ", " << stored;
    }
}

/// The lines of a page that are not empty, each ended by "|", leaders and blanks cut to one.
string outline(const string& page) {
    string out;
    for (const auto line : splitLines(page))
        if (!line.empty()) out += string(line) + "|";
    const auto same = [](char a, char b) { return a == b && (a == '.' || a == ' '); };
    out.erase(std::unique(out.begin(), out.end(), same), out.end());
    return out;
}

TEST(Sections, ShowWhatCaseAndSettingsAskFor) {
    std::ifstream table(TELVO_REPORT_TESTS_DIR "/page_lines.txt");
    int rows = 0;
    for (string line; std::getline(table, line);) {
        if (line[0] == '#') continue;
        ++rows;
        const auto row = cells(line, ';'); // label, settings, page, relation, text
        FullPanel panel;
        panel.apply(row[1]);
        const string page = outline(panel.pages()[static_cast<std::size_t>(row[2][0] - '0')]);
        const bool has = page.find(row[4]) != string::npos;
        EXPECT_TRUE(row[3] == "is"       ? page == row[4]
                    : row[3] == "begins" ? page.starts_with(row[4])
                    : row[3] == "ends"   ? page.ends_with(row[4])
                    : row[3] == "lacks"  ? !has
                                         : has)
            << line << "\n"
            << page;
    }
    EXPECT_GE(rows, 35);
}

string withoutReturns(string text) {
    std::erase(text, '\r');
    return text;
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
    EXPECT_EQ(withCrLf(withoutReturns(page)), page) << "a line break that is not CR LF";
    EXPECT_EQ(std::count_if(page.begin(), page.end(),
                            [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }),
              2 * std::count(page.begin(), page.end(), '\n'))
        << "a control character";
    const auto from = page.find("[PROJECT TITLE]");
    const auto to = page.find("[DEVELOPMENT GEOMETRY PARAMETERS]");
    for (const auto line : splitLines(page.substr(from, to - from)))
        EXPECT_LE(line.size(), 70U) << line;
}

Report runFile(const std::filesystem::path& file, const string& name) {
    auto current = project::newCase(project::English);
    EXPECT_FALSE(project::readCaseFile(file.string(), current).fault) << file;
    current.FileName = name;
    auto outcome = run::runCase(current);
    if (auto* run = std::get_if<run::Run>(&outcome)) return makeReport(*run);
    ADD_FAILURE() << file << " cannot be computed";
    return {};
}

TEST(Reports, OfTheIndependentCasesAreWellFormed) {
    std::size_t cases = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TELVO_CASES_DIR "/verification")) {
        if (entry.path().extension() != ".TLV") continue;
        ++cases;
        const Report run = runFile(entry.path(), "x");
        EXPECT_EQ(run.pages[1].find("[WARNINGS]") != string::npos, run.warnings.AnyWarning);
        for (std::size_t i = 0; i < run.pages.size(); ++i) {
            const string& page = run.pages[i];
            const string label = entry.path().stem().string() + ", page " + std::to_string(i);
            const string end = i == 1 ? "\r\n\r\n" : "\r\n";
            EXPECT_TRUE(page.ends_with(end) && !page.ends_with("\r\n" + end)) << label;
            EXPECT_EQ(withCrLf(withoutReturns(page)), page) << label;
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
        EXPECT_EQ(all, golden ? *golden : "no golden report") << name;
    }
    EXPECT_GE(cases, 8U) << TELVO_EXAMPLES_DIR;
}

TEST(InputEcho, EveryNumberOfTheFormChangesTheLineOfItsLabel) {
    Panel panel;
    panel.r.AnalysisCase = 4;
    panel.current.Input.NumberEntries = project::MaxEntries;
    const auto echo = [&] {
        return inputEchoPage(panel.current, panel.r.AnalysisCase, panel.r.ArchFactor);
    };
    const std::string before = echo();
    for (const project::FieldId id : project::RecordNumbers) {
        const project::InputField& row = project::rowOf(id.field);
        // The loading condition is that of the run.
        if (row.role == project::FieldRole::Carried || row.role == project::FieldRole::Choice)
            continue;
        const double was = get(panel.current.Input, id);
        set(panel.current.Input, id, row.isFlag() ? 1 - was : was - 1);
        const std::string now = echo();
        const auto differs = std::mismatch(before.begin(), before.end(), now.begin(), now.end());
        const auto line = now.rfind('\n', static_cast<std::size_t>(differs.second - now.begin()));
        // "AMZ set automatically" is all that the page says of that flag.
        const std::string label(row.id == project::Field::AMZ    ? "AMZ set"
                                : row.id == project::Field::Arch ? "Pressure Arch Factor set"
                                                                 : row.echoLabel());
        EXPECT_EQ(now.substr(line + 1, label.size()), label) << nameOf(id);
        set(panel.current.Input, id, was);
    }
}

} // namespace
} // namespace telvo::report
