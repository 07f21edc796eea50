// SPDX-License-Identifier: GPL-3.0-or-later
// A spreadsheet program computes the working again, from cells whose kept values are worth nothing.
#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "explain/chapters.h"
#include "explain/workingSheet.h"
#include "project/CaseFile.h"
#include "project/inputFields.h"
#include "run/caseRun.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>

namespace telvo::explain {
namespace {

namespace fs = std::filesystem;
using project::ProjectCase;
using project::ProjectInput;

constexpr std::size_t Value = 3, Formula = 5; // columns

bool hasSpreadsheet() {
    return std::system("ssconvert --version > /dev/null 2>&1") == 0;
}

std::vector<ProjectCase> examples() {
    std::vector<ProjectCase> cases;
    for (const auto& file : fs::directory_iterator(TELVO_EXAMPLES_DIR)) {
        if (file.path().extension() != ".TLV") continue;
        ProjectCase current = project::newCase(project::English);
        if (!project::readCaseFile(file.path().string(), current).fault) cases.push_back(current);
    }
    return cases;
}

std::optional<run::Run> computed(const ProjectCase& current) {
    auto outcome = run::runCase(current);
    auto* good = std::get_if<run::Run>(&outcome);
    return good ? std::optional(std::move(*good)) : std::nullopt;
}

/// Every value of the working, by name.
std::map<std::string, double> workedOut(const run::Run& run) {
    std::map<std::string, double> values;
    for (const Chapter& chapter :
         tracedChapters(run, {}, DefaultDigits, Extent::OfEveryInput).chapters)
        for (const Step& step : chapter.steps)
            values[step.key] = step.value;
    return values;
}

/// What a spreadsheet program makes of the sheets: the texts of the values, by name.
std::map<std::string, std::string> recalculated(const WorkingSheets& working) {
    const auto bytes = table::writeSheets(working.sheets);
    if (!bytes) {
        ADD_FAILURE() << bytes.fault().message << " " << bytes.fault().where;
        return {};
    }
    const fs::path folder =
        fs::path(testing::TempDir()) /
        ("telvo-working-" + std::to_string(reinterpret_cast<std::uintptr_t>(&working)));
    fs::create_directories(folder);
    const std::string book = (folder / "working.xlsx").string();
    const std::string text = (folder / "working.txt").string();
    std::ofstream(book, std::ios::binary) << *bytes;
    const std::string command =
        "ssconvert --recalc -T Gnumeric_stf:stf_assistant -O 'sheet=Working "
        "format=raw separator=\"\t\"' '" +
        book + "' '" + text + "' > /dev/null 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    const auto read = readFile(text);
    std::map<std::string, std::string> values;
    if (read)
        for (const auto line : splitLines(*read)) {
            std::vector<std::string> cells(1);
            for (const char c : line)
                if (c == '\t')
                    cells.emplace_back();
                else
                    cells.back() += c;
            if (cells.size() > Value && !cells[Value].empty()) values[cells[0]] = cells[Value];
        }
    fs::remove_all(folder);
    return values;
}

/// Puts numbers into the colored cells. What no cell may take stays as it is in the case, too.
void enter(table::Sheet& sheet, const ProjectCase& was, ProjectCase& changed) {
    std::map<std::string, double> before;
    project::visitRecordNumbers(was.Input, [&](const auto&, const auto& id, auto number) {
        before[project::nameOf(id)] = static_cast<double>(number);
    });
    project::visitRecordNumbers(changed.Input, [&](const auto&, const auto& id, auto& number) {
        const std::string name = project::nameOf(id);
        if (before[name] == static_cast<double>(number)) return;
        for (auto& cells : sheet.rows)
            if (cells[0].text == "inputs." + name && cells[Value].look == table::CellLook::Input) {
                cells[Value].number = static_cast<double>(number);
                return;
            }
        number = static_cast<std::remove_cvref_t<decltype(number)>>(before[name]);
    });
}

void expectSame(const run::Run& run, const WorkingSheets& working) {
    const auto expected = workedOut(run);
    const auto found = recalculated(working);
    for (const auto& [key, value] : expected) {
        ASSERT_TRUE(found.contains(key)) << key;
        const auto number = leadingNumber(found.at(key));
        ASSERT_TRUE(number) << key << ": " << found.at(key);
        EXPECT_NEAR(number->value, value, 1e-9 * std::abs(value)) << key;
    }
}

/// Cells keep nothing that could be taken for a result.
void makeStale(table::Sheet& sheet) {
    for (auto& cells : sheet.rows)
        for (table::SheetCell& cell : cells)
            if (!cell.formula.empty()) {
                if (cell.number) cell.number = -12345;
                if (!cell.text.empty()) cell.text = "stale";
            }
}

TEST(WorkingSheet, ASpreadsheetComputesTheExamples) {
    if (!hasSpreadsheet()) GTEST_SKIP() << "ssconvert, of gnumeric, is not installed";
    int count = 0;
    for (const ProjectCase& current : examples()) {
        const auto run = computed(current);
        if (!run) continue;
        SCOPED_TRACE(current.FileName);
        WorkingSheets working = workingSheets(*run, {}, "TELVO");
        makeStale(working.sheets[WorkingSheets::Numbers]);
        expectSame(*run, working);
        ++count;
    }
    EXPECT_GE(count, 10);
}

TEST(WorkingSheet, ThePageFollowsItsInputs) {
    if (!hasSpreadsheet()) GTEST_SKIP() << "ssconvert, of gnumeric, is not installed";
    const std::function<void(ProjectInput&)> changes[] = {
        [](ProjectInput& in) { // deep, high, wide gob
            in.DepthCover *= 1.75;
            in.EntryHeight *= 1.9;
            in.ExtentActiveGob *= 4;
        },
        [](ProjectInput& in) { // no arch, short gob, barrier narrower than high
            in.DepthCover *= 0.35;
            in.ExtentActiveGob *= 0.2;
            in.BarrierFirstGob = in.EntryHeight * 0.8;
            in.SlabcutFirstGob = 0;
        },
        [](ProjectInput& in) { // no barrier, no gob, pillars wider than long, steep
            in.BarrierFirstGob = 0;
            in.SlabcutFirstGob = 0;
            in.ExtentActiveGob = 0;
            for (double& distance : in.XcutCenters)
                distance *= 1.7;
            in.AbutmentAngleFirstGob = 90;
        },
        [](ProjectInput& in) { // weak coal: remnants and barriers hand on, slab cut takes all
            in.CoalStrength *= 0.3;
            in.SlabcutSecondGob = in.BarrierSecondGob;
            in.XcutAngle = 70;
            in.WidthC *= 0.5F;
        },
    };
    int count = 0, turn = 0;
    for (const ProjectCase& current : examples()) {
        const auto run = computed(current);
        if (!run) continue;
        ++turn;
        for (const auto& change : changes) {
            // Two of the four for each example: the program takes its time to start.
            if ((&change - changes + turn) % 2 != 0) continue;
            SCOPED_TRACE(current.FileName + " change " + std::to_string(&change - changes));
            WorkingSheets working = workingSheets(*run, {}, "TELVO");
            table::Sheet& sheet = working.sheets[WorkingSheets::Numbers];
            makeStale(sheet);
            ProjectCase changed = current;
            change(changed.Input);
            enter(sheet, current, changed);
            const auto expected = computed(changed);
            if (!expected) continue;
            expectSame(*expected, working);
            ++count;
        }
    }
    EXPECT_GE(count, 20);
}

TEST(WorkingSheet, FormulasAreShownInTheSymbolsOfTheWorking) {
    ProjectCase current = project::newCase(project::English);
    ASSERT_FALSE(project::readCaseFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV", current).fault);
    const auto run = computed(current);
    ASSERT_TRUE(run);
    const WorkingSheets working = workingSheets(*run, {}, "TELVO");
    std::map<std::string, std::string> formulas;
    for (const auto& cells : working.sheets[WorkingSheets::Numbers].rows)
        if (cells.size() > Formula) formulas[cells[0].text] = cells[Formula].text;
    for (const auto& [key, formula] :
         {std::pair{"BarrierCapacity.second", "Wb*sb*B"},
          {"BarrierLoad.retreat.first", "IF(Wb=0,0,Lbt+Tf+Lbs+Lba+Lc)"},
          {"BarrierFrontTransfer.development.first", "0"},
          {"TELVOSF.development", "Kt/Q4"},
          {"BarrierTotalStress.first", "IF(NOT(Wb>0),0,IF(B*Wb=0,0,(Lbt+Tf+Lbs)/(B*Wb)))"},
          {"SideReach.first.2", "MIN(1,1-((D-x)/D)^3)"},
          {"SideShare.second.3", "IF(1-Rs=0,0,(R3-R4)/(1-Rs))"},
          {"PillarSideStress.second.4", "IF(A=0,0,IF(B=0,0,(Ltb+Las)/B)*dR*Sc/A)"}})
        EXPECT_EQ(formulas[key], formula) << key;
}

TEST(WorkingSheet, OnlyInputsThatCountMayBeChanged) {
    ProjectCase current = project::newCase(project::English);
    ASSERT_FALSE(
        project::readCaseFile(TELVO_EXAMPLES_DIR "/retreat-one-section.TLV", current).fault);
    const auto run = computed(current);
    ASSERT_TRUE(run);
    const WorkingSheets working = workingSheets(*run, {}, "TELVO 1");
    const table::Sheet& sheet = working.sheets[WorkingSheets::Numbers];
    EXPECT_TRUE(sheet.locked);
    std::map<std::string, table::CellLook> looks;
    for (const auto& cells : sheet.rows)
        if (cells.size() > Value) looks[cells[0].text] = cells[Value].look;
    for (const char* name : {"DepthCover", "XcutCenters.1", "ExtentActiveGob", "BreadthAMZ"})
        EXPECT_EQ(looks.at("inputs." + std::string(name)), table::CellLook::Input) << name;
    for (const char* name : {"Anal", "NumberEntries", "RowA", "Arch", "AMZ", "ExtentSecondGob"})
        EXPECT_EQ(looks.at("inputs." + std::string(name)), table::CellLook::Fixed) << name;
}

} // namespace
} // namespace telvo::explain
