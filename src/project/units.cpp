// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/units.h"

#include "base/numbers.h"
#include "project/automatic.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
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

/// The folder of a file name with its separator, empty where there is none.
std::string_view folderOf(std::string_view fileName) {
    return fileName.substr(0, fileName.find_last_of("/\\") + 1);
}

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
    current.FileName = (target == English ? "English_" : "Metric_") +
                       current.FileName.substr(folderOf(current.FileName).size());
    return success();
}

Result<ProjectCase> convertedCase(const ProjectCase& current) {
    ProjectCase converted = current;
    if (const Status done = convertCase(converted); !done) return done.fault();
    converted.FileName.insert(0, folderOf(current.FileName));
    return converted;
}

const std::string_view ConversionRoundingNote =
    "Every converted value is rounded to two decimals. Converting the case back does not restore "
    "its exact values.";
const std::string_view ConversionUntouchedNote =
    "Angles, an entered pressure arch factor, the number of entries and all options stay as they "
    "are.";

std::optional<std::string> archFactorRemark(const ProjectCase& before, const ProjectCase& after) {
    if (before.Input.Arch == 0 || after.Input.Arch == 0) return std::nullopt;
    const float was = automaticArchFactor(before.Input, before.Units);
    const float is = automaticArchFactor(after.Input, after.Units);
    // A depth or width at the end of the number range has no factor in feet.
    if (was == is || !std::isfinite(was) || !std::isfinite(is)) return std::nullopt;
    return "The automatic pressure arch factor changes from " + generalNumber(was) + " to " +
           generalNumber(is) + " by the conversion";
}

} // namespace telvo::project
