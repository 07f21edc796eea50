// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/caseFacts.h"

#include "project/fieldNames.h"
#include "project/units.h"

namespace telvo::project {

std::vector<CaseFact> caseFacts(const ProjectCase& current, const KeyFigures& figures) {
    const auto value = [&](Field field) { return valueText(current.Input, field, current.Units); };
    const std::string length(unitLabel(current.Units, Quantity::Length));
    const auto why = [&](const std::string& text, std::string_view none) {
        if (!text.empty()) return std::string();
        return figures.why.empty() ? std::string(none) : figures.why;
    };
    return {{"lblLoading", "Loading condition", value(Field::Anal), {}},
            {"lblUnits", "Units", std::string(unitSummary(current.Units)), {}},
            {"lblDepth", "Depth of cover", value(Field::DepthCover), {}},
            {"lblHeight", "Entry height", value(Field::EntryHeight), {}},
            {"lblEntries", "Entries", value(Field::NumberEntries), {}},
            {"lblWidth",
             "Panel width",
             figures.PanelWidth.empty() ? std::string() : figures.PanelWidth + length,
             {}},
            {"lblDevelopmentSF", "Stability factor, development", figures.DevelopmentSF,
             why(figures.DevelopmentSF, {})},
            {"lblRetreatSF", "Stability factor, retreat", figures.RetreatSF,
             why(figures.RetreatSF, "There is no retreat without an active gob")},
            {"lblBarrierSF", "Governing barrier stability factor", figures.BarrierSF,
             why(figures.BarrierSF, "No barrier is in use")}};
}

} // namespace telvo::project
