// SPDX-License-Identifier: GPL-3.0-or-later
// Tables of values, what matters, design charts and scenarios give what single cases give.
#include "study/questions/designChart.h"
#include "study/questions/find.h"
#include "study/questions/rangeText.h"
#include "study/questions/scenarios.h"
#include "study/questions/sweep.h"
#include "study/questions/tornado.h"

#include "criteria/criteria.h"
#include "drawnCases.h"
#include "goodCase.h"
#include "project/automatic.h"
#include "run/caseRun.h"
#include "study/named.h"
#include "study/output/factors.h"
#include "study/output/sweepLines.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <numeric>

namespace telvo::study {
namespace {

using project::Field;
using Values = std::vector<double>;
using tests::outcome;
using tests::variable;

/// A panel between two side gobs.
project::ProjectCase deepPanel() {
    project::ProjectCase base = tests::goodCase();
    project::ProjectInput& in = base.Input;
    in.Anal = 3;
    in.ExtentActiveGob = in.ExtentFirstGob = in.ExtentSecondGob = 800;
    in.BarrierFirstGob = 150;
    in.BarrierSecondGob = 100;
    in.SlabcutSecondGob = 20;
    in.RowC = 1;
    in.WidthC = 30;
    return base;
}

bool sameNumber(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

TEST(Ranges, AreReadAsPeopleWriteThem) {
    using project::Field;
    const auto read = [](std::string_view text, Field field = Field::DepthCover) {
        const auto range = parseRange(text, field, project::English);
        return range ? *range : std::optional<Range>({Range::Form::Percent, 0, 0});
    };
    using Form = Range::Form;
    const std::pair<std::string_view, Range> right[] = {
        {"+-10 %", {Form::Percent, -10, 10}},
        {"10%", {Form::Percent, -10, 10}},
        {"\xC2\xB1 2.5%", {Form::Percent, -2.5, 2.5}},
        {" -5 .. +10 % (own)", {Form::Percent, -5, 10}},
        {"-5 to 10%", {Form::Percent, -5, 10}},
        {"+-2", {Form::Offset, -2, 2}},
        {"+/-2 ft", {Form::Offset, -2, 2}},
        {"-0.5 .. +2 ft", {Form::Offset, -0.5, 2}},
        {"+1 .. +2", {Form::Offset, 1, 2}},
        {"800 .. 1000 ft", {Form::Absolute, 800, 1000}},
        {"800..1e3", {Form::Absolute, 800, 1000}},
        {"300 .. 600 m", {Form::Absolute, 984.252, 1968.504}},
        {"+-30 cm", {Form::Offset, -0.984252, 0.984252}},
    };
    for (const auto& [text, range] : right)
        EXPECT_EQ(read(text), range) << text;
    EXPECT_EQ(read("  "), std::nullopt);
    for (const char* text : {"x", "10", "+-", "+-x", "5 ..", ".. 5", "+-3 psi", "1 .. 2 .. 3",
                             "10 % .. 20 ft", "nan .. 5"})
        EXPECT_FALSE(parseRange(text, Field::DepthCover, project::English)) << text;
    EXPECT_EQ(parseRange("900 .. 800", Field::DepthCover, project::English).fault().message,
              "A range goes from a smaller to a greater number, not from 900 to 800");
    EXPECT_FALSE(parseRange("+-0 %", Field::DepthCover, project::English));
    EXPECT_EQ(read("0.3 .. 0.5", Field::ArchFactor), (Range{Form::Absolute, 0.3, 0.5}));
}

TEST(Evaluator, GivesWhatOneCaseAloneGives) {
#ifdef __OPTIMIZE__
    constexpr int panels = 2000;
#else
    constexpr int panels = 60;
#endif
    tests::Draw draw(7);
    const std::vector<Variable> all = variables();
    const std::vector<Outcome> outcomes = {
        outcome("TELVOSF.retreat"), outcome("BarrierSF.retreat.smallest"),
        *outcome("TELVOSF.development").marginToSuggested(),
        *outcome("BarrierSF.development.first").marginToSuggested(), outcome("PillarStrength.1")};
    int computedCases = 0, partly = 0;
    for (int n = 0; n < panels; ++n) {
        project::ProjectCase base = tests::drawnCase(draw);
        const Variable x = all[draw.bits() % all.size()], y = all[draw.bits() % all.size()];
        if (!whyWithoutEffect(base, x).empty())
            continue; // distances that no panel of this size has
        const int rounding = draw.number(3);
        auto evaluator = Evaluator::prepare(base, {x, y}, outcomes, rounding);
        if (!evaluator) continue;
        constexpr std::size_t cases = 37;
        Values xs, ys;
        for (std::size_t i = 0; i < cases; ++i) {
            const bool metric = base.Units != project::English;
            xs.push_back(tests::drawn(draw, x.fields(base.Input).front(), metric));
            ys.push_back(tests::drawn(draw, y.fields(base.Input).front(), metric));
        }
        std::vector<Values> got(outcomes.size(), Values(cases, 4711));
        std::vector<std::uint16_t> flags(cases, 0xaaaa);
        std::vector<std::uint8_t> computed(cases, 77);
        const double* const in[] = {xs.data(), ys.data()};
        std::vector<double*> out;
        for (Values& column : got)
            out.push_back(column.data());
        evaluator->compute(cases, in, out, flags.data(), computed.data());
        for (std::size_t i = 0; i < cases; ++i) {
            const double values[] = {xs[i], ys[i]};
            const project::ProjectCase current = evaluator->caseOf(values);
            const auto ran = run::runCase(current);
            const auto* run = std::get_if<run::Run>(&ran);
            const bool left = x.leftOut(current.Input) || y.leftOut(current.Input);
            ASSERT_EQ(computed[i] != 0, run && !left) << n << " " << x.name() << " " << y.name();
            EXPECT_EQ(evaluator->whyNot(values).empty(), computed[i] != 0);
            computedCases += computed[i];
            for (std::size_t o = 0; o < outcomes.size(); ++o) {
                double expected = std::numeric_limits<double>::quiet_NaN();
                if (computed[i] && outcomes[o].isDefined(run->in, current.Input)) {
                    const auto assessment =
                        criteria::assess(run->in, current.Input, run->results, rounding);
                    EXPECT_EQ(flags[i], assessment.flags);
                    expected = outcomes[o].of(run->results, run->in, current.Input,
                                              assessment.figures.panelLimit);
                } else if (computed[i]) {
                    ++partly;
                }
                ASSERT_TRUE(sameNumber(got[o][i], expected))
                    << n << " " << outcomes[o].name() << " " << x.name() << "=" << xs[i] << " "
                    << y.name() << "=" << ys[i] << ": " << got[o][i] << " for " << expected;
            }
        }
    }
    EXPECT_GT(computedCases, panels * 5);
    EXPECT_GT(partly, panels);
}

TEST(Sweep, RowsAreCasesWithANumberOfTheirOwn) {
    const project::ProjectCase base = deepPanel();
    const SweepRequest request{{{variable("DepthCover"), {700, 900, 1100}},
                                {variable("Barriers"), {0, 100}},
                                {variable("EntryHeight"), {5, 6}}},
                               false,
                               {outcome("TELVOSF.retreat"), outcome("BarrierSF.retreat.second")}};
    const auto table = sweep(base, request);
    ASSERT_TRUE(table) << faultText(table.fault());
    ASSERT_EQ(table->rows(), 12U);
    EXPECT_EQ(table->inputs(0), (Values{700, 0, 5}));
    EXPECT_EQ(table->inputs(1), (Values{700, 0, 6}));
    EXPECT_EQ(table->inputs(11), (Values{1100, 100, 6}));
    std::size_t left = 0;
    for (std::size_t row = 0; row < table->rows(); ++row) {
        const project::ProjectCase current = table->caseOf(row);
        EXPECT_EQ(current.Input.BarrierFirstGob, current.Input.BarrierSecondGob);
        EXPECT_EQ(current.Input.BreadthAMZ,
                  project::automaticAMZBreadth(current.Input.DepthCover, base.Units));
        const auto ran = run::runCase(current);
        EXPECT_EQ(std::holds_alternative<run::Run>(ran), table->computed[row] != 0);
        if (const auto* run = std::get_if<run::Run>(&ran)) {
            EXPECT_EQ(table->outcomes[0][row], run->results.TELVOSF[engine::Retreat]);
            EXPECT_TRUE(table->message(row).empty());
        } else {
            ++left;
            EXPECT_FALSE(table->message(row).empty());
            EXPECT_TRUE(std::isnan(table->outcomes[0][row]));
        }
    }
    EXPECT_EQ(table->tally.runs, 12U);
    EXPECT_EQ(table->tally.notComputed(), left);
    EXPECT_GT(left, 0U) << "a slab cut wider than its barrier";

    SweepRequest linked = request;
    linked.linked = true;
    linked.axes = {{variable("DepthCover"), {700, 900}}, {variable("EntryHeight"), {5, 6}}};
    const auto pairs = sweep(base, linked);
    ASSERT_TRUE(pairs);
    EXPECT_EQ(pairs->rows(), 2U);
    EXPECT_EQ(pairs->inputs(1), (Values{900, 6}));
}

TEST(Sweep, IsTheSameOnAnyNumberOfThreadsAndCanBeStopped) {
    const project::ProjectCase base = deepPanel();
    Values depths(300), heights(300);
    std::iota(depths.begin(), depths.end(), 500);
    for (std::size_t i = 0; i < heights.size(); ++i)
        heights[i] = 4 + 0.01 * static_cast<double>(i);
    const SweepRequest request{
        {{variable("DepthCover"), depths}, {variable("EntryHeight"), heights}},
        false,
        {outcome("TELVOSF.retreat")}};
    const auto one = sweep(base, request, 0, 1);
    const auto seven = sweep(base, request, 0, 7);
    ASSERT_TRUE(one && seven);
    EXPECT_EQ(one->outcomes, seven->outcomes);
    EXPECT_EQ(one->flags, seven->flags);
    std::stop_source stop;
    std::size_t told = 0;
    const auto broken =
        sweep(base, request, 0, 1, stop.get_token(), [&](std::size_t done, std::size_t all) {
            told = done;
            EXPECT_EQ(all, 90'000U);
            stop.request_stop();
        });
    ASSERT_TRUE(broken);
    EXPECT_TRUE(broken->stopped);
    EXPECT_EQ(broken->rows(), told);
    EXPECT_LT(told, 90'000U);
    EXPECT_TRUE(std::equal(broken->outcomes[0].begin(), broken->outcomes[0].end(),
                           one->outcomes[0].begin()));
}

TEST(Sweep, ReadsValuesAndRefusesWhatIsNoTable) {
    EXPECT_EQ(*parseValues("600:1200:200"), (Values{600, 800, 1000, 1200}));
    EXPECT_EQ(*parseValues("6, 8 ,10:20:5"), (Values{6, 8, 10, 15, 20}));
    EXPECT_EQ(*parseValues("3:2:-0.5"), (Values{3, 2.5, 2}));
    EXPECT_EQ(*parseValues("0.1:0.7:0.1"), (Values{0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7}));
    EXPECT_EQ(*parseValues("5:5:1"), (Values{5}));
    for (const char* text : {"", "a", "1:2", "1:2:0", "1:2:-1", "2:1:1", "1:2:3:4", "1,,2",
                             "1:1e9:1e-9", "nan", "1:inf:1", "0:10000001:1"})
        EXPECT_FALSE(parseValues(text)) << text;

    const project::ProjectCase base = tests::goodCase();
    const auto fault = [&](SweepRequest request) {
        if (request.outcomes.empty()) request.outcomes = {outcome("TELVOSF.retreat")};
        const auto table = sweep(base, request);
        return table ? std::string("none") : faultText(table.fault());
    };
    EXPECT_EQ(fault({}), "A table of values varies one to four inputs");
    EXPECT_EQ(fault({{{variable("DepthCover"), {}}}, false, {}}),
              "DepthCover: There are no values");
    EXPECT_EQ(fault({{{variable("DepthCover"), {900}}, {variable("DepthCover"), {9}}}, false, {}}),
              "DepthCover: An input that varies twice: DepthCover");
    EXPECT_EQ(
        fault({{{variable("XcutCenters"), {90}}, {variable("XcutCenters.2"), {9}}}, false, {}}),
        "XcutCenters.2: An input that varies twice: XcutCenters.2");
    EXPECT_EQ(
        fault({{{variable("DepthCover"), {900, 1000}}, {variable("EntryHeight"), {9}}}, true, {}}),
        "EntryHeight: Linked inputs need lists of one length: 1 and 2 values");
    EXPECT_EQ(fault({{{variable("ExtentFirstGob"), {900}}}, false, {}}),
              "ExtentFirstGob: Extent, First Gob changes nothing in this case: this loading "
              "condition has no side gob");
    EXPECT_EQ(fault({{{variable("DepthCover"), {std::nan("")}}}, false, {}}),
              "DepthCover: A value is no number");
    EXPECT_EQ(fault({{{variable("DepthCover"), {900}}}, false, {outcome("PillarStrength.7")}}),
              "PillarStrength.7: No quantity of this case: PillarStrength.7");
    const Values many(100'000, 800.0);
    EXPECT_EQ(fault({{{variable("DepthCover"), many}, {variable("EntryHeight"), many}}, false, {}}),
              "These combinations make more than 10,000,000 rows");
}

TEST(Sweep, AContourRunsBetweenValuesOnBothSides) {
    const project::ProjectCase base = deepPanel();
    const auto table = sweep(base, {{{variable("DepthCover"), *parseValues("400:1600:40")},
                                     {variable("XcutSpacing"), *parseValues("40:160:5")}},
                                    false,
                                    {outcome("TELVOSF.development")}});
    ASSERT_TRUE(table);
    const double level = 1.5;
    const auto lines = contour(*table, 0, level);
    ASSERT_GT(lines.size(), 20U);
    const auto factorAt = [&](double depth, double spacing) {
        const double values[] = {depth, spacing};
        const auto ran = run::runCase(table->evaluator->caseOf(values));
        return std::get<run::Run>(ran).results.TELVOSF[engine::Development];
    };
    for (const ContourSegment& line : lines)
        EXPECT_NEAR(factorAt(line.x0, line.y0), level, 0.04) << line.x0 << " " << line.y0;
}

TEST(Sweep, PiecesOfAContourJoinToLines) {
    using Segments = std::vector<ContourSegment>;
    // Forward, backward, and at both ends; apart from them a closed one and one by itself.
    const Segments segments = {{1, 0, 2, 0}, {3, 0, 2, 0}, {1, 0, 0, 0}, {9, 9, 8, 8},
                               {5, 5, 6, 5}, {6, 5, 6, 6}, {6, 6, 5, 5}};
    const auto lines = joined(segments);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], (Stretch{{0, 0}, {1, 0}, {2, 0}, {3, 0}}));
    EXPECT_EQ(lines[1], (Stretch{{9, 9}, {8, 8}}));
    EXPECT_EQ(lines[2].size(), 4U);
    EXPECT_EQ(lines[2].front(), lines[2].back());

    // The contour of a smooth surface is one line, from edge to edge: neighbors share their points.
    const auto table =
        sweep(deepPanel(), {{{variable("DepthCover"), *parseValues("400:1600:40")},
                             {variable("CoalStrength"), *parseValues("100000:200000:5000")}},
                            false,
                            {outcome("PillarStrength.1")}});
    ASSERT_TRUE(table) << faultText(table.fault());
    const auto& values = table->outcomes[0];
    const double level = (*std::min_element(values.begin(), values.end()) +
                          *std::max_element(values.begin(), values.end())) /
                         2;
    const auto pieces = contour(*table, 0, level);
    ASSERT_GT(pieces.size(), 20U);
    const auto whole = joined(pieces);
    ASSERT_EQ(whole.size(), 1U);
    EXPECT_EQ(whole[0].size(), pieces.size() + 1);
}

TEST(Sweep, LinesOfAPictureFollowTheirLevels) {
    const project::ProjectCase base = deepPanel();
    const auto table = sweep(base, {{{variable("DepthCover"), *parseValues("400:1600:40")}},
                                    false,
                                    {outcome("TELVOSF.retreat"), outcome("TELVOSF.development")}});
    ASSERT_TRUE(table);
    const auto lines = sweepLines(*table, {1.3, std::nullopt});
    ASSERT_EQ(lines.size(), 2U);
    std::size_t above = 0, suggested = 0;
    for (std::size_t row = 0; row < table->rows(); ++row) {
        above += table->outcomes[0][row] >= 1.3;
        const auto limit = suggestedFor(table->caseOf(row), outcome("TELVOSF.retreat"), 0);
        ASSERT_TRUE(limit);
        EXPECT_EQ(lines[1].suggested[row], *limit) << row;
        suggested += table->outcomes[0][row] >= *limit;
    }
    EXPECT_EQ(lines[0].reached, above);
    EXPECT_EQ(lines[1].reached, suggested);
    const std::string headline = sweepHeadline(*table, lines);
    EXPECT_NE(headline.find("in 31 rows; " + std::to_string(above) + " of them reach 1.3, " +
                            std::to_string(suggested) + " reach the suggested factor."),
              std::string::npos)
        << headline;
    // What has no suggested factor has no such line.
    const auto strength =
        sweep(base, {{{variable("DepthCover"), {600, 700}}}, false, {outcome("PillarStrength.1")}});
    EXPECT_TRUE(sweepLines(*strength, {std::nullopt}).empty());
}

TEST(Tornado, BarsAreRunsOfTheCase) {
    const project::ProjectCase base = deepPanel();
    const auto result = tornado(base, {outcome("TELVOSF.retreat"), defaultRanges(base)});
    ASSERT_TRUE(result) << faultText(result.fault());
    const auto factorAt = [&](const Variable& varied, double x) {
        project::ProjectCase current = base;
        current.Input = varied.in(base.Input, base.Units, x);
        const auto ran = run::runCase(current);
        return std::get<run::Run>(ran).results.TELVOSF[engine::Retreat];
    };
    EXPECT_EQ(result->own, factorAt(Field::DepthCover, base.Input.DepthCover));
    EXPECT_EQ(result->bars.size(), defaultRanges(base).size());
    double before = 1e9;
    std::size_t moving = 0;
    for (const TornadoBar& bar : result->bars) {
        if (!bar.withoutEffect.empty()) continue;
        ++moving;
        EXPECT_LE(bar.swing(), before);
        before = bar.swing();
        EXPECT_EQ(bar.atLow, factorAt(bar.variable, bar.range.low)) << bar.variable.name();
        EXPECT_EQ(bar.atHigh, factorAt(bar.variable, bar.range.high)) << bar.variable.name();
        EXPECT_EQ(bar.least->y, factorAt(bar.variable, bar.least->x));
        EXPECT_EQ(bar.most->y, factorAt(bar.variable, bar.most->x));
        EXPECT_LE(bar.least->y, std::min(*bar.atLow, *bar.atHigh));
        EXPECT_GE(bar.most->y, std::max(*bar.atLow, *bar.atHigh));
    }
    EXPECT_GT(moving, 8U);
    EXPECT_LT(moving, result->bars.size());
    EXPECT_TRUE(result->bars.back().withoutEffect.size() > 0);
    EXPECT_TRUE(result->headline.starts_with("Retreat factor of the panel ")) << result->headline;
    ASSERT_EQ(result->bars.front().variable, Field::CoalStrength);
    EXPECT_NE(result->headline.find(result->bars[1].variable.label() + " moves it most: "),
              std::string::npos)
        << result->headline;
    EXPECT_NE(result->headline.find("; In Situ Coal Strength, whose default the limits"),
              std::string::npos);

    // Rounding of the arch factor makes the response to depth jump, also between the ends.
    const auto depth = std::find_if(result->bars.begin(), result->bars.end(), [](const auto& bar) {
        return bar.variable == Field::DepthCover;
    });
    ASSERT_NE(depth, result->bars.end());
    EXPECT_FALSE(depth->jumps.empty());
    EXPECT_EQ(depth->curve.size(), depth->jumps.size() + 1);

    project::ProjectCase broken = base;
    broken.Input.EntryHeight = 0;
    EXPECT_FALSE(tornado(broken, {outcome("TELVOSF.retreat"), defaultRanges(broken)}));
}

TEST(Ranges, FollowTheCaseAndItsLimits) {
    project::ProjectCase base = deepPanel();
    const Variable depth = Field::DepthCover, angle = Field::XcutAngle,
                   slab = Field::SlabcutSecondGob;
    EXPECT_EQ((Range{Range::Form::Percent, -10, 20}.of(base.Input, depth).low), 900);
    EXPECT_EQ((Range{Range::Form::Percent, -10, 20}.of(base.Input, depth).high), 1200);
    EXPECT_EQ((Range{Range::Form::Offset, -3, 3}.of(base.Input, angle).low), 87);
    EXPECT_EQ((Range{Range::Form::Offset, -3, 3}.of(base.Input, angle).high), 90)
        << "the form's limit";
    EXPECT_EQ((Range{Range::Form::Offset, -30, 300}.of(base.Input, slab).low), 0);
    EXPECT_EQ((Range{Range::Form::Offset, -30, 300}.of(base.Input, slab).high), 100)
        << "the barrier";
    EXPECT_EQ((Range{Range::Form::Absolute, 800, 1100}.of(base.Input, depth).high), 1100);
    for (const std::int16_t units : {project::English, project::Metric})
        for (const RangedInput& one : defaultRanges(tests::goodCase(units)))
            EXPECT_LT(one.range.low, one.range.high) << one.variable.name();
    base.Input.Anal = 0;
    EXPECT_EQ(whyWithoutEffect(base, Field::ExtentActiveGob),
              "this loading condition has no active gob");
    EXPECT_EQ(whyWithoutEffect(deepPanel(), Field::WidthD), "row D is not left");
    EXPECT_EQ(whyWithoutEffect(deepPanel(), Field::WidthC), "");
}

TEST(DesignChart, RequiresWhatFindFinds) {
    const project::ProjectCase base = deepPanel();
    DesignChartRequest request{variable("BarrierSecondGob"),
                               {25, 400},
                               1,
                               variable("DepthCover"),
                               *parseValues("600:2000:50"),
                               outcome("BarrierSF.retreat.second"),
                               Criterion::Sense::AtLeast,
                               {1.3, 1.5, 2.0, std::nullopt}};
    const auto chart = designChart(base, request);
    ASSERT_TRUE(chart) << faultText(chart.fault());
    EXPECT_EQ(chart->direction, Direction::FromOn);
    ASSERT_EQ(chart->curves.size(), 4U);
    for (std::size_t t = 0; t < 3; ++t)
        for (const DesignPoint& point : chart->curves[t].points) {
            project::ProjectCase there = base;
            there.Input = request.over.in(base.Input, base.Units, point.over);
            const auto answer = find(there, {request.required,
                                             {request.outcome, request.sense, request.targets[t]},
                                             request.in,
                                             request.step});
            ASSERT_TRUE(answer);
            const bool toTheEnd =
                !answer->intervals.empty() && answer->intervals.back().to.kind == EndKind::RangeEnd;
            ASSERT_EQ(point.state == DesignPoint::State::Never, !toTheEnd) << point.over;
            if (!toTheEnd) continue;
            EXPECT_NEAR(point.required, answer->intervals.back().from.x, 1e-5) << point.over;
            EXPECT_TRUE(point.state != DesignPoint::State::Required ||
                        point.practical == answer->intervals.back().practicalFrom)
                << point.over;
            EXPECT_EQ(point.holdsElsewhere, answer->intervals.size() > 1);
        }
    // What is suggested for barriers is 1.5.
    ASSERT_EQ(chart->curves[3].points.size(), chart->curves[1].points.size());
    EXPECT_EQ(chart->curves[3].points[5].required, chart->curves[1].points[5].required);

    const auto deepest = designChart(base, {variable("DepthCover"),
                                            {100, 2500},
                                            10,
                                            variable("EntryHeight"),
                                            {4, 6, 8, 10},
                                            outcome("TELVOSF.development"),
                                            Criterion::Sense::AtLeast,
                                            {1.5}});
    ASSERT_TRUE(deepest);
    EXPECT_EQ(deepest->direction, Direction::UpTo);
    double before = 1e9;
    for (const DesignPoint& point : deepest->curves[0].points) {
        EXPECT_LE(point.required, before) << "higher pillars stand less deep";
        before = point.required;
        EXPECT_LE(*point.practical, point.required);
    }
    EXPECT_TRUE(deepest->headline.starts_with(
        "For development factor of the panel >= 1.5 Depth of Cover has to be at most "))
        << deepest->headline;

    request.targets = {50.0};
    const auto never = designChart(base, request);
    ASSERT_TRUE(never);
    for (const DesignPoint& point : never->curves[0].points)
        EXPECT_EQ(point.state, DesignPoint::State::Never);
    request.targets.clear();
    EXPECT_FALSE(designChart(base, request));
    request.targets = {1.5};
    request.values = {900, 800};
    EXPECT_FALSE(designChart(base, request));
    request.values = {900, 1000};
    request.over = request.required;
    EXPECT_FALSE(designChart(base, request));
}

TEST(Scenarios, AreCasesWithTheWorstNamed) {
    const project::ProjectCase base = deepPanel();
    const std::vector<Scenario> list = {
        {"Deeper", {{Field::DepthCover, 1400}}},
        {"No side gobs", {{Field::Anal, 1}}},
        {"Impossible", {{Field::EntryHeight, 0}}},
        {"By hand", {{Field::DepthCover, 1400}, {Field::AMZ, 0}, {Field::BreadthAMZ, 120}}},
    };
    const auto table = scenarios(base, list,
                                 {outcome("TELVOSF.retreat"), outcome("BarrierSF.retreat.second"),
                                  outcome("AMZLoad.retreat.front")});
    ASSERT_TRUE(table) << faultText(table.fault());
    ASSERT_EQ(table->rows.size(), 5U);
    EXPECT_EQ(table->rows[1].current.Input.BreadthAMZ,
              project::automaticAMZBreadth(1400, base.Units));
    EXPECT_EQ(table->rows[4].current.Input.BreadthAMZ, 120);
    EXPECT_FALSE(table->rows[2].outcomes[1]) << "no barrier beside it";
    EXPECT_FALSE(table->rows[3].run);
    EXPECT_FALSE(table->rows[3].message.empty());
    for (const ScenarioRow& row : table->rows)
        EXPECT_EQ(row.outcomes[0], row.run
                                       ? std::optional(row.run->results.TELVOSF[engine::Retreat])
                                       : std::nullopt);
    for (std::size_t o = 0; o < 3; ++o)
        for (const ScenarioRow& row : table->rows)
            if (row.outcomes[o]) {
                const double worst = *table->rows[table->worst[o].value()].outcomes[o];
                EXPECT_TRUE(o < 2 ? worst <= *row.outcomes[o] : worst >= *row.outcomes[o]);
            }
    // What is entered counts, also where the case has it set automatically.
    project::ProjectCase automatic = base;
    automatic.Input.Arch = 1;
    const auto entered = withScenario(automatic, {"", {{Field::ArchFactor, 0.5}}});
    EXPECT_EQ(entered.Input.Arch, 0);
    const auto arch =
        scenarios(automatic, {{"Arch", {{Field::ArchFactor, 0.5}}}}, {outcome("TELVOSF.retreat")});
    ASSERT_TRUE(arch);
    EXPECT_NE(arch->rows[1].outcomes[0], arch->rows[0].outcomes[0]);
    EXPECT_FALSE(scenarios(base, {{"", {}}}, {}));
    EXPECT_FALSE(scenarios(base, {{"a", {}}, {"a", {}}}, {}));
    EXPECT_FALSE(scenarios(base, {{"a", {{Field::DepthCover, std::nan("")}}}}, {}));
}

} // namespace
} // namespace telvo::study
