// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/units.h"

#include "base/numbers.h"

#include <array>
#include <cmath>
#include <optional>
#include <string>

namespace telvo::project {

namespace {

// Row 7 pairs feet with centimetres and row 6 calls metric tons "tn"; both are meant so.
constexpr std::array<std::array<std::string_view, 15>, 2> UnitLabels = {
    {{" (ft)", " (psi)", " (pcf)", " (in)", " (psf)", " (lbs)", " (tons)", " (ft)", " (ksi)",
      " (tons)", " (tons/ft)", " (in)", " (tons)", " (tons/ft)", " (million psi)"},
     {" (m)", " (MPa)", " (kN/m3)", " (cm)", " (kPa)", " (kN)", " (tn)", " (cm)", " (MPa)", " (MN)",
      " (MN/m)", " (mm)", " (kN)", " (kN/m)", " (GPa)"}}};

/// Converts the fields of one record and remembers the first that does not fit its type.
class Converter {
  public:
    explicit Converter(bool toEnglish) : m_toEnglish(toEnglish) {}

    template <typename Number>
    void convert(Number& field, double factor, std::string_view name) {
        const double value = roundHalfEven2(m_toEnglish ? field * factor : field / factor);
        const auto stored = static_cast<Number>(value);
        if (!std::isfinite(stored) && m_failed.empty()) m_failed = name;
        field = stored;
    }
    template <typename Number>
    void length(Number& field, std::string_view name) {
        convert(field, FeetPerMetre, name);
    }
    const std::string& failed() const { return m_failed; }

  private:
    bool m_toEnglish;
    std::string m_failed;
};

} // namespace

std::string_view unitLabel(std::int16_t units, Quantity quantity) {
    if (units != English && units != Metric) return {};
    return UnitLabels[static_cast<std::size_t>(units)][static_cast<std::size_t>(quantity)];
}

std::string_view unitSummary(std::int16_t units) {
    return units == English ? "ft, in, lbs, psi, pcf" : "m, cm, kN, MPa, kN/m3";
}

Status convertCase(ProjectCase& current) {
    const std::int16_t target = current.Units == English ? Metric : English;
    ProjectInput in = current.Input;
    Converter converter(target == English);
    converter.length(in.EntryHeight, "EntryHeight");
    converter.length(in.DepthCover, "DepthCover");
    converter.length(in.EntryWidth, "EntryWidth");
    converter.length(in.XcutSpacing, "XcutSpacing");
    for (int i = 1; i <= 9; ++i) {
        if (i < in.NumberEntries)
            converter.length(in.XcutCenters[i], "XcutCenters");
        else
            in.XcutCenters[i] = 0;
    }
    converter.length(in.BreadthAMZ, "BreadthAMZ");
    converter.length(in.ExtentActiveGob, "ExtentActiveGob");
    converter.length(in.ExtentFirstGob, "ExtentFirstGob");
    converter.length(in.BarrierFirstGob, "BarrierFirstGob");
    converter.length(in.SlabcutFirstGob, "SlabcutFirstGob");
    converter.length(in.ExtentSecondGob, "ExtentSecondGob");
    converter.length(in.BarrierSecondGob, "BarrierSecondGob");
    converter.length(in.SlabcutSecondGob, "SlabcutSecondGob");
    converter.length(in.WidthC, "WidthC");
    converter.length(in.WidthD, "WidthD");
    converter.convert(in.CoalStrength, PsiPerMPa, "CoalStrength");
    converter.convert(in.UnitWeight, PcfPerKilonewtonPerCubicMetre, "UnitWeight");
    if (!converter.failed().empty())
        return Fault{"the value is too large to be converted", converter.failed()};

    current.Input = in;
    current.Units = target;
    const auto slash = current.FileName.find_last_of("/\\");
    const std::string base =
        slash == std::string::npos ? current.FileName : current.FileName.substr(slash + 1);
    current.FileName = (target == English ? "English_" : "Metric_") + base;
    return success();
}

} // namespace telvo::project
