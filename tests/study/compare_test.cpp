// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/compare.h"

#include "goodCase.h"
#include "project/units.h"
#include "study/output/StudyOutput.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace telvo::study {

namespace {

using Lines = std::vector<std::string_view>;

Lines sideOf(const std::vector<DiffLine>& lines, DiffLine::Side side) {
    Lines own;
    for (const DiffLine& line : lines)
        if (line.side == side || line.side == DiffLine::Side::Both) own.push_back(line.text);
    return own;
}

std::size_t commonOf(const std::vector<DiffLine>& lines) {
    std::size_t count = 0;
    for (const DiffLine& line : lines)
        count += line.side == DiffLine::Side::Both;
    return count;
}

/// Longest common subsequence by trying every choice of lines of `before`.
std::size_t longestCommon(const Lines& before, const Lines& after) {
    std::size_t longest = 0;
    for (unsigned choice = 0; choice < 1U << before.size(); ++choice) {
        std::size_t j = 0, taken = 0;
        bool fits = true;
        for (std::size_t i = 0; i < before.size() && fits; ++i) {
            if ((choice >> i & 1) == 0) continue;
            while (j < after.size() && after[j] != before[i])
                ++j;
            fits = j < after.size();
            ++j, ++taken;
        }
        if (fits) longest = std::max(longest, taken);
    }
    return longest;
}

TEST(LineDiff, HoldsBothTextsAndAsManyCommonLinesAsThereAre) {
    const std::string_view words[] = {"a", "b", "c"};
    std::mt19937 draw(1);
    for (int round = 0; round < 300; ++round) {
        Lines before(draw() % 8), after(draw() % 8);
        for (Lines* lines : {&before, &after})
            for (std::string_view& line : *lines)
                line = words[draw() % 3];
        const auto lines = lineDiff(before, after);
        EXPECT_EQ(sideOf(lines, DiffLine::Side::OnlyBefore), before);
        EXPECT_EQ(sideOf(lines, DiffLine::Side::OnlyAfter), after);
        EXPECT_EQ(commonOf(lines), longestCommon(before, after));
    }
}

const ComparedRow& rowOf(const Comparison& comparison, std::string_view name) {
    for (const ComparedRow& row : comparison.rows)
        if (row.name == name) return row;
    ADD_FAILURE() << name;
    return comparison.rows.front();
}

TEST(Compare, TellsDifferenceAndPercentAgainstTheBase) {
    const project::ProjectCase one = tests::goodCase();
    project::ProjectCase other = one;
    other.Input.DepthCover *= 1.25;
    const auto made = compare({{"a", other}, {"b", one}}, 1);
    ASSERT_TRUE(made);
    const ComparedRow& depth = rowOf(*made, "DepthCover");
    EXPECT_TRUE(depth.differs);
    EXPECT_DOUBLE_EQ(*made->percent(depth, 0), 25);
    EXPECT_EQ(*made->difference(depth, 1), 0);
    EXPECT_FALSE(rowOf(*made, "EntryHeight").differs);
    const ComparedRow& factor = rowOf(*made, "TELVOSF.development");
    EXPECT_TRUE(factor.differs);
    EXPECT_EQ(*factor.values[1], made->cases[1].run->results.TELVOSF[engine::Development]);
    EXPECT_FALSE(compare({{"a", one}}));
    EXPECT_FALSE(compare({{"a", one}, {"b", one}}, 2));
}

TEST(Compare, CasesOfBothUnitSystemsAreComparedInTheUnitsOfTheBase) {
    const project::ProjectCase english = tests::goodCase();
    project::ProjectCase metric = english;
    ASSERT_TRUE(project::convertCase(metric));
    for (const std::size_t base : {std::size_t{0}, std::size_t{1}}) {
        const auto made = compare({{"e", english}, {"m", metric}}, base);
        ASSERT_TRUE(made);
        for (const ComparedRow& row : made->rows) {
            if (row.values.empty() || !row.values[0] || !row.values[1]) continue;
            if (row.name == "FileVersion") continue;
            // A conversion rounds lengths to 0.01, which moves no number by 3 in 100.
            EXPECT_NEAR(*row.values[0], *row.values[1],
                        0.03 * std::max(std::abs(*row.values[0]), 0.1))
                << row.name << " " << row.unit;
        }
    }
}

TEST(Compare, OnlyDifferencesLeavesOutWhatIsTheSame) {
    const project::ProjectCase one = tests::goodCase();
    const auto same = compare({{"a", one}, {"b", one}});
    ASSERT_TRUE(same);
    EXPECT_EQ(outputOf(*same, true).table.rows, 0U);
    EXPECT_GT(outputOf(*same, false).table.rows, 30U);
}

} // namespace

} // namespace telvo::study
