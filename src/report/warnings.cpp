// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/warnings.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/advisories.h"
#include "project/units.h"

#include <algorithm>
#include <initializer_list>

namespace telvo::report {

using namespace engine;
using project::ProjectCase;

namespace {

constexpr double VeryDeepLimit = 2000; // ft
constexpr double NoBarrier = 10000;    // stands for the barrier SF where there is no barrier

/// The limits as the texts name them, by unit system; labels only.
struct LimitTexts {
    std::string_view shallow, deep, deepBurst, panelWidth, veryDeep;
};
constexpr LimitTexts EnglishLimits = {"650 ft", "1000 ft", "1000 ft. ", "425 ft", "2000 ft"};
constexpr LimitTexts MetricLimits = {"200 m", "300 m", "300 m. ", "130 m", "600 m"};

constexpr std::string_view HelpSuffix = "  For more information, consult Help/Stability Factors.";

constexpr std::string_view ShallowText =
    "A. Analysis of the TELVO case history data base suggests that the risk of pillar failure is "
    "increased when the TELVO SF is less than 1.5.";
constexpr std::string_view IntermediateStart =
    "B. Analysis of the TELVO case history data base suggests that when the depth of cover is ";
constexpr std::string_view DeepStart =
    "C. Analysis of the TELVO case history data base suggests that when the depth of cover is "
    "greater than ";
constexpr std::string_view RiskBelow =
    ", the risk of pillar failure is increased when the TELVO SF is less than 1.5 or (";
constexpr std::string_view IfPanelNarrower = " if the panel width is less than ";
constexpr std::string_view AndBarrierExceeds = " and the Barrier Pillar SF exceeds 2.0.) ";
constexpr std::string_view BarrierStart =
    "Analysis of the TELVO case history data base suggests that when the depth of cover is greater "
    "than ";
constexpr std::string_view BarrierEnd =
    ", the risk of pillar failure is increased when the Barrier Pillar SF is less than 1.5. ";
// "an TELVO" is the wording of the published recommendation.
constexpr std::string_view SlenderText =
    "Analysis of the TELVO case history data base suggests that large groups of slender pillars, "
    "with width-to-height ratios of less than 4.0, may collapse suddenly.  To minimize this "
    "potentially severe hazard, an TELVO SF of at least 2.0 is recommended when such slender "
    "pillars are used.  An alternative is to minimize the size of the area supported by slender "
    "pillars.";
constexpr std::string_view VeryDeepStart =
    "The TELVO database includes only 7 retreat mining cases where the depth of cover exceeded ";
constexpr std::string_view VeryDeepEnd =
    ", and three of those were failures.  Retreat mining should be avoided when the depth of cover "
    "exceeds ";
constexpr std::string_view BurstStart =
    "The TELVO database includes 44 failures that occurred where the depth of cover exceeded ";
constexpr std::string_view BurstEnd =
    " Of these, 20 were caused by coal bursts.  BODRA recommends that deep cover room-and-pillar "
    "retreat coal mines conduct regular burst hazard assessments for any areas where retreat "
    "mining is proposed and the depth of cover exceeds ";
constexpr std::string_view ArchModelText =
    "The Pressure Arch loading model used in TELVO v6 was derived from analysis of case history "
    "data from the Western and Central Appalachian coalfields in the US.  The overburden rock in "
    "these two coalfields is relatively strong.  No research has been conducted to test the "
    "applicability of the pressure arch loading model in other coalfields.";

/// What the tests look at; depths and widths in feet.
struct Assessment {
    double H = 0;             // depth of cover; ft
    double PW = 0;            // panel width; ft
    double BSF = NoBarrier;   // smallest barrier SF of the run, unrounded
    double widthToHeight = 0; // mean pillar width over mining height
    float SFsug = 0;          // suggested SF at this depth
    int LC = 1;               // loading condition
    bool activeGob = false;
};

bool hasBarrier(const ProjectCase& current, int k) {
    return (k == FirstSide ? current.Input.BarrierFirstGob : current.Input.BarrierSecondGob) != 0;
}

/// A barrier factor of 0 counts; a side without a barrier does not.
double minimumBarrierSF(const ProjectCase& current, const AnalysisResults& r) {
    double minimum = NoBarrier;
    for (int k = FirstSide; k <= r.AnalysisCase; ++k)
        if (hasBarrier(current, k))
            for (const int p : {Development, Retreat})
                minimum = std::min(minimum, r.BarrierSF[p][k]);
    return minimum;
}

Assessment assess(const ProjectCase& current, const AnalysisResults& r,
                  const ReportOptions& options) {
    const project::ProjectInput& in = current.Input;
    const double feet = current.Units == project::English ? 1 : project::FeetPerMetre;
    const double n = in.NumberEntries - 1;
    Assessment a;
    a.H = in.DepthCover * feet;
    a.PW = r.PanelWidth * feet;
    a.BSF = minimumBarrierSF(current, r);
    a.widthToHeight = (r.PanelWidth - n * in.EntryWidth) / (n * in.EntryHeight);
    a.SFsug = suggestedSF(a.H, options.RoundTELVOSF);
    a.LC = r.AnalysisCase;
    a.activeGob = in.ExtentActiveGob > 0;
    return a;
}

/// Flags of depth and stability for one factor. At least and at most include the boundary, although
/// the texts say "less than" and "greater than".
void flagFactor(const Assessment& a, float SF, std::array<bool, 16>& flags) {
    const bool intermediate = a.H > ShallowLimit && a.H <= DeepLimit;
    const bool deep = a.H > DeepLimit;
    const bool sideGob = a.LC >= OneSideGob;
    const bool narrow = a.PW <= PanelWidthLimit;
    const bool strongBarrier = a.BSF >= 2.0;
    const bool excepted = narrow && (!sideGob || strongBarrier);
    if (SF < 1.5F) {
        if (a.H <= ShallowLimit) flags[0] = true;
        if (intermediate && !(excepted && SF >= a.SFsug)) flags[1] = true;
        if (deep && !(excepted && SF >= 1.3F)) flags[2] = true;
    }
    if (a.H > ShallowLimit && sideGob && a.BSF < 1.5) flags[3] = true;
    if (SF < 2.0F && a.widthToHeight < 4.0) flags[5] = true;
    if (a.activeGob && a.H > VeryDeepLimit) flags[6] = true;
    if (a.activeGob && a.H > DeepLimit) flags[7] = true;
}

/// Notices on inputs that depart from the calibration of the data base.
void flagInputs(const ProjectCase& current, int LC, std::array<bool, 16>& flags) {
    const project::ProjectInput& in = current.Input;
    const auto departs = [](double angle) { return angle != project::CalibratedAbutmentAngle; };
    flags[9] = in.AMZ != 1;
    flags[10] = !project::isCalibratedUnitWeight(in.UnitWeight, current.Units);
    flags[11] = !project::isCalibratedCoalStrength(in.CoalStrength, current.Units);
    flags[12] = (LC >= ActiveGob && departs(in.AbutmentAngleActiveGob)) ||
                (LC >= OneSideGob && departs(in.AbutmentAngleFirstGob)) ||
                (LC == TwoSideGobs && departs(in.AbutmentAngleSecondGob));
    flags[13] = LC == TwoSideGobs;
    flags[14] = in.Arch != 1;
    flags[15] = in.ArchFactor < 1.0F;
}

std::string joined(std::initializer_list<std::string_view> pieces) {
    std::string out;
    for (const auto piece : pieces)
        out += piece;
    return out;
}

/// A length unit label without its parentheses: " ft", " m".
std::string bareLengthUnit(std::int16_t units) {
    std::string label(project::unitLabel(units, project::Quantity::Length));
    std::erase_if(label, [](char c) { return c == '(' || c == ')'; });
    return label;
}

std::string warningText(int flag, const ProjectCase& current, const Assessment& a) {
    const LimitTexts& limit = current.Units == project::English ? EnglishLimits : MetricLimits;
    switch (flag) {
    case 0:
        return std::string(ShallowText);
    case 1: {
        const std::string Hd =
            formatPattern(current.Input.DepthCover, "0") + bareLengthUnit(current.Units);
        const std::string SFsug = formatPattern(a.SFsug, "0.00");
        // At the upper end of the scale there is no lower factor to offer, so " or (" falls away.
        if (SFsug == "1.50")
            return joined({IntermediateStart, Hd, RiskBelow.substr(0, RiskBelow.size() - 4)});
        return joined({IntermediateStart, Hd, RiskBelow, SFsug, IfPanelNarrower, limit.panelWidth,
                       AndBarrierExceeds});
    }
    case 2:
        return joined({DeepStart, limit.deep, RiskBelow, "1.3", IfPanelNarrower, limit.panelWidth,
                       AndBarrierExceeds});
    case 3:
        return joined({BarrierStart, limit.shallow, BarrierEnd});
    case 5:
        return std::string(SlenderText);
    case 6:
        // Ends on the limit, without a full stop.
        return joined({VeryDeepStart, limit.veryDeep, VeryDeepEnd, limit.veryDeep});
    case 7:
        return joined({BurstStart, limit.deepBurst, BurstEnd, limit.deepBurst});
    case 9:
        return std::string(project::AMZAdvisory);
    case 10:
        return std::string(project::UnitWeightAdvisory);
    case 11:
        return std::string(project::CoalStrengthAdvisory);
    case 12:
        return std::string(project::AbutmentAngleAdvisory);
    case 13:
        return std::string(project::TwoSideGobsAdvisory);
    case 14:
        return std::string(project::ArchAdvisory);
    case 15:
        return std::string(ArchModelText);
    default:
        return {};
    }
}

void writeWarnings(Warnings& warnings, const ProjectCase& current, const Assessment& a) {
    // 13 stands before 12 on purpose.
    constexpr std::array<int, 14> order = {0, 1, 2, 3, 5, 6, 7, 9, 10, 11, 13, 12, 14, 15};
    PageWriter page;
    page.heading("WARNINGS");
    for (const int flag : order) {
        if (!warnings.WarningFlags[static_cast<std::size_t>(flag)]) continue;
        std::string text = warningText(flag, current, a);
        if (flag <= 7) {
            warnings.WarningSummary.append(text).append(LineBreak).append(LineBreak);
            text += HelpSuffix;
        }
        page.paragraph(text);
    }
    warnings.section = page.take();
}

} // namespace

float suggestedSF(double depthFeet, int RoundTELVOSF) {
    return RoundSF(1.5 - 0.2 * (depthFeet - ShallowLimit) / (DeepLimit - ShallowLimit),
                   RoundTELVOSF);
}

Warnings assessWarnings(const ProjectCase& current, const AnalysisResults& results,
                        const ReportOptions& options) {
    Warnings warnings;
    const Assessment a = assess(current, results, options);
    for (const int p : {Development, Retreat})
        flagFactor(a, RoundSF(results.TELVOSF[p], options.RoundTELVOSF), warnings.WarningFlags);
    flagInputs(current, a.LC, warnings.WarningFlags);
    warnings.AnyWarning = std::find(warnings.WarningFlags.begin(), warnings.WarningFlags.end(),
                                    true) != warnings.WarningFlags.end();
    warnings.WarningIssued = warnings.WarningFlags[0];
    if (warnings.AnyWarning) writeWarnings(warnings, current, a);
    return warnings;
}

} // namespace telvo::report
