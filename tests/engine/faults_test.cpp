// SPDX-License-Identifier: GPL-3.0-or-later
#include "testCases.h"

#include <limits>

namespace telvo::engine {
namespace {

using In = ProjectInput&;

TEST(Fault, NamesTheQuantityAndTheInputAndLeavesNoResult) {
    const struct {
        const char* label;
        std::int16_t anal;
        void (*edit)(In);
        std::string quantity, where; // none: the run succeeds
    } rows[] = {
        {"angle 0", 0, [](In in) { in.XcutAngle = 0; }, "PillarSkewWidth", "XcutAngle"},
        {"one entry", 0, [](In in) { in.NumberEntries = 1; }, "ExtractionRatio", "NumberEntries"},
        {"active", 0, [](In in) { in.AbutmentAngleActiveGob = 0; }, "Front",
         "AbutmentAngleActiveGob"},
        {"first side", 2, [](In in) { in.AbutmentAngleFirstGob = in.ExtentFirstGob = 0; },
         "SideAbutmentLoad", "AbutmentAngleFirstGob"},
        {"second side", 3, [](In in) { in.AbutmentAngleSecondGob = in.ExtentSecondGob = 0; },
         "SideAbutmentLoad", "AbutmentAngleSecondGob"},
        {"side with extent", 2, [](In in) { in.AbutmentAngleFirstGob = 0; }, "", ""},
        {"no load", 0, [](In in) { in.ArchFactor = 0; }, "TELVOSF", "ArchFactor"},
        {"no load, strong barrier", 2, [](In in) { in.ArchFactor = 0, in.CoalStrength = 3000; },
         "TELVOSF", "ArchFactor"},
        {"LTRANSBAR is a load", 2, [](In in) { in.ArchFactor = 0; }, "", ""},
        {"row A", 1, [](In in) { in.RowA = 1, in.NumberEntries = 2; }, "TELVOSF", "RowA"},
        {"two pillars, two rows", 1, [](In in) { in.RowA = in.RowB = 1, in.NumberEntries = 3; },
         "TELVOSF", "RowA, RowB"},
        {"one pillar, two rows", 1, [](In in) { in.RowA = in.RowB = 1, in.NumberEntries = 2; },
         "ActiveWidth", "RowA, RowB"},
        {"one pillar, two rows, side gobs", 3,
         [](In in) { in.RowA = in.RowB = 1, in.NumberEntries = 2, in.SlabcutFirstGob = 0; },
         "ActiveWidth", "RowA, RowB"},
        {"two pillars, two rows, side gobs", 3,
         [](In in) { in.RowA = in.RowB = 1, in.NumberEntries = 3, in.SlabcutFirstGob = 0; }, "",
         ""},
        {"no gob", 0, [](In in) { in.RowA = in.RowB = 1, in.NumberEntries = 2; }, "", ""},
        {"row C", 0, [](In in) { in.XcutSpacing = 20; }, "BleederStrength", "XcutSpacing"},
        {"row D", 3, [](In in) { in.XcutSpacing = 20, in.RowC = 0, in.RowD = 1, in.WidthD = 9; },
         "BleederStrength", "XcutSpacing"},
        {"length 0", 2, [](In in) { in.XcutSpacing = 20, in.RowC = 0; }, "", ""},
        {"width 0", 2, [](In in) { in.XcutCenters[2] = 20; }, "", ""},
        {"negative length", 0, [](In in) { in.XcutSpacing = 19; }, "PillarLength", "XcutSpacing"},
        {"negative width", 0, [](In in) { in.XcutCenters[2] = 19; }, "GrossWidth",
         "XcutCenters(2)"},
        {"depth", 1, [](In in) { in.DepthCover = 1e308, in.RowC = 0; }, "Tributary", "DepthCover"},
        {"strong", 0, [](In in) { in.CoalStrength = 1e35; }, "", ""},
        {"factor above single", 0, [](In in) { in.CoalStrength = 1e45; }, "TELVOSF",
         "CoalStrength"},
        {"height", 0, [](In in) { in.EntryHeight = 1e-310; }, "PillarStrength", "EntryHeight"},
        {"above single", 1, [](In in) { in.UnitWeight = 1e33; }, "AMZLoad", "UnitWeight"},
        {"below single", 0, [](In in) { in.UnitWeight = 1e-60; }, "TELVOSF", "UnitWeight"},
        {"two extremes", 2, [](In in) { in.CoalStrength = 1.7e308, in.BarrierSecondGob = 1e-310; },
         "PillarStrength", "CoalStrength"},
        {"eleven entries", 0,
         [](In in) { in.NumberEntries = 11, in.XcutCenters.elements.fill(80); }, "PanelWidth",
         "NumberEntries"},
        {"length 0 but for rounding", 0,
         [](In in) { in.XcutAngle = 30, in.XcutSpacing = 40, in.RowC = 0; }, "", ""},
        {"the widest panel that there is", 0,
         [](In in) {
             in.NumberEntries = 2, in.XcutCenters[1] = std::numeric_limits<double>::max();
         },
         "AMZArea", "XcutCenters(1)"},
        {"the last distance", 0, [](In in) { in.XcutCenters[4] = 1e307; }, "AMZArea",
         "XcutCenters(4)"},
        {"W", 0, [](In in) { in.XcutCenters[1] = 1e39, in.Arch = 1; }, "ArchFactor", "XcutCenters"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        auto input = panel400(row.anal);
        row.edit(input);
        const auto run = ComputeAnalysis(prepared(input));
        ASSERT_EQ(!run, !row.where.empty());
        if (run) {
            EXPECT_GE(run->TELVOSF[Retreat], 0); // not NaN either
            continue;
        }
        EXPECT_EQ(run.fault().where, row.where);
        EXPECT_NE(run.fault().message.find(row.quantity), std::string::npos) << run.fault().message;
        const bool negative = std::string(row.label).starts_with("negative");
        EXPECT_EQ(run.fault().message.starts_with("Invalid Pillar Dimensions"), negative);
    }
}

} // namespace
} // namespace telvo::engine
