// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/warnings.h"

#include "base/numbers.h"
#include "base/text.h"
#include "criteria/criteria.h"
#include "project/advisories.h"
#include "project/units.h"

#include <initializer_list>

namespace telvo::report {

using namespace engine;
using project::ProjectCase;

namespace {

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

std::string warningText(int flag, const ProjectCase& current, double suggestedSF) {
    const LimitTexts& limit = current.Units == project::English ? EnglishLimits : MetricLimits;
    switch (flag) {
    case 0:
        return std::string(ShallowText);
    case 1: {
        const std::string Hd =
            formatPattern(current.Input.DepthCover, "0") + bareLengthUnit(current.Units);
        const std::string SFsug = formatPattern(suggestedSF, "0.00");
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

void writeWarnings(Warnings& warnings, const ProjectCase& current, double suggestedSF) {
    // 13 stands before 12 on purpose.
    constexpr std::array<int, 14> order = {0, 1, 2, 3, 5, 6, 7, 9, 10, 11, 13, 12, 14, 15};
    PageWriter page;
    page.heading("WARNINGS");
    for (const int flag : order) {
        if (!warnings.WarningFlags[static_cast<std::size_t>(flag)]) continue;
        std::string text = warningText(flag, current, suggestedSF);
        if (flag <= 7) {
            warnings.WarningSummary.append(text).append(LineBreak).append(LineBreak);
            text += HelpSuffix;
        }
        page.paragraph(text);
    }
    warnings.section = page.take();
}

} // namespace

Warnings assessWarnings(const run::Run& run, const ReportOptions& options) {
    const criteria::Assessment assessed =
        criteria::assess(run.in, run.current.Input, run.results, options.RoundTELVOSF);
    Warnings warnings;
    for (std::size_t flag = 0; flag < warnings.WarningFlags.size(); ++flag)
        warnings.WarningFlags[flag] = assessed.flag(static_cast<int>(flag));
    warnings.AnyWarning = assessed.flags != 0;
    warnings.WarningIssued = assessed.flag(0);
    if (warnings.AnyWarning) writeWarnings(warnings, run.current, assessed.figures.suggestedSF);
    return warnings;
}

} // namespace telvo::report
