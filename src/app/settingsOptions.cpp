// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settingsOptions.h"

namespace telvo::app {

// By name: flags of the same type stand side by side in every one of these records.

report::ReportOptions reportOptions(const Settings& settings) {
    report::ReportOptions options;
    options.RoundTELVOSF = settings.RoundTELVOSF;
    options.OutputStrGradUnits = settings.OutputStrGradUnits;
    options.OutputStrUnits = settings.OutputStrUnits;
    return options;
}

plot::PlanOptions planOptions(const Settings& settings) {
    plot::PlanOptions options;
    options.PlotEntryDims = settings.PlotEntryDims;
    options.PlotXcutDims = settings.PlotXcutDims;
    options.PlotSingleXcutDims = settings.PlotSingleXcutDims;
    options.PlotGobDims = settings.PlotGobDims;
    options.PlotGobExtLoose = settings.PlotGobExtLoose;
    return options;
}

study::GraphOptions graphOptions(const Settings& settings, study::GraphKind kind) {
    study::GraphOptions options;
    options.GridStyle = settings.GridStyle;
    options.GraphStyle = settings.GraphStyle;
    options.CurveLegend = settings.CurveLegend;
    options.SymbolSize = settings.SymbolSize;
    options.GraphUnits = settings.GraphUnits;
    options.GraphTitle = settings.GraphTitle;
    options.XAxisTitle = settings.XAxisTitle[static_cast<std::size_t>(kind)];
    options.YAxisTitle = settings.YAxisTitle[study::rowOf(kind).isOfBarrier() ? 1 : 0];
    options.RoundTELVOSF = settings.RoundTELVOSF;
    return options;
}

study::GraphRange graphRange(const Settings& settings) {
    return {.PlotRangeMin = settings.PlotRangeMin, .PlotRangeMax = settings.PlotRangeMax};
}

} // namespace telvo::app
