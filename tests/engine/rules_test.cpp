// SPDX-License-Identifier: GPL-3.0-or-later
// Worked cases, ties and boundaries on the panel of panel400(). Common to them (ft, lb, psf):
//   S1 = 300 x 144 = 43200; pillar strength 43200 x (0.64 + 0.54 x 80/8 - 0.18 x 6400/800) =
//   43200 x 4.6 = 198720, capacity 198720 x 8000 = 1589760000; B / Sc = 93/120 = 0.775;
//   four pillars 4 x 1589760000 x 0.775 = 4928256000; Gamma H = 60000; AMZ area 93 x 400 = 37200
#include "engine/questions.h"
#include "engine/rules/pass.h"
#include "testCases.h"

#include <cmath>

namespace telvo::engine {
namespace {

struct Row {
    const char* label;
    double actual, expected;
    double relative = 1e-9; // 2e-7: the AMZ loads are held in single precision in part
};

void expectRows(std::initializer_list<Row> rows) {
    for (const Row& row : rows)
        EXPECT_NEAR(row.actual, row.expected, row.relative * std::abs(row.expected)) << row.label;
}

TEST(WorkedCase, DevelopmentLoad) {
    const AnalysisResults r = computed(panel400(0));
    expectRows({
        {"4928256000 / (0.5 x 60000 x 37200)", r.TELVOSF[Development], 4.416, 2e-7},
        {"the same in both passes", r.TELVOSF[Retreat], 4.416, 2e-7},
    });
}

TEST(WorkedCase, OneActiveSectionWithRowALeft) {
    auto input = panel400(1);
    input.RowA = 1;
    const AnalysisResults r = computed(input);
    expectRows({
        {"E/2 <= 400: 150 x (400 x 100 - 200^2/8)", r.FrontAbutmentLoad, 5250000},
        // a = 100, z1 = 300, z2 = 100, Wl - E = 100: P1 = 100 x 300 x 100 x 150 = 450000000,
        // P2 = 100 x 100 x 50 x 150 = 75000000, P3 = 100 x 300 x 50 x 150 = 225000000,
        // P4 = 100^3/3 x 150 = 50000000; P1 + P2 + 2 P3 + 2 P4 = 1075000000, x 0.875
        {"front load on the AMZ", r.AbutmentLoadAMZ[Retreat][Front], 940625000},
        // three pillars 3696192000; 0.5 x 60000 x 93 x 300 = 837000000, + 0.5 x 940625000
        {"3696192000 / 837000000", r.TELVOSF[Development], 4.416, 2e-7},
        {"3696192000 / 1307312500", r.TELVOSF[Retreat], 2.82732093512454, 2e-7},
    });
}

// First side: 83 + 20/2 = 93 = D/2. Row C: strength 43200 x (0.64 + 2.7 - 0.36) = 128736, capacity
// 40 x 128736 x 100 = 514944000, load 60 x 120 x 60000 = 432000000, excess 82944000 x 0.775.
TEST(WorkedCase, OneSideGob) {
    const AnalysisResults r = computed(panel400(2));
    const int k = FirstSide;
    expectRows({
        {"83 x 43200 x 6.2425 x 93 + 64281600", r.BarrierCapacity[k], 2145910644},
        // on the AMZ 93 x 12000000 x 0.125 = 139500000; barrier load 60000 x 93 x 93 = 518940000,
        // 12000000 x 0.875 x 93 = 976500000, 0.25 x 2232000000 + 0.5 x 139500000 = 627750000
        // (1.5 - 2145910644 / 2123190000) x (976500000 + 627750000)
        {"LTRANSBAR, development", r.LTRANSBAR[Development][k], 784957627.7266754},
        // 4928256000 / (1116000000 + 0.5 x 139500000 + 784957627.7)
        {"factor, development", r.TELVOSF[Development], 2.5007545161252693, 2e-7},
        // Wl = 420: P1 = 990000000, P2 = 165000000, 2 P3 + 2 P4 = 550000000, x 0.875 = 1491875000;
        // corner with a = 10, z1 = 390: (10 x 390 x 5 + 10^3/3) x 150 x 0.875 = 2603125;
        // 400 x 5250000 x 0.875 / 2 - 1489271875 / 2
        {"front over the remnant", r.FrontOnRemnant[Retreat][k], 174114062.5},
        // 100 x 43200 x 4.8925 x 63 + 100 x 64281600 / 120 over
        // 60000 x 63 x 100 + 100 x (150 x 400^2 / 2) + 174114062.5
        {"remnant SF", r.RemnantSF[k], 1385110800 / 1752114062.5},
        // (1.5 - SF) x 0.67 of 174114062.5 and of 93 x 5250000 x 0.875 - 2603125 = 424615625
        {"LTRANSREM", r.LTRANSREM[Retreat][k], 82763427.99101381},
        {"front transfer", r.BarrierFrontTransfer[Retreat][k], 201836911.958486},
        // arch load 0.25 x (2232000000 + 1489271875) + 0.5 x (82763427.99 + 139500000);
        // (1.5 - 2145910644 / 2741329719.7) x (976500000 + 1041449682.7)
        {"LTRANSBAR, retreat", r.LTRANSBAR[Retreat][k], 1447275176.5280719},
        // 0.5 x (2232000000 + 1489271875) + 0.5 x (82763427.99 + 139500000) + LTRANSBAR
        {"4928256000 / 3419042828.02", r.TELVOSF[Retreat], 1.4414139418220862, 2e-7},
        // x = 183: 1 - (3/186)^3 = 1 - 1/238328, over 0.125 the share is 1 - 8/238328;
        // (1447275176.53 + 139500000) / 93 x share x 120 / 8000
        {"stress on pillar 1", r.PillarSideStress[k][1], 255922.88918590514},
    });
}

// Second side: 36.5 + 10 = 46.5 = D/4, R = 1 - (3/4)^3 = 37/64; the first side as in OneSideGob.
TEST(WorkedCase, TwoSideGobs) {
    const AnalysisResults r = computed(panel400(3));
    const int k = SecondSide;
    expectRows({
        // SF 36.5 x 43200 x 3.10375 x 93 / (259470000 + base) = 0.308 < 0.5: the whole base of
        // 9000000 x 37/64 x 93 + 0.25 x 2232000000 + 0.5 x 353109375 = 483890625 + 734554687.5
        {"LTRANSBAR, development", r.LTRANSBAR[Development][k], 1218445312.5},
        // first side 1970707627.7 + 0.5 x (93 x 9000000 x 27/64 = 353109375) + LTRANSBAR
        {"4928256000 / 3365707627.7", r.TELVOSF[Development], 1.4642555281394802, 2e-7},
        // (100 x 134082 x 36.5) / (60000 x 36.5 x 100 + 100 x 9000000 + 174114062.5) = 0.378466
        {"LTRANSREM, 1.12153431 x 0.67 x front", r.LTRANSREM[Retreat][k], 130834180.14805867},
        // LTRANSBAR 483890625 + 0.25 x 3721271875 + 0.5 x (130834180.1 + 353109375) = 1656180371.3;
        // first side 3419042828.0 + 0.5 x (130834180.1 + 353109375) + LTRANSBAR
        {"4928256000 / 5317194976.9", r.TELVOSF[Retreat], 0.9268526020562045, 2e-7},
        // walked from the last pillar: x = 136.5, (27/64 - (49.5/186)^3) / (27/64)
        {"share of the last pillar", r.SideShare[k][4], 1 - std::pow(49.5 / 139.5, 3)},
    });
}

TEST(Transfer, FactorsAtTheirLimits) {
    const struct {
        double SF, barrier, remnant, front;
    } rows[] = {{1.6, 0, 0, 0},        {1.5, 0, 0, 0},
                {1.0, 500, 335, 335},   // 0.67 for the remnant alone
                {0.5, 1000, 670, 670},  // the linear rule
                {0.4, 1000, 737, 737},  // not 1100
                {0, 1000, 1000, 1005}}; // 1.5 x 0.67, the remnant's is capped
    for (const auto& [SF, barrier, remnant, front] : rows) {
        Scalar calc;
        EXPECT_NEAR(rules::barrierTransfer<Scalar>(calc, SF, 1000), barrier, 1e-9)
            << "barrier SF " << SF;
        EXPECT_NEAR(rules::remnantTransfer<Scalar>(calc, 10, SF, 1000), remnant, 1e-9)
            << "remnant SF " << SF;
        EXPECT_NEAR(rules::frontTransfer<Scalar>(calc, SF, 1000), front, 1e-9)
            << "remnant SF " << SF;
    }
}

TEST(Boundary, OfOneInput) {
    using Q = const AnalysisResults&;
    const auto SideLoad = [](Q r) { return r.SideAbutmentLoad[3]; };
    const auto OverRemnant = [](Q r) { return r.FrontOnRemnant[Retreat][3]; };
    const auto LTRANS = [](Q r) { return r.LTRANSREM[Retreat][3] + r.LTRANSBAR[Retreat][3]; };
    const auto SideOnAMZ = [](Q r) { return r.AbutmentLoadAMZ[Retreat][3]; };
    const auto Capacity = [](Q r) { return r.BarrierCapacity[3]; };
    const struct {
        const char* label;
        double ProjectInput::*input;
        double value;
        double (*quantity)(Q);
        double expected;
    } rows[] = {
        {"E/2 = HT, 150 x 400^2 / 2", &ProjectInput::ExtentFirstGob, 800, SideLoad, 12000000},
        {"above, not 11999925", &ProjectInput::ExtentFirstGob, 802, SideLoad, 12000000},
        // 400 x 150 x (80000 - 20000) x 0.875 / 2 = 1575000000; front with a = 200:
        // 2 (200 x 200 x 100 + 200^3/3) x 150 x 0.875 = 1750000000, half of it goes off
        {"E = Wl", &ProjectInput::ExtentActiveGob, 400, OverRemnant, 700000000},
        {"E above Wl: half of the front", &ProjectInput::ExtentActiveGob, 401, OverRemnant,
         875000000},
        // 400 x 5250000 x 0.875 / 2 - 1600000000 x 0.875 / 2; no LTRANSBAR
        {"no barrier: the whole front", &ProjectInput::BarrierFirstGob, 0, LTRANS, 218750000},
        {"barrier narrower than h", &ProjectInput::BarrierFirstGob, 7.5, Capacity, 0},
        {"barrier of h: 8 x 43200 x 1.18 x 93", &ProjectInput::BarrierFirstGob, 8, Capacity,
         37926144},
        {"B > D", &ProjectInput::BreadthAMZ, 200, [](Q r) { return r.RFactorFront; }, 1},
        // 176 with half an entry is 186 = D
        {"R = 1 is stored", &ProjectInput::BarrierFirstGob, 176,
         [](Q r) { return r.RFactorSide[3]; }, 0.999},
        {"but counts as 1", &ProjectInput::BarrierFirstGob, 176, SideOnAMZ, 0},
    };
    for (const auto& row : rows) {
        auto input = panel400(2);
        input.SlabcutFirstGob = input.RowC = 0;
        input.*row.input = row.value;
        const double actual = row.quantity(computed(input));
        EXPECT_NEAR(actual, row.expected, 1e-9 * std::abs(row.expected)) << row.label;
    }
}

TEST(Boundary, NegativeFrontOverTheRemnantIsTakenOverAndNoted) {
    auto input = panel400(3);
    EXPECT_TRUE(analysisNotes(computed(input)).empty());
    input.ExtentActiveGob = 20, input.BarrierSecondGob = 83;
    input.SlabcutFirstGob = input.SlabcutSecondGob = 50;
    // Wl = 500, a = 10, z1 = 390: 480 x (3900 + 50) x 150 + 2 x 2975000 = 290350000; corners
    // a = 25, z1 = 375: (25 x 375 x 12.5 + 25^3/3) x 150 = 18359375 each. 253631250 x 0.875
    // = 221927343.75; 400 x 150 x (4000 - 50) x 0.875 / 2 - 110963671.875
    const AnalysisResults r = computed(input);
    EXPECT_NEAR(r.FrontOnRemnant[Retreat][4], -7276171.875, 1e-2);
    EXPECT_EQ(r.LTRANSREM[Retreat][4], r.FrontOnRemnant[Retreat][4]);
    EXPECT_EQ(analysisNotes(r).size(), 1U);
}

TEST(Notes, TellOfLoadsAndStrengthsBelowZero) {
    const struct {
        const char* label;
        void (*edit)(ProjectInput&);
        std::string_view note;
    } rows[] = {
        // 2 ft of gob bring some 480 x 400 x 1 x 150 = 2.9e7 lb; the corner of an 80 ft slab cut
        // takes (40 x 360 x 20 + 40 x 40 x 40 / 3) x 150 = 4.6e7 lb
        {"small gob", [](ProjectInput& in) { in.ExtentActiveGob = 2, in.SlabcutFirstGob = 80; },
         "Front abutment load on the AMZ is negative"},
        {"no gob", [](ProjectInput& in) { in.ExtentActiveGob = 0, in.SlabcutFirstGob = 25; },
         "Slab cuts without an active gob"},
        // 0.64 + 0.54 w/h - 0.18 w^2/(h L) is below 0 beyond w = 3 L + 1.2 h
        {"wide row", [](ProjectInput& in) { in.RowD = 1, in.WidthD = 400; },
         "Strength of the bleeder pillars is negative"},
    };
    for (const auto& row : rows) {
        auto input = panel400(3);
        row.edit(input);
        const auto notes = analysisNotes(computed(input));
        EXPECT_TRUE(std::any_of(notes.begin(), notes.end(), [&](auto note) {
            return note.starts_with(row.note);
        })) << row.label;
    }
}

TEST(FrontAbutment, WiderGobDoesNotCountWhereHalfTheLoadedWidthReachesHT) {
    WorkingInputs in = prepared(panel400(1));
    const double HT = in.H * in.AbutmentTangent[1];
    const auto front = [&in, HT](double Wl) {
        Scalar calc;
        return rules::frontAbutmentOnAMZ<Scalar>(calc, in, 3 * HT, Wl, 1);
    };
    EXPECT_FALSE(front(2 * HT).gobWiderThanLoaded);
    EXPECT_TRUE(front(2 * HT - 1e-6).gobWiderThanLoaded);
    EXPECT_NEAR(front(2 * HT).load, 64e8, 1); // 2 x 400^3/3 x 150
}

TEST(Prepare, AbutmentAnglesOf90AreUsedAs89Point9) {
    auto input = panel400(3);
    input.AbutmentAngleActiveGob = 90;
    input.AbutmentAngleFirstGob = 89.99; // below 90 stays, though steeper than 89.9
    const WorkingInputs in = prepared(input);
    EXPECT_NEAR(in.AbutmentTangent[1], 572.957213354303, 1e-9);  // tan 89.9 degrees
    EXPECT_NEAR(in.AbutmentTangent[2], 5729.577893130587, 1e-7); // tan 89.99 degrees
    input.AbutmentAngleActiveGob = 95; // the check before analysis does not let it so far
    EXPECT_TRUE(std::holds_alternative<Refusal>(PrepareAnalysis(input, English)));
}

TEST(Prepare, LoadingConditionOfEveryAnal) {
    const int rows[][3] = {{0, 4, 1}, {1, 4, 2},  {2, 4, 3}, {3, 1, 4},
                           {4, 1, 3}, {-1, 2, 2}, {5, 4, 4}};
    for (const auto& [anal, previous, expected] : rows) {
        const auto input = panel400(static_cast<std::int16_t>(anal));
        const auto outcome = PrepareAnalysis(input, English, previous);
        EXPECT_EQ(std::get<WorkingInputs>(outcome).AnalysisCase, expected) << "Anal " << anal;
    }
    EXPECT_EQ(prepared(panel400(-1)).AnalysisCase, 1); // before any other run
}

TEST(Prepare, TellsWhatIsShownOfARun) {
    ProjectInput input = panel400(3);
    EXPECT_EQ(lastPass(prepared(input)), Retreat);
    EXPECT_EQ(barrierSides(prepared(input)), (std::vector{FirstSide, SecondSide}));
    input.BarrierFirstGob = input.SlabcutFirstGob = 0;
    EXPECT_EQ(barrierSides(prepared(input)), std::vector{SecondSide});
    input.ExtentActiveGob = 0; // nothing is mined in retreat
    EXPECT_EQ(lastPass(prepared(input)), Development);
    EXPECT_EQ(lastPass(prepared(panel400(1))), Retreat);
    EXPECT_EQ(lastPass(prepared(panel400(0))), Development);
    EXPECT_EQ(barrierSides(prepared(panel400(2))), std::vector{FirstSide});
    EXPECT_TRUE(barrierSides(prepared(panel400(1))).empty());
}

TEST(Noting, LimitHoldsOnlyWhatLiesBeyondIt) {
    Noting calc;
    EXPECT_EQ(calc.atMost(Rule::RFactorFull, 1, 1), 1);
    EXPECT_EQ(calc.atMost(Rule::RFactorFull, 1.25, 1), 1);
    EXPECT_EQ(calc.atLeast(Rule::ArchLowest, 0.28, 0.28), 0.28);
    EXPECT_EQ(calc.atLeast(Rule::ArchLowest, 0.25, 0.28), 0.28);
    ASSERT_EQ(calc.regime.count(), 4U);
    for (std::size_t place = 0; place < 4; ++place)
        EXPECT_EQ(calc.regime.went(place), place % 2 == 1) << place;
}

TEST(PressureArchFactor, BoundariesInTheUnitsOfTheCase) {
    const struct {
        const char* label;
        std::int16_t units;
        double H, W;
        float expected;
    } rows[] = {
        {"H = 25", English, 25, 4, 1.00F},
        {"H - 80 below W", English, 479.99, 400, 1.00F},
        {"H - 80 = W: 1 - 0.28 x ln 1.2 = 0.9489", English, 480, 400, 0.95F},
        {"1 - 0.28 x ln 12.5 = 0.2928", English, 5000, 400, 0.29F},
        {"1 - 0.28 x ln 14 = 0.2611, raised to the floor", English, 5600, 400, 0.28F},
        {"no width", English, 400, 0, 1.00F},
        {"metric, 80 is not 24.4 m (1 - 0.28 x ln 2 = 0.81)", Metric, 100, 50, 1.00F},
    };
    for (const auto& row : rows) {
        WorkingInputs in;
        in.Units = row.units, in.H = row.H, in.NumberPillars = 1, in.EntryCenter[1] = row.W;
        EXPECT_EQ(archFactorUsed(in), row.expected) << row.label;
    }
    Frame metric;
    metric.Units = Metric;
    EXPECT_NEAR(rules::abutmentExtent(metric, 121.92), 186 * 0.3048, 1e-9); // 400 ft are 121.92 m
    metric.Units = 2; // other systems keep the plain formula
    EXPECT_NEAR(rules::abutmentExtent(metric, 400.0), 186, 1e-9);
}

TEST(BleederRow, ExcessBelowOneHundredthIsDropped) {
    // w = h = L = S1 = 1: strength and capacity 0.64 + 0.54 - 0.18 = 1; load = Gamma
    const double capacity = rules::pillarStrength(1.0, 1.0, 1.0, 1.0);
    const struct {
        double load, breadth, expected;
    } rows[] = {{0.995, 1, 0}, {0.985, 1, 0.015}, {3, 1, 0}, {capacity - 0.5, 0.02, 0.01}};
    for (const auto& [load, breadth, expected] : rows) {
        WorkingInputs in;
        in.S1 = in.h = in.H = in.Sc = in.PillarLengthAlong = in.BleederWidth[4] = 1;
        in.RowLeft[3] = true, in.Gamma = load, in.B = breadth;
        PanelResults r;
        Scalar calc;
        rules::bleederRow<Scalar>(calc, in, in, 4, r);
        EXPECT_NEAR(r.BleederExcess[4], expected, 1e-12) << "load " << load;
    }
}

} // namespace
} // namespace telvo::engine
