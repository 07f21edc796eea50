// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ProjectInput.h"

#include "project/units.h"

namespace telvo::project {

void newCase(ProjectCase& current, int units, bool untitled) {
    if (units >= 0) current.Units = units == English ? English : Metric;
    const auto reserved = current.Input.Reserved;
    current.Input = ProjectInput{};
    current.Input.Reserved = reserved;
    if (current.Units != English) {
        current.Input.CoalStrength /= PsiPerMPa;
        current.Input.UnitWeight /= PcfPerKilonewtonPerCubicMetre;
    }
    current.Title.clear();
    current.Description.clear();
    current.DescriptionLines = 0;
    if (untitled) current.FileName = "Untitled";
}

ProjectCase newCase(std::int16_t units) {
    ProjectCase made;
    newCase(made, units, true);
    return made;
}

} // namespace telvo::project
