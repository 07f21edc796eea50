// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/caseFacts.h"

#include <gtest/gtest.h>
#include <map>

namespace telvo::project {
namespace {

TEST(CaseFacts, ADashSaysWhy) {
    ProjectCase current = newCase(Metric);
    current.Input.DepthCover = 312.5;
    current.Input.Anal = 1;
    KeyFigures figures;
    figures.PanelWidth = "96";
    figures.DevelopmentSF = "1.61";
    std::map<std::string_view, CaseFact> facts;
    for (CaseFact& fact : caseFacts(current, figures))
        facts[fact.control] = std::move(fact);
    EXPECT_EQ(facts["lblDepth"].text, "312.5 (m)");
    EXPECT_EQ(facts["lblWidth"].text, "96 (m)");
    EXPECT_EQ(facts["lblUnits"].text, "m, cm, kN, MPa, kN/m3");
    EXPECT_EQ(facts["lblLoading"].text, LoadingConditionNames[1]);
    EXPECT_EQ(facts["lblDevelopmentSF"].why, "");
    EXPECT_EQ(facts["lblRetreatSF"].why, "There is no retreat without an active gob");
    EXPECT_EQ(facts["lblBarrierSF"].why, "No barrier is in use");
    figures = {};
    figures.why = "Invalid depth of cover";
    for (const CaseFact& fact : caseFacts(current, figures))
        if (fact.control.ends_with("SF")) {
            EXPECT_EQ(fact.text + fact.why, figures.why) << fact.control;
        }
    current.Input.Anal = 77; // a damaged file may hold anything
    EXPECT_EQ(caseFacts(current, figures)[0].text, LoadingConditionNames[3]);
}

} // namespace
} // namespace telvo::project
