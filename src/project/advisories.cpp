// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/advisories.h"

#include <array>

namespace telvo::project {

const std::string_view CoalStrengthAdvisory =
    "The TELVO case history data base was analyzed with an in situ coal strength of 900 psi.  "
    "Stability Factors (SF) obtained with a different in situ coal strength may not be comparable "
    "to the suggested SF values obtained from BODRA's analysis of the data base.  Also, BODRA "
    "research has shown that the reliability of the TELVO design method decreases substantially "
    "when laboratory coal strengths were used in place of the default value.  For more "
    "information, see Help/Resources/In situ strength of coal.";

const std::string_view UnitWeightAdvisory =
    "The TELVO case history data base was analyzed with an overburden unit weight of 162 pcf.  "
    "Stability Factors (SF) obtained with a different overburden unit weight may not be "
    "comparable to the suggested SF values obtained from BODRA's analysis of the data base.";

const std::string_view AbutmentAngleAdvisory =
    "The TELVO case history data base was analyzed with abutment angles of 21 degrees.  Stability "
    "Factors (SF) obtained with different abutment angles may not be comparable to the suggested "
    "SF values obtained from BODRA's analysis of the data base.  For more information, see "
    "Help/Project Input Parameters.";

const std::string_view AMZAdvisory =
    "The TELVO case history data base was analyzed with the breadth of the Active Mining Zone "
    "(AMZ) calculated automatically (AMZ = 5 times the square root of the depth of cover).  "
    "Stability Factors (SF) obtained with a different AMZ may not be comparable to the suggested "
    "SF values obtained from BODRA's analysis of the data base.  For more information, see "
    "Help/Project Input Parameters.";

const std::string_view ArchAdvisory =
    "The TELVO case history data base was analyzed with the Pressure Arch Factor (Fpa) calculated "
    "automatically (Fpa = 0.28 times the natural log of the depth-to-panel-width ratio).  "
    "Stability Factors (SF) obtained with a different Fpa may not be comparable to the suggested "
    "SF values obtained from BODRA's analysis of the data base.  For more information, see "
    "Help/Project Input Parameters.";

const std::string_view TwoSideGobsAdvisory =
    "In the TELVO data base, of the 19 case histories of Active Retreat and Two Side Gobs under "
    "deep cover, only 7 were successful.  This extraction sequence should be avoided if possible.";

namespace {

struct Advisory {
    AdvisoryTrigger trigger;
    std::string_view control;
    bool (*departs)(double value, std::int16_t units);
    const std::string_view* text;
};

bool always(double, std::int16_t) {
    return true;
}
bool coalStrengthDeparts(double value, std::int16_t units) {
    return !isCalibratedCoalStrength(value, units);
}
bool unitWeightDeparts(double value, std::int16_t units) {
    return !isCalibratedUnitWeight(value, units);
}
bool angleDeparts(double value, std::int16_t) {
    return value != CalibratedAbutmentAngle;
}
bool isTwoSideGobs(double anal, std::int16_t) {
    return anal == 3;
}

constexpr std::array<Advisory, 8> Advisories = {{
    {AdvisoryTrigger::FocusLeft, "txtCoalStrength", coalStrengthDeparts, &CoalStrengthAdvisory},
    {AdvisoryTrigger::FocusLeft, "txtUnitWeight", unitWeightDeparts, &UnitWeightAdvisory},
    {AdvisoryTrigger::FocusLeft, "txtAbutmentAngleActiveGob", angleDeparts, &AbutmentAngleAdvisory},
    {AdvisoryTrigger::FocusLeft, "txtAbutmentAngleFirstGob", angleDeparts, &AbutmentAngleAdvisory},
    {AdvisoryTrigger::FocusLeft, "txtAbutmentAngleSecondGob", angleDeparts, &AbutmentAngleAdvisory},
    {AdvisoryTrigger::Cleared, "chkAMZ", always, &AMZAdvisory},
    {AdvisoryTrigger::Cleared, "chkArch", always, &ArchAdvisory},
    {AdvisoryTrigger::AnalSelected, "optAnal", isTwoSideGobs, &TwoSideGobsAdvisory},
}};

} // namespace

std::optional<std::string_view> advisory(AdvisoryTrigger trigger, std::string_view control,
                                         double value, std::int16_t units) {
    for (const Advisory& row : Advisories)
        if (row.trigger == trigger && row.control == control && row.departs(value, units))
            return *row.text;
    return std::nullopt;
}

} // namespace telvo::project
