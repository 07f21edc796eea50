// SPDX-License-Identifier: GPL-3.0-or-later
// Works every printed substitution out again and looks for every reported figure.
#include "base/numbers.h"
#include "base/text.h"
#include "calculator.h"
#include "engine/quantities.h"
#include "engine/quantityNames.h"
#include "explain/Working.h"
#include "explain/workingText.h"
#include "project/CaseFile.h"
#include "report/sections.h"
#include "run/caseRun.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <set>

namespace telvo::explain {
namespace {

using project::ProjectCase;

std::optional<run::Run> ran(const ProjectCase& current) {
    auto outcome = run::runCase(current);
    if (auto* run = std::get_if<run::Run>(&outcome)) return std::move(*run);
    return std::nullopt;
}

std::vector<ProjectCase> storedCases() {
    std::vector<ProjectCase> cases;
    for (const char* folder : {TELVO_CASES_DIR "/verification", TELVO_EXAMPLES_DIR})
        for (const auto& file : std::filesystem::directory_iterator(folder)) {
            if (file.path().extension() != ".TLV") continue;
            ProjectCase current = project::newCase(project::English);
            EXPECT_FALSE(project::readCaseFile(file.path().string(), current).fault);
            cases.push_back(current);
        }
    return cases;
}

ProjectCase storedCase(const std::string& name) {
    ProjectCase current = project::newCase(project::English);
    EXPECT_FALSE(project::readCaseFile(TELVO_EXAMPLES_DIR "/" + name + ".TLV", current).fault);
    return current;
}

/// Cases that meet the branches of the rules, their corners more often than a mine would.
std::vector<ProjectCase> drawnCases(int count) {
    std::mt19937 random(20260307);
    const auto pick = [&](std::initializer_list<double> values) {
        return values.begin()[random() % values.size()];
    };
    std::vector<ProjectCase> cases;
    for (int i = 0; i < count; ++i) {
        ProjectCase c = project::newCase(i % 3 == 0 ? project::Metric : project::English);
        const double f = c.Units == project::Metric ? 0.3 : 1;
        const auto flag = [&] { return static_cast<std::int16_t>(random() % 2); };
        auto& in = c.Input;
        in.EntryHeight = f * pick({4, 6, 12});
        in.EntryWidth = f * 18;
        in.DepthCover = f * pick({24, 90, 333, 700, 1000, 2400});
        in.XcutSpacing = f * pick({60, 90, 120});
        in.XcutAngle = pick({45, 60, 90});
        in.NumberEntries = static_cast<std::int16_t>(pick({2, 3, 4, 6, 10}));
        for (int pillar = 1; pillar <= 9; ++pillar)
            in.XcutCenters[pillar] = f * pick({18, 55, 78, 120});
        in.BreadthAMZ = f * pick({112, 400});
        in.Anal = static_cast<std::int16_t>(i % 4);
        in.Arch = flag();
        in.ArchFactor = static_cast<float>(pick({0.28, 0.71, 1}));
        in.ExtentActiveGob = f * pick({0, 150, 600, 2000});
        in.ExtentFirstGob = f * pick({0, 150, 2000});
        in.ExtentSecondGob = f * pick({0, 800});
        in.AbutmentAngleActiveGob = pick({5, 21, 45, 90});
        in.AbutmentAngleFirstGob = pick({21, 90});
        in.AbutmentAngleSecondGob = pick({10, 21});
        in.BarrierFirstGob = f * pick({0, 3, 20, 40, 100, 900});
        in.BarrierSecondGob = f * pick({0, 15, 60});
        in.SlabcutFirstGob = std::min(in.BarrierFirstGob, f * pick({0, 15, 40}));
        in.SlabcutSecondGob = std::min(in.BarrierSecondGob, f * pick({0, 60}));
        in.RowA = flag();
        in.RowB = flag();
        in.RowC = flag();
        in.RowD = flag();
        in.WidthC = static_cast<float>(f * pick({10, 90}));
        in.WidthD = static_cast<float>(f * 60);
        cases.push_back(c);
    }
    return cases;
}

/// What the single precision of a quantity allows, over and above its formula.
double singlePrecision(const Step& step) {
    for (const char* name :
         {".tributary", "AMZLoad", "TributaryStress", "AbutmentExtent", "ArchF", "SuggestedSF"})
        if (step.key.find(name) != std::string::npos) return 1.2e-7;
    return 0;
}

/// How far the last digit of the numbers may move a result: the sum over the operands, cancellation
/// included.
double spread(const Step& step, double relative) {
    std::map<std::string, double> symbols;
    for (const Operand& operand : step.operands)
        symbols[operand.symbol] =
            operand.unit == "deg" ? operand.value * std::acos(-1.0) / 180 : operand.value;
    const double exact = test::Calculator(symbols)(step.formula);
    double sum = 0;
    for (const Operand& operand : step.operands) {
        double most = 0;
        for (const double sign : {-1.0, 1.0}) {
            auto moved = symbols;
            moved[operand.symbol] *= 1 + sign * relative;
            most = std::max(most, std::abs(test::Calculator(moved)(step.formula) - exact));
        }
        sum += most;
    }
    return sum;
}

double halfLastDigit(int digits) {
    return digits == MostDigits ? 1e-13 : 0.501 * std::pow(10, 1 - digits);
}

/// Walks formula and substitution side by side: they may only differ where a symbol stands, and
/// there by its number and unit.
void expectNumbersForSymbols(const std::string& formula, const std::string& text, const Step& step,
                             int digits) {
    std::size_t at = 0;
    for (std::size_t i = 0; i < formula.size();) {
        std::size_t end = i;
        while (end < formula.size() && std::isalnum(static_cast<unsigned char>(formula[end])))
            ++end;
        const std::string word = formula.substr(i, std::max<std::size_t>(end - i, 1));
        const auto operand = std::find_if(step.operands.begin(), step.operands.end(),
                                          [&](const Operand& o) { return o.symbol == word; });
        i += word.size();
        if (operand == step.operands.end()) {
            ASSERT_EQ(text.substr(at, word.size()), word) << formula << "\n" << text;
            at += word.size();
            continue;
        }
        const bool apart = text[at] == '(';
        at += apart;
        const auto shown = leadingNumber(text.substr(at));
        ASSERT_TRUE(shown) << text;
        at += shown->length;
        EXPECT_LE(std::abs(shown->value - operand->value),
                  std::abs(operand->value) * halfLastDigit(digits));
        const std::string behind =
            (operand->unit.empty() ? "" : " " + operand->unit) + (apart ? ")" : "");
        ASSERT_EQ(text.substr(at, behind.size()), behind) << text;
        at += behind.size();
    }
    EXPECT_EQ(at, text.size());
}

void expectConditionHolds(const Step& step, int digits) {
    if (step.condition.empty()) return;
    expectNumbersForSymbols(step.condition, step.conditionShown, step, digits);
    std::map<std::string, double> symbols;
    for (const Operand& operand : step.operands)
        symbols[operand.symbol] = operand.value;
    const auto sign = step.condition.find_first_of("<=>");
    const auto behind = step.condition.find(' ', sign);
    const double left = test::Calculator(symbols)(trimmed(step.condition.substr(0, sign)));
    const double right = test::Calculator(symbols)(trimmed(step.condition.substr(behind)));
    const std::string relation = step.condition.substr(sign, behind - sign);
    EXPECT_TRUE(relation == "<"    ? left < right
                : relation == "<=" ? left <= right
                : relation == "="  ? left == right
                : relation == ">=" ? left >= right
                                   : left > right)
        << step.conditionShown;
}

void expectReproduced(const Step& step, int digits) {
    const double half = halfLastDigit(digits);
    expectNumbersForSymbols(step.formula, step.substituted, step, digits);
    expectConditionHolds(step, digits);
    const double worked = test::Calculator()(step.substituted);
    const double tolerance =
        spread(step, half) + (singlePrecision(step) + 1e-12) * std::abs(step.value);
    EXPECT_NEAR(worked, step.value, tolerance) << step.formula << "\n" << step.substituted;
    EXPECT_NEAR(leadingValue(step.result), step.value, half * std::abs(step.value));
    for (const Printed& printed : step.printed) {
        ASSERT_TRUE(leadingNumber(printed.figure)) << printedText(printed);
        const double converted =
            printed.conversion.empty() ? step.value : test::Calculator()(printed.conversion);
        const auto exponent = printed.figure.find('E');
        const std::string mantissa = printed.figure.substr(0, exponent);
        const auto point = mantissa.find('.');
        const double places =
            point == std::string::npos ? 0 : static_cast<double>(mantissa.size() - point - 1);
        const double ten =
            exponent == std::string::npos ? 0 : leadingValue(printed.figure.substr(exponent + 1));
        const double last = std::pow(10, ten - places);
        EXPECT_NEAR(leadingValue(printed.figure), converted,
                    last * (printed.rounding.starts_with("cut") ? 1.0001 : 0.5001) +
                        half * std::abs(converted))
            << printedText(printed);
    }
}

void expectReproduced(const Chapters& chapters, int digits) {
    for (const Chapter& chapter : chapters)
        for (const Step& step : chapter.steps) {
            SCOPED_TRACE(step.key);
            if (!step.formula.empty()) expectReproduced(step, digits);
        }
}

bool isNumber(std::string_view token) {
    return token.find_first_not_of("0123456789.E+-*") == std::string_view::npos &&
           token.find_first_of("0123456789") != std::string_view::npos && token.back() != '.';
}

/// Every number on pages 1 to 5 is told beside a step.
void expectFiguresTold(const run::Run& run, const report::ReportOptions& options,
                       const Chapters& chapters) {
    std::set<std::string> told;
    for (const Chapter& chapter : chapters)
        for (const Step& step : chapter.steps)
            for (const Printed& p : step.printed)
                told.insert(std::to_string(p.page) + ":" + std::to_string(p.line) + ":" + p.figure);
    const report::Report report = report::makeReport(run, options);
    report::ReportPages pages = report.pages;
    if (const std::size_t at = pages[1].find(report.warnings.section); at != std::string::npos)
        pages[1].erase(at); // words with numbers of their own
    for (std::size_t page = 1; page < pages.size(); ++page) {
        int number = 0;
        for (const auto line : splitLines(pages[page])) {
            ++number;
            std::istringstream words{std::string(line)};
            bool first = true;
            for (std::string word; words >> word; first = false) {
                if (!isNumber(word) || first) continue; // a pillar's number comes first
                if (word.back() == '*') word.pop_back();
                if (word.empty() || !std::isdigit(static_cast<unsigned char>(word.back())))
                    continue;
                EXPECT_TRUE(
                    told.contains(std::to_string(page) + ":" + std::to_string(number) + ":" + word))
                    << "page " << page << ": " << line;
            }
        }
    }
}

void expectEverythingReached(const run::Run& run, const Chapters& chapters) {
    std::map<std::string, const Step*> steps;
    for (const Chapter& chapter : chapters)
        for (const Step& step : chapter.steps)
            EXPECT_TRUE(steps.emplace(step.key, &step).second) << step.key << " stands twice";
    engine::visitQuantities(run.results, [&](const char* name, engine::Kind, const auto& field) {
        engine::flatten(name, field, run.results.NumberPillars,
                        [&](const std::string& key, auto value) {
                            ASSERT_TRUE(steps.contains(key)) << key;
                            const Step& step = *steps[key];
                            EXPECT_EQ(step.value, value) << key;
                            EXPECT_FALSE(step.title.empty()) << key;
                            EXPECT_TRUE(!step.formula.empty() || value == 0) << key;
                        });
    });
    std::set<std::string> before;
    for (const Step& step : chapters.back().steps)
        if (step.formula.empty()) before.insert(step.key);
    for (const Chapter& chapter : chapters)
        for (const Step& step : chapter.steps) {
            for (const Operand& operand : step.operands) {
                EXPECT_TRUE(before.contains(operand.key)) << operand.key << " after " << step.key;
                EXPECT_EQ(steps.at(operand.key)->value, operand.value) << operand.key;
            }
            before.insert(step.key);
        }
}

std::string labelOf(const run::Run& run, std::size_t number) {
    return run.current.FileName + " " + std::to_string(number);
}

TEST(Working, EveryStoredCaseIsReproducedAndToldInFull) {
    std::size_t number = 0;
    for (const ProjectCase& current : storedCases()) {
        const auto run = ran(current);
        ASSERT_TRUE(run);
        SCOPED_TRACE(labelOf(*run, ++number));
        struct {
            report::ReportOptions options;
            int digits;
        } const rounds[] = {{{0, 1, 0}, DefaultDigits}, {{0, 1, 0}, MostDigits}, {{2, 0, 1}, 4}};
        for (const auto& [options, digits] : rounds) {
            const Chapters chapters = explain(*run, options, digits);
            expectReproduced(chapters, digits);
            expectFiguresTold(*run, options, chapters);
            expectEverythingReached(*run, chapters);
        }
        if (HasFailure()) return; // the next ones would say the same
    }
    EXPECT_GE(number, 52U);
}

TEST(Working, DrawnCasesAreReproduced) {
    std::size_t number = 0, computed = 0;
    for (const ProjectCase& current : drawnCases(160)) {
        ++number;
        const auto run = ran(current);
        if (!run) continue;
        ++computed;
        SCOPED_TRACE(labelOf(*run, number));
        const Chapters chapters = explain(*run, {}, MostDigits);
        expectReproduced(chapters, MostDigits);
        expectEverythingReached(*run, chapters);
        expectFiguresTold(*run, {}, chapters);
        if (HasFailure()) return;
    }
    EXPECT_GT(computed, 80U);
}

TEST(Working, OneQuantityComesWithAllThatLeadsToIt) {
    const auto run = ran(storedCase("two-side-gobs"));
    const Chapters all = explain(*run, {});
    const Chapters some = leadingTo(all, "TELVOSF.retreat");
    EXPECT_EQ(some.back().steps.back().key, "TELVOSF.retreat");
    for (const char* key : {"inputs.BarrierSecondGob", "LTRANSREM.retreat.second", "CoalStrength"})
        EXPECT_TRUE(findStep(some, key)) << key;
    for (const char* key : {"inputs.RowA", "TELVOSF.development", "LFBAR.development.first"})
        EXPECT_FALSE(findStep(some, key)) << key;
    EXPECT_TRUE(leadingTo(all, "none").empty());
    EXPECT_EQ(leadingTo(all, "inputs.RowA").size(), 1U);
    const Chapters several = leadingTo(all, "BarrierSF.retreat");
    for (const char* key : {"BarrierSF.retreat.first", "BarrierSF.retreat.second"})
        EXPECT_TRUE(findStep(several, key)) << key;
    EXPECT_FALSE(findStep(several, "BarrierSF.development.first"));
}

TEST(Working, AWrongNameFindsItsNeighbours) {
    const auto run = ran(storedCase("two-side-gobs"));
    const Chapters all = explain(*run, {});
    EXPECT_EQ(nearMatches(all, "tELVOSF.retreet").at(0), "TELVOSF.retreat");
    EXPECT_EQ(nearMatches(all, "BarierSF").at(0), "BarrierSF.development.first");
    EXPECT_EQ(nearMatches(all, "SF", 3).size(), 3U);
    EXPECT_TRUE(nearMatches(all, "qqqqqqqq").empty());
}

TEST(Working, TextIsWrappedBetweenNumberAndSign) {
    const auto run = ran(storedCase("metric-two-side-gobs"));
    const std::string text = workingText(explain(*run, {}));
    for (const auto line : splitLines(text)) {
        EXPECT_LE(characterCount(line), ConsoleWidth) << line;
        // A unit is never parted from its number.
        for (const std::string_view unit : {"kPa", "kN", "m ", "m2 "})
            EXPECT_FALSE(trimmed(line).starts_with(unit)) << line;
    }
}

} // namespace
} // namespace telvo::explain
