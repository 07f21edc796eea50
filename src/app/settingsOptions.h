// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/SettingsStore.h"
#include "plot/panelPlan.h"
#include "report/ReportWriter.h"
#include "study/graph/GraphOptions.h"
#include "study/graph/sfGraph.h"

/// What the settings mean to those who draw and write: one named function per record of options.
namespace telvo::app {

report::ReportOptions reportOptions(const Settings& settings);
plot::PlanOptions planOptions(const Settings& settings);
/// The options of a graph, with the titles of its kind.
study::GraphOptions graphOptions(const Settings& settings, study::GraphKind kind);
study::GraphRange graphRange(const Settings& settings);

} // namespace telvo::app
