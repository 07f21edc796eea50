// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/keyFigures.h"

#include "fixtures.h"

namespace telvo::report {
namespace {

TEST(KeyFigures, AreThoseThatAPanelIsJudgedBy) {
    Panel panel;
    panel.r.AnalysisCase = engine::DevelopmentLoad;
    panel.r.PanelWidth = 1000.0 / 3;
    panel.r.TELVOSF = {{2.125, 1.4951}};
    project::KeyFigures figures = keyFigures(panel.run(), panel.options);
    EXPECT_EQ(figures.PanelWidth, "333.3333333");
    EXPECT_EQ(figures.DevelopmentSF, "2.12"); // a tie goes to the even digit
    EXPECT_EQ(figures.RetreatSF, "");         // nothing is mined in retreat
    EXPECT_EQ(figures.BarrierSF, "");

    project::ProjectInput& in = panel.current.Input;
    panel.r.AnalysisCase = engine::TwoSideGobs;
    in.ExtentActiveGob = 300, in.BarrierFirstGob = in.BarrierSecondGob = 100;
    panel.r.BarrierSF[engine::Development] = {{1.5, 1.2}};
    panel.r.BarrierSF[engine::Retreat] = {{1.3, 1.2}};
    panel.options.RoundTELVOSF = 2; // cut
    figures = keyFigures(panel.run(), panel.options);
    EXPECT_EQ(figures.RetreatSF, "1.49");
    EXPECT_EQ(figures.BarrierSF, "1.20 (second side, development)"); // the first of equal ones
    panel.r.BarrierSF[engine::Retreat][engine::SecondSide] = 1.1;
    EXPECT_EQ(keyFigures(panel.run(), panel.options).BarrierSF, "1.10 (second side, retreat)");
    panel.r.BarrierSF[engine::Retreat][engine::FirstSide] = 0.9;
    EXPECT_EQ(keyFigures(panel.run(), panel.options).BarrierSF, "0.90 (first side, retreat)");
    in.ExtentActiveGob = 0; // no retreat, whatever was computed for it
    figures = keyFigures(panel.run(), panel.options);
    EXPECT_EQ(figures.RetreatSF, "");
    EXPECT_EQ(figures.BarrierSF, "1.20 (second side, development)");
    in.BarrierSecondGob = 0;
    EXPECT_EQ(keyFigures(panel.run(), panel.options).BarrierSF, "1.50 (first side, development)");
}

} // namespace
} // namespace telvo::report
