// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/automatic.h"

#include <gtest/gtest.h>

namespace telvo::project {
namespace {

/// A panel of five entries 60 apart: 240 wide.
ProjectInput panel(double depth, double breadth, float arch) {
    ProjectInput in;
    in.NumberEntries = 5;
    for (int i = 1; i <= 4; ++i)
        in.XcutCenters[i] = 60;
    in.DepthCover = depth;
    in.BreadthAMZ = breadth;
    in.ArchFactor = arch;
    in.AMZ = in.Arch = 1;
    return in;
}

// 5 sqrt(900) = 150 and 5 sqrt(400) = 100. The factor at 900: 1 - 0.28 ln(900 / 240) = 1 - 0.28 x
// 1.321756 = 0.629908, 0.63; at 400: 1 - 0.28 x 0.510826 = 0.856969, 0.86.
TEST(StaleAutomaticValues, NoneWhereTheRecordBelongsToItsDepth) {
    EXPECT_TRUE(staleAutomaticValues(panel(900, 150, 0.63F), English).empty());
    EXPECT_TRUE(staleAutomaticValues(panel(400, 100, 0.86F), English).empty());
}

TEST(StaleAutomaticValues, AnotherDepthLeavesBothBehind) {
    const auto stale = staleAutomaticValues(panel(400, 150, 0.63F), English);
    ASSERT_EQ(stale.size(), 2U);
    EXPECT_EQ(stale[0].field, Field::BreadthAMZ);
    EXPECT_EQ(stale[0].stored, 150);
    EXPECT_EQ(stale[0].automatic, 100);
    EXPECT_EQ(stale[0].remark,
              "Breadth of AMZ 150 ft is marked automatic; the depth of 400 ft gives 100 ft");
    EXPECT_EQ(stale[1].field, Field::ArchFactor);
    EXPECT_EQ(stale[1].remark, "Pressure Arch Factor 0.63 is marked automatic; the depth of 400 ft "
                               "and the distances of the entries give 0.86");
    // What was converted shows ten digits. 5 sqrt(333.33) = 91.3
    EXPECT_EQ(staleAutomaticValues(panel(1000.0 / 3, 100.0 / 3, 1), English).at(0).remark,
              "Breadth of AMZ 33.33333333 ft is marked automatic; the depth of 333.3333333 ft "
              "gives 91 ft");
}

TEST(StaleAutomaticValues, ValuesEnteredByHandAreTheUsersOwn) {
    ProjectInput in = panel(400, 150, 0.63F);
    in.AMZ = 0;
    in.Arch = 0;
    EXPECT_TRUE(staleAutomaticValues(in, English).empty());
    // The analysis takes every flag but 0 for an automatic factor, and only 1 for an automatic AMZ.
    in.AMZ = 2;
    in.Arch = 2;
    const auto stale = staleAutomaticValues(in, English);
    ASSERT_EQ(stale.size(), 1U);
    EXPECT_EQ(stale[0].field, Field::ArchFactor);
}

// 152.4 m are 500 ft: 5 sqrt(500) / 3.280839895 = 34.08, 34. 79 m over 73.15 m are within the
// margin.
TEST(StaleAutomaticValues, MetricBreadthIsInWholeMeters) {
    ProjectInput in = panel(152.4, 34.14, 1);
    for (int i = 1; i <= 4; ++i)
        in.XcutCenters[i] = 18.29;
    const auto stale = staleAutomaticValues(in, Metric);
    ASSERT_EQ(stale.size(), 1U);
    EXPECT_EQ(stale[0].remark,
              "Breadth of AMZ 34.14 m is marked automatic; the depth of 152.4 m gives 34 m");
}

TEST(StaleAutomaticValues, NothingIsSaidOfDepthsWithoutAnAutomaticValue) {
    EXPECT_TRUE(staleAutomaticValues(panel(-5, 150, 1), English).empty());
    // Beyond the number range in feet; the factor ends at its lower limit.
    EXPECT_TRUE(staleAutomaticValues(panel(1e308, 150, 0.28F), Metric).empty());
}

TEST(AutomaticValues, AreTakenWhereTheRecordAsksForThem) {
    ProjectInput in = panel(400, 150, 0.63F);
    const ProjectInput renewed = withAutomaticValues(in, English);
    EXPECT_EQ(renewed.BreadthAMZ, 100);
    EXPECT_EQ(renewed.ArchFactor, 0.86F);
    EXPECT_TRUE(staleAutomaticValues(renewed, English).empty());
    in.AMZ = in.Arch = 0;
    EXPECT_EQ(withAutomaticValues(in, English), in) << "entered values stay";
    in = panel(-1, 150, 0.63F);
    in.Arch = 0;
    EXPECT_EQ(withAutomaticValues(in, English), in) << "a negative depth has no breadth";
}

TEST(AutomaticValues, FollowTheNumberThatIsVaried) {
    const ProjectInput stale = panel(400, 150, 0.63F);
    ProjectInput varied = withVaried(stale, English, Field::DepthCover, 900);
    EXPECT_EQ(varied, panel(900, 150, 0.63F));
    varied = withVaried(stale, English, Field::DepthCover, 401);
    EXPECT_EQ(varied.BreadthAMZ, 100);
    // 1 - 0.28 ln(400 / 300) = 1 - 0.28 x 0.287682 = 0.919449
    varied = withVaried(stale, English, {Field::XcutCenters, 4}, 120);
    EXPECT_EQ(varied.XcutCenters[4], 120);
    EXPECT_EQ(varied.ArchFactor, 0.92F);
    EXPECT_EQ(varied.BreadthAMZ, 150) << "the breadth hangs on the depth alone";
    varied = withVaried(stale, English, Field::XcutSpacing, 90);
    ProjectInput expected = stale;
    expected.XcutSpacing = 90;
    EXPECT_EQ(varied, expected);
}

} // namespace
} // namespace telvo::project
