// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settingsOptions.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace telvo::app {
namespace {

// One setting at a time, so that two options that changed places would show.
TEST(SettingsOptions, EveryOptionFollowsItsOwnSetting) {
    const struct {
        const char* name;
        std::int16_t Settings::*setting;
        bool plan, graph, report;
    } rows[] = {{"PlotEntryDims", &Settings::PlotEntryDims, true, false, false},
                {"PlotXcutDims", &Settings::PlotXcutDims, true, false, false},
                {"PlotSingleXcutDims", &Settings::PlotSingleXcutDims, true, false, false},
                {"PlotGobDims", &Settings::PlotGobDims, true, false, false},
                {"PlotGobExtLoose", &Settings::PlotGobExtLoose, true, false, false},
                {"GridStyle", &Settings::GridStyle, false, true, false},
                {"GraphStyle", &Settings::GraphStyle, false, true, false},
                {"CurveLegend", &Settings::CurveLegend, false, true, false},
                {"SymbolSize", &Settings::SymbolSize, false, true, false},
                {"GraphUnits", &Settings::GraphUnits, false, true, false},
                {"RoundTELVOSF", &Settings::RoundTELVOSF, false, true, true},
                {"OutputStrGradUnits", &Settings::OutputStrGradUnits, false, false, true},
                {"OutputStrUnits", &Settings::OutputStrUnits, false, false, true}};
    const auto planValues = [](const Settings& s) {
        const plot::PlanOptions o = planOptions(s);
        return std::vector<int>{o.PlotEntryDims, o.PlotXcutDims, o.PlotSingleXcutDims,
                                o.PlotGobDims, o.PlotGobExtLoose};
    };
    const auto graphValues = [](const Settings& s) {
        const study::GraphOptions o = graphOptions(s, study::GraphKind::DepthCover);
        return std::vector<int>{o.GridStyle,  o.GraphStyle, o.CurveLegend,
                                o.SymbolSize, o.GraphUnits, o.RoundTELVOSF};
    };
    const auto reportValues = [](const Settings& s) {
        const report::ReportOptions o = reportOptions(s);
        return std::vector<int>{o.RoundTELVOSF, o.OutputStrGradUnits, o.OutputStrUnits};
    };
    // The places in which one list of options holds 99.
    const auto holding = [](const std::vector<int>& values) {
        return std::count(values.begin(), values.end(), 99);
    };
    for (const auto& row : rows) {
        Settings settings;
        settings.*row.setting = 99;
        EXPECT_EQ(holding(planValues(settings)), row.plan) << row.name;
        EXPECT_EQ(holding(graphValues(settings)), row.graph) << row.name;
        EXPECT_EQ(holding(reportValues(settings)), row.report) << row.name;
    }
    Settings settings;
    settings.PlotXcutDims = 0;
    EXPECT_EQ(planOptions(settings).PlotXcutDims, 0);
    EXPECT_EQ(planOptions(settings).PlotSingleXcutDims, 1);
    settings.PlotGobDims = 0;
    EXPECT_EQ(planOptions(settings).PlotGobDims, 0);
    EXPECT_EQ(planOptions(settings).PlotGobExtLoose, 1);
    settings.PlotRangeMin = 70;
    EXPECT_EQ(graphRange(settings).PlotRangeMin, 70);
    EXPECT_EQ(graphRange(settings).PlotRangeMax, 150);
}

TEST(SettingsOptions, TitlesAreThoseOfTheKind) {
    const Settings settings;
    for (std::size_t kind = 0; kind < study::GraphRows.size(); ++kind) {
        const auto options = graphOptions(settings, static_cast<study::GraphKind>(kind));
        EXPECT_EQ(options.XAxisTitle, study::GraphRows[kind].axisTitle);
        EXPECT_EQ(options.YAxisTitle, kind < 4 ? "Stability Factor" : "Barrier Stability Factor");
    }
}

TEST(SettingsOptions, RangesStandInTheRowOfTheirKey) {
    EXPECT_EQ(rangeOf(&Settings::SymbolSize), (SettingRange{3, 20}));
    EXPECT_EQ(rangeOf(&Settings::DisplayFontSize), (SettingRange{7, 24}));
    EXPECT_EQ(rangeOf(&Settings::PlotRangeMax), (SettingRange{0, 150}));
    EXPECT_EQ(rangeOf(&Settings::MaxDisplaySize), (SettingRange{4096, 16384}));
    EXPECT_EQ(rangeOf(&Settings::MaxLastFiles), SettingRange{}) << "no row of its own";
}

} // namespace
} // namespace telvo::app
