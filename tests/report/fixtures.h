// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/numbers.h"
#include "base/text.h"
#include "engine/driver.h"
#include "project/inputFields.h"
#include "report/sections.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

namespace telvo::report {

/// A six-entry panel that departs from no default and is strong enough for every limit.
struct Panel {
    project::ProjectCase current;
    engine::AnalysisResults r;
    ReportOptions options;

    Panel() { makePlain(project::English); }

    /// 80 ft centers, entries 20 ft wide and 6 ft high, 500 ft deep; metric 24 m, 6 m, 2 m, 150 m.
    void makePlain(std::int16_t units) {
        const bool english = units == project::English;
        current = project::newCase(units);
        project::ProjectInput& in = current.Input;
        in.EntryHeight = english ? 6 : 2;
        in.DepthCover = english ? 500 : 150;
        in.EntryWidth = english ? 20 : 6;
        in.XcutSpacing = english ? 90 : 27;
        in.NumberEntries = 6;
        in.XcutCenters = {{80, 80, 80, 80, 80}};
        in.CoalStrength = english ? 900 : 6.21;
        in.UnitWeight = english ? 162 : 25.45;
        in.BarrierFirstGob = 100;
        r.NumberPillars = 5;
        r.PanelWidth = english ? 400 : 120;
        r.TELVOSF = {{2.5, 2.25}};
        r.BarrierSF[1] = r.BarrierSF[2] = {{5, 5}};
    }

    /// Applies "name=value name=value ...": inputs, results and settings by their names; "Metric=1"
    /// first makes the plain metric panel, "BarrierSF.24" is that of pass 2 and side 4.
    void apply(const std::string& settings) {
        std::istringstream items(settings);
        for (std::string item; items >> item;) {
            const auto sign = item.find('=');
            ASSERT_TRUE(sign != std::string::npos &&
                        set(item.substr(0, sign), leadingValue(item.substr(sign + 1))))
                << item;
        }
    }

    /// The results need not be those of the inputs.
    run::Run run() const {
        run::Run run{current,
                     engine::workingInputs(current.Input, current.Units, r.AnalysisCase),
                     {},
                     r,
                     {}};
        run.in.AnalysisCase = r.AnalysisCase;
        run.in.PanelWidth = r.PanelWidth;
        return run;
    }
    Warnings warnings() const { return assessWarnings(run(), options); }
    ReportPages pages() const { return makeReport(run(), options).pages; }

  private:
    bool set(const std::string& name, double value) {
        const auto whole = static_cast<std::int16_t>(value);
        const std::map<std::string, double*> results = {
            {"PanelWidth", &r.PanelWidth},        {"TELVOSF.2", &r.TELVOSF[2]},
            {"BarrierSF.13", &r.BarrierSF[1][3]}, {"BarrierSF.23", &r.BarrierSF[2][3]},
            {"BarrierSF.24", &r.BarrierSF[2][4]}, {"LFBAR.24", &r.LFBAR[2][4]}};
        const std::map<std::string, int*> modes = {
            {"AnalysisCase", &r.AnalysisCase},
            {"RoundTELVOSF", &options.RoundTELVOSF},
            {"OutputStrGradUnits", &options.OutputStrGradUnits},
            {"OutputStrUnits", &options.OutputStrUnits}};
        if (name == "Metric") return makePlain(whole), true;
        if (name == "Units") return current.Units = whole, true;
        if (name == "TELVOSF") return r.TELVOSF = {{value, value}}, true;
        if (name == "BarrierSF") return r.BarrierSF[1][3] = r.BarrierSF[2][3] = value, true;
        if (results.contains(name)) return *results.at(name) = value, true;
        if (modes.contains(name)) return *modes.at(name) = whole, true;
        bool found = false;
        project::visitInputFields(current.Input,
                                  [&](const char* field, project::FieldKind, auto& into) {
                                      using Field = std::remove_reference_t<decltype(into)>;
                                      if constexpr (std::is_arithmetic_v<Field>)
                                          if (name == field)
                                              into = static_cast<Field>(value), found = true;
                                  });
        return found;
    }
};

/// Cells of a line of a test table, without the blanks around them.
inline std::vector<std::string> cells(const std::string& line, char separator) {
    std::vector<std::string> found;
    std::istringstream parts(line + separator);
    for (std::string part; std::getline(parts, part, separator);)
        found.emplace_back(trimmed(part));
    return found;
}

/// A text written with line feeds, as the report has it.
inline std::string withCrLf(const std::string& text) {
    std::string out;
    for (const char c : text)
        out += c == '\n' ? std::string(LineBreak) : std::string(1, c);
    return out;
}

} // namespace telvo::report
