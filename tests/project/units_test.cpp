// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/units.h"

#include "project/automatic.h"
#include "project/inputFields.h"

#include <cmath>
#include <gtest/gtest.h>
#include <tuple>

using namespace telvo::project;

namespace {

/// A record whose numbers are all the same.
ProjectInput everyNumber(double value) {
    ProjectInput in;
    for (const FieldId id : RecordNumbers)
        set(in, id, value);
    return in;
}

/// Gives every length of a record the next multiple of a step, rounded to hundredths.
void setLengths(ProjectInput& input, double step) {
    int k = 0;
    const auto next = [&] { return std::round(100 * step * ++k) / 100; };
    visitInputFields(input, [&](auto, FieldKind kind, auto& field) {
        if constexpr (requires { field.first; }) {
            for (int i = 1; i < input.NumberEntries; ++i)
                field[i] = next();
        } else if (kind == FieldKind::Length) {
            field = static_cast<std::remove_reference_t<decltype(field)>>(next());
        }
    });
}

} // namespace

TEST(NewCase, TakesTheDefaultsOfItsUnitsAndKeepsReserved) {
    ProjectInput fresh = everyNumber(0);
    fresh.XcutAngle = 90, fresh.NumberEntries = 2, fresh.CoalStrength = 900, fresh.UnitWeight = 162;
    fresh.Reserved = 5, fresh.AMZ = fresh.Arch = 1, fresh.ArchFactor = 1;
    fresh.AbutmentAngleActiveGob = fresh.AbutmentAngleFirstGob = fresh.AbutmentAngleSecondGob = 21;
    ProjectCase current;
    setLengths(current.Input, 100);
    current.Input.Reserved = 5;
    current.Title = current.Description = current.FileName = "old";
    newCase(current, -1, false);
    EXPECT_EQ(current.Input, fresh);
    EXPECT_EQ(current.Title + current.Description + current.FileName, "old");
    newCase(current, Metric, true);
    fresh.CoalStrength = 6.205283178097832; // 900 / 145.0377
    fresh.UnitWeight = 25.446482633742956;  // 162 / 6.3663022639200495
    EXPECT_EQ(current.Input, fresh);
    EXPECT_EQ(current.Units, Metric);
    EXPECT_EQ(current.FileName, "Untitled");
}

TEST(Conversion, TouchesLengthsStrengthAndWeightOnly) {
    // 100 ft are 30.48 m, so multiples of them lose nothing to the two decimals.
    ProjectCase current = newCase(English);
    current.Input.NumberEntries = 5;
    current.Input.ArchFactor = 0.817F;
    current.Input.AbutmentAngleActiveGob = 21.125;
    setLengths(current.Input, 100);
    ProjectInput feet = current.Input;
    ProjectInput metres = current.Input;
    setLengths(metres, 30.48);
    metres.CoalStrength = 6.21; // 6.2053
    metres.UnitWeight = 25.45;  // 25.4465
    current.Input.XcutCenters[5] = 1;
    current.FileName = "folder/Deep.TLV";
    ASSERT_TRUE(convertCase(current));
    EXPECT_EQ(current.Input, metres) << "the distance beyond the last entry becomes 0";
    EXPECT_EQ(current.Units, Metric);
    EXPECT_EQ(current.FileName, "Metric_Deep.TLV");
    current.FileName = "C:\\folder\\Deep.TLV";
    ASSERT_TRUE(convertCase(current));
    feet.CoalStrength = 900.68; // 6.21 x 145.0377 = 900.684
    feet.UnitWeight = 162.02;   // 25.45 x 6.3663022639200495 = 162.0224
    EXPECT_EQ(current.Input, feet);
    EXPECT_EQ(current.FileName, "English_Deep.TLV");
}

TEST(Conversion, RoundsHalfToEvenAndRefusesWhatOverflows) {
    // 31.25 ft = 9.525 m and 43.75 ft = 13.335 m; both are exact ties of a double in hundredths.
    // 5.5 ft = 1.6764 m = 1.68 m = 5.5118 ft.
    const double rows[][3] = {{31.25, 9.52, 31.23}, {43.75, 13.34, 43.77}, {5.5, 1.68, 5.51}};
    for (const auto& [feet, metres, back] : rows) {
        ProjectCase current = newCase(English);
        current.Input.EntryHeight = feet;
        ASSERT_TRUE(convertCase(current));
        EXPECT_EQ(current.Input.EntryHeight, metres);
        ASSERT_TRUE(convertCase(current));
        EXPECT_EQ(current.Input.EntryHeight, back);
    }
    ProjectCase huge = newCase(Metric);
    huge.Input.WidthD = 3e38F;
    const ProjectCase before = huge;
    EXPECT_EQ(convertCase(huge).fault().where, "WidthD");
    EXPECT_EQ(huge, before);
}

TEST(Conversion, ACopyStaysInTheFolderOfTheCase) {
    const char* rows[][2] = {{"folder/Deep.TLV", "folder/Metric_Deep.TLV"},
                             {"C:\\cases\\Deep.TLV", "C:\\cases\\Metric_Deep.TLV"},
                             {"/Deep.TLV", "/Metric_Deep.TLV"},
                             {"Untitled", "Metric_Untitled"}};
    for (const auto& [name, converted] : rows) {
        ProjectCase current = newCase(English);
        current.FileName = name;
        EXPECT_EQ(convertedCase(current)->FileName, converted);
        EXPECT_EQ(current.Units, English);
    }
}

TEST(Conversion, TellsWhereTheMarginsDisagreeOnTheArchFactor) {
    // Depth less width, here 600 - 400 = 200 ft, is more than 80 ft but less than 80 m.
    ProjectCase current = newCase(English);
    current.Input.NumberEntries = 3;
    current.Input.XcutCenters[1] = current.Input.XcutCenters[2] = 200;
    const auto remark = [&] { return archFactorRemark(current, *convertedCase(current)); };
    current.Input.DepthCover = 600; // 1 - 0.28 ln 1.5 = 0.8865
    EXPECT_EQ(remark(), "The automatic pressure arch factor changes from 0.89 to 1 by the "
                        "conversion");
    current.Input.Arch = 0;
    EXPECT_EQ(remark(), std::nullopt) << "an entered factor stays";
    current.Input.Arch = 1;
    for (const double depth : {470.0, 800.0}) { // below and above both margins
        current.Input.DepthCover = depth;
        EXPECT_EQ(remark(), std::nullopt) << depth;
    }
    current.Input.DepthCover = current.Input.XcutCenters[1] = 1e300;
    EXPECT_EQ(remark(), std::nullopt) << "no factor that is not a number";
}

TEST(UnitLabels, OddPairsOfTheTable) {
    const std::tuple<Quantity, const char*, const char*> rows[] = {
        {Quantity::Tons, " (tons)", " (tn)"},
        {Quantity::FeetOrCentimetres, " (ft)", " (cm)"},
        {Quantity::TonsPerFootOrMeganewtonsPerMetre, " (tons/ft)", " (MN/m)"}};
    for (const auto& [quantity, english, metric] : rows)
        EXPECT_TRUE(unitLabel(0, quantity) == english && unitLabel(1, quantity) == metric)
            << metric;
    EXPECT_EQ(unitLabel(2, Quantity::Length), "");
}

TEST(AutomaticAMZ, IsFiveTimesTheRootOfTheDepthInFeet) {
    EXPECT_EQ(automaticAMZBreadth(1000, English), 158);  // 158.114
    EXPECT_EQ(automaticAMZBreadth(110.25, English), 53); // 5 x 10.5 = 52.5, a tie goes up
    EXPECT_EQ(automaticAMZBreadth(304.8, Metric), 48);   // 158.114 ft = 48.193 m
    EXPECT_EQ(automaticAMZBreadth(0, English), 0);
    EXPECT_EQ(automaticAMZBreadth(-1, English), std::nullopt);
}

TEST(FormArchFactor, FollowsTheLogarithmBetweenItsLimits) {
    // clang-format off
    const struct { const char* label; float W, H; std::int16_t units; float factor; } rows[] = {
        {"1 - 0.28 ln 2 = 0.8059", 500, 1000, English, 0.81F}, {"no width", 0, 1000, Metric, 1},
        {"H - 80 = W: 1 - 0.28 ln 1.16 = 0.9584", 500, 580, English, 0.96F},
        {"H - 80 below W", 500, 579, English, 1}, {"depth below 25 ft", 1, 24, English, 1},
        {"80 m, not 80 ft: ln 1.79 would give 0.84", 100, 179, Metric, 1},
        {"1 - 0.28 ln 1.81 = 0.8339", 100, 181, Metric, 0.83F},
        {"1 - 0.28 ln 12.5 = 0.2928", 100, 1250, English, 0.29F},
        {"1 - 0.28 ln 20 = 0.1612 is below the floor", 100, 2000, English, 0.28F}};
    // clang-format on
    for (const auto& row : rows)
        EXPECT_EQ(formArchFactor(row.W, row.H, row.units), row.factor) << row.label;
}
