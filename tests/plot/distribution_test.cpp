// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/distribution.h"

#include "base/numbers.h"
#include "engine/questions.h"
#include "plans.h"
#include "run/caseRun.h"

namespace telvo::plot {

namespace {

using engine::Development, engine::Retreat;

run::Run computed(const project::ProjectCase& current) {
    return std::get<run::Run>(run::runCase(current));
}

/// Stresses in psf, the run's own unit; forces in tons (1) or pounds.
report::ReportOptions inPsf(int forces = 1) {
    report::ReportOptions options;
    options.OutputStrGradUnits = forces;
    options.OutputStrUnits = 1;
    return options;
}

/// Pillars of 60 by 80 ft, 80 ft apart, between barriers of 150 and 60 ft; the AMZ is 150 ft deep,
/// 900 ft below ground of 162 pcf.
project::ProjectCase twoGobs() {
    return example("two-side-gobs");
}

} // namespace

TEST(CapacityDistribution, BarsLieToScaleAndTheirSumTimesTheRowsIsTheTotalOfPageThree) {
    const run::Run run = computed(twoGobs());
    const Distribution made = capacityDistribution(run, {});
    ASSERT_EQ(made.bars.size(), 4U);
    EXPECT_EQ(made.bars[1].name, "2");
    EXPECT_EQ(made.bars[1].left, 80 + 10);
    EXPECT_EQ(made.bars[1].right, 80 + 70);
    // S1 = 900 psi, w = 60, L = 80, h = 7: 900 (0.64 + 0.54 60/7 - 0.18 60^2/(7 80)) psi on
    // 4800 ft2; 144 psf in a psi, 2000 lb in a ton.
    const double h = run.current.Input.EntryHeight;
    const double psi = 900 * (0.64 + 0.54 * 60 / h - 0.18 * 3600 / (h * 80));
    double sum = 0;
    for (const Bar& bar : made.bars) {
        EXPECT_NEAR(bar.height, psi * 144 * 4800 / 2000, 1e-6 * bar.height);
        sum += bar.height;
    }
    EXPECT_EQ(made.quantity, "Load-bearing capacity (tons)");
    const std::string total = formatPattern(sum * 150 / 100, "#.00E+00");
    EXPECT_EQ(made.total,
              "Total load-bearing capacity of pillars within AMZ: " + total + " (tons)");
    EXPECT_EQ(made.bars[0].figure, formatPattern(made.bars[0].height, "#.00E+00"));
    EXPECT_TRUE(distributionCsv(made).starts_with(
        "Pillar,Left rib (ft),Width (ft),Load-bearing capacity (tons)\r\n1,10,60,"));
}

TEST(ValueSpan, LeavesOutWhatWouldFlattenTheRest) {
    const auto bar = [](int pillar, double height, double strength) {
        Bar made{.name = "x", .pillar = pillar, .side = pillar == 0 ? 3 : 0, .height = height};
        made.parts = {height};
        made.strength = strength;
        return made;
    };
    Distribution made;
    EXPECT_EQ(valueSpan(made).highest, 1); // an axis needs a length
    made.bars = {bar(1, 100, 50), bar(0, 80, 160)};
    EXPECT_EQ(valueSpan(made).highest, 160); // 1.6 times the highest stress still counts
    made.bars[1].strength = 161;
    EXPECT_EQ(valueSpan(made).highest, 100);
    EXPECT_FALSE(valueSpan(made).shows(161));
    made.bars[0].strength = 900; // that of a pillar is never off the scale
    EXPECT_EQ(valueSpan(made).highest, 900);
    EXPECT_TRUE(valueSpan(made).shows(161));
    EXPECT_EQ(valueSpan(made).lowest, 0);
    made.bars[0].parts = {120, -20, -5};
    EXPECT_EQ(valueSpan(made).lowest, -25);
}

TEST(StressDistribution, RetreatStacksTheStressesOfTheRun) {
    const run::Run run = computed(twoGobs());
    const auto& r = run.results;
    const Distribution made = stressDistribution(run, inPsf(), Retreat);
    EXPECT_EQ(made.quantity, "Stress (psf)");
    ASSERT_EQ(made.bars.size(), 6U);
    EXPECT_EQ(made.bars.front().name, "1st barrier");
    EXPECT_EQ(made.bars.front().left, -10 - 150);
    EXPECT_EQ(made.bars.back().right, 330 + 60);
    for (const Bar& bar : made.bars) {
        const int i = bar.pillar;
        const double total = bar.isBarrier() ? r.BarrierTotalStress[bar.side]
                                             : r.TributaryStress + r.PillarSideStress[3][i] +
                                                   r.PillarSideStress[4][i];
        EXPECT_NEAR(bar.height, total, 1e-9 * total) << bar.name;
        EXPECT_EQ(*bar.strength,
                  bar.isBarrier() ? r.BarrierStrength[bar.side] : r.PillarStrength[i]);
        EXPECT_EQ(bar.figure, formatPattern(bar.height, "##0")); // no digits that mean nothing
        EXPECT_NE(barHint(made, bar).find(formatPattern(bar.height, "##0.00")), std::string::npos);
    }
}

TEST(StressDistribution, DevelopmentFollowsFromItsOwnLoads) {
    const run::Run run = computed(twoGobs());
    const auto& r = run.results;
    const Distribution made = stressDistribution(run, inPsf(), Development);
    const Distribution retreat = stressDistribution(run, inPsf(), Retreat);
    // The second barrier: 60 by 150 ft.
    const double area = 60 * 150;
    const Bar& barrier = made.bars.back();
    const double loads = r.BarrierTributaryLoad[1][4] + r.BarrierFrontTransfer[1][4] +
                         r.BarrierSideAbutmentLoad[1][4];
    EXPECT_NEAR(barrier.height, loads / area, 1e-9 * barrier.height);
    EXPECT_LT(barrier.height, retreat.bars.back().height); // the remnant stands only on retreat
    // What the barrier hands on differs between the passes, its spread over the pillars does not.
    const double perFoot[] = {r.LTRANSBAR[1][4] + r.AbutmentLoadAMZ[1][4],
                              r.LTRANSBAR[2][4] + r.AbutmentLoadAMZ[2][4]};
    ASSERT_LT(perFoot[0], perFoot[1]);
    for (std::size_t i = 2; i <= 4; ++i)
        EXPECT_NEAR(made.bars[i].parts[3], retreat.bars[i].parts[3] * perFoot[0] / perFoot[1],
                    1e-9 * retreat.bars[i].height);
    EXPECT_EQ(made.bars[1].parts[0], retreat.bars[1].parts[0]); // tributary
}

TEST(StressDistribution, AMirroredCaseGivesMirroredBars) {
    project::ProjectCase mirrored = twoGobs();
    auto& in = mirrored.Input;
    std::swap(in.BarrierFirstGob, in.BarrierSecondGob);
    std::swap(in.ExtentFirstGob, in.ExtentSecondGob);
    std::swap(in.AbutmentAngleFirstGob, in.AbutmentAngleSecondGob);
    std::swap(in.SlabcutFirstGob, in.SlabcutSecondGob);
    const run::Run run = computed(twoGobs()), other = computed(mirrored);
    for (const int pass : {Development, Retreat}) {
        const auto bars = stressDistribution(run, {}, pass).bars;
        const auto back = stressDistribution(other, {}, pass).bars;
        for (std::size_t b = 0; b < bars.size(); ++b) {
            const Bar& twin = back[back.size() - 1 - b];
            EXPECT_NEAR(bars[b].height, twin.height, 1e-9 * twin.height);
            EXPECT_NEAR(bars[b].parts[2], twin.parts[3], 1e-9 * twin.height);
            EXPECT_EQ(bars[b].left, 320 - twin.right);
        }
    }
}

TEST(Distributions, AreInTheUnitsOfTheReport) {
    const run::Run english = computed(twoGobs()),
                   metric = computed(example("metric-two-side-gobs"));
    EXPECT_EQ(capacityDistribution(english, inPsf(0)).unit, " (lbs)");
    EXPECT_DOUBLE_EQ(capacityDistribution(english, inPsf(0)).bars[0].height,
                     2000 * capacityDistribution(english, {}).bars[0].height);
    const double psi = stressDistribution(english, {}, Development).bars[1].height;
    EXPECT_NEAR(stressDistribution(english, inPsf(0), Development).bars[1].height, 144 * psi,
                1e-6 * 144 * psi); // the tributary stress is held in single precision
    EXPECT_EQ(capacityDistribution(metric, {}).unit, " (kN)");
    const Distribution stresses = stressDistribution(metric, {}, Retreat);
    EXPECT_EQ(stresses.unit, " (kPa)");
    EXPECT_EQ(stresses.lengthUnit, " (m)");
    EXPECT_EQ(stresses.bars.back().name, "3"); // no barrier on the second side
}

TEST(PlanOverlays, ColourByRoundStepsOrByTheLimitsOfTheRatio) {
    const run::Run run = computed(twoGobs());
    const Distribution stresses = stressDistribution(run, {}, Retreat);
    // 1782 to 4031 psi
    const PlanOverlay total = planOverlay(stresses, Coloured::Total, 0);
    EXPECT_EQ(total.key.steps,
              (std::vector<std::string>{"< 2000", "2000 - 3000", "3000 - 4000", "\u2265 4000"}));
    EXPECT_EQ(total.pillars[2].colour, 0);
    EXPECT_EQ(total.pillars[4].colour, ColourSteps - 1);
    // 4552/4031 = 1.13, 4552/1950 = 2.33; weak ones are dark. Barriers have the factors of page 1,
    // 5.17 and 1.08, not strength to stress (6.42 and 1.64), which knows less of their load.
    const PlanOverlay ratio = planOverlay(stresses, Coloured::StrengthToStress, 0);
    EXPECT_EQ(ratio.pillars[4].colour, 3);
    EXPECT_EQ(ratio.pillars[1].colour, 1);
    EXPECT_EQ(ratio.barriers[3].colour, 0);
    EXPECT_EQ(ratio.barriers[3].wordings, std::vector<std::string>{"5.17"});
    EXPECT_EQ(ratio.barriers[4].wordings, std::vector<std::string>{"1.08"});
    EXPECT_EQ(ratio.barriers[4].colour, 3);
    EXPECT_EQ(ratio.caption, "Strength to stress, retreat");
    // All alike: one step, named by the value.
    const PlanOverlay alike = planOverlay(capacityDistribution(run, {}), Coloured::Total, 0);
    EXPECT_EQ(alike.key.steps, std::vector<std::string>{"1.57E+06"});

    // Both rows that reach into the AMZ of 150 ft, and neither of the two below.
    const auto plan = panelPlan(run.current, {}, &total);
    int coloured = 0;
    for (const Polygon& shape : std::get<Drawing>(plan).polygons)
        coloured += shape.role == Role::Pillar && shape.colour != NoColour;
    EXPECT_EQ(coloured, 2 * 4);
    const auto before = std::get<Drawing>(panelPlan(run, Development, {}));
    EXPECT_TRUE(shapes(before, Role::SlabCut).empty());
    EXPECT_TRUE(shapes(before, Role::ActiveGob).empty());
}

/// No picture shows a barrier better than page 1 of the report, and each says what it leaves out.
TEST(PlanOverlays, BarriersHaveTheFactorsOfTheReportAndThePictureSaysWhatPillarsLeaveOut) {
    int barriers = 0;
    for (const char* name : {"two-side-gobs", "one-side-gob-slab-cut", "metric-two-side-gobs",
                             "retreat-one-section", "development-mains"}) {
        const run::Run run = computed(example(name));
        const auto sides = engine::barrierSides(run.in);
        for (int pass = Development; pass <= engine::lastPass(run.in); ++pass) {
            SCOPED_TRACE(std::string(name) + (pass == Development ? " 1" : " 2"));
            const Distribution made = stressDistribution(run, {}, pass);
            const PlanOverlay ratio = planOverlay(made, Coloured::StrengthToStress, 0);
            const auto factor = [](double value) { return report::factorText(value, 0); };
            std::string reported = "Report, " + made.pass + ": stability factor of the pillars " +
                                   "within the AMZ " + factor(run.results.TELVOSF[pass]);
            for (const int k : sides) {
                const std::string text = factor(run.results.BarrierSF[pass][k]);
                EXPECT_EQ(ratio.barriers[k].wordings, std::vector{text});
                EXPECT_NE(ratio.barriers[k].hint.find("factor of the report " + text),
                          std::string::npos);
                reported +=
                    (k == engine::FirstSide ? ", first barrier " : ", second barrier ") + text;
                ++barriers;
            }
            EXPECT_EQ(ratio.notes.back(), reported + '.');
            EXPECT_EQ(made.notes.back(), reported + '.');
            const auto plan = panelPlan(run, pass, {}, &ratio);
            EXPECT_EQ(std::get<Drawing>(plan).notes, ratio.notes);
            const bool front = pass == Retreat;
            EXPECT_EQ(std::any_of(ratio.notes.begin(), ratio.notes.end(),
                                  [](const std::string& note) {
                                      return note.find("without the front abutment load") !=
                                             std::string::npos;
                                  }),
                      front);
        }
    }
    EXPECT_GT(barriers, 4);
}

} // namespace telvo::plot
