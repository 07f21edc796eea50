// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/output/headlines.h"

#include "study/output/factors.h"

#include <algorithm>

namespace telvo::study {

const char* titleOf(const StudyAnswer& answer) {
    struct Titles {
        auto operator()(const std::shared_ptr<const TornadoAnswer>&) { return TornadoTitle; }
        auto operator()(const std::shared_ptr<const FindAnswer>&) { return FindTitle; }
        auto operator()(const std::shared_ptr<const DesignAnswer>&) { return DesignTitle; }
        auto operator()(const std::shared_ptr<const Sweep>&) { return SweepTitle; }
        auto operator()(const std::shared_ptr<const ScenarioAnswer>&) { return ScenariosTitle; }
        auto operator()(const std::shared_ptr<const Comparison>&) { return CompareTitle; }
        auto operator()(const std::shared_ptr<const UncertaintyAnswer>&) {
            return UncertaintyTitle;
        }
        auto operator()(const std::shared_ptr<const ShareCurveAnswer>&) { return ShareCurveTitle; }
    };
    return std::visit(Titles{}, answer);
}

std::optional<double> valueIn(const ComparedCase& one, const Outcome& outcome) {
    if (!one.run || !outcome.isDefined(one.run->in, one.current.Input)) return std::nullopt;
    return outcome.of(one.run->results, one.run->in, one.current.Input);
}

/// The factors that any of the cases has; what decides in the base comes first.
std::vector<Outcome> comparedOutcomes(const Comparison& comparison) {
    std::vector<Outcome> all = {defaultOutcome(comparison.cases[comparison.base].current)};
    for (const ComparedCase& one : comparison.cases)
        for (const Outcome& outcome : factorsOf(one.current))
            if (std::none_of(all.begin(), all.end(),
                             [&](const Outcome& known) { return known.name() == outcome.name(); }))
                all.push_back(outcome);
    return all;
}

std::string compareHeadline(const Comparison& comparison, const Outcome& outcome) {
    std::size_t inputs = 0;
    for (const ComparedRow& row : comparison.rows)
        if (row.differs && row.kind == ComparedRow::Kind::Input) ++inputs;
    const ComparedCase& base = comparison.cases[comparison.base];
    std::string text = std::to_string(comparison.cases.size()) + " cases, which differ in " +
                       (inputs == 0   ? std::string("no input")
                        : inputs == 1 ? std::string("one input")
                                      : std::to_string(inputs) + " inputs");
    const auto value = [&](const ComparedCase& one) { return valueIn(one, outcome); };
    const ComparedCase *least = nullptr, *most = nullptr;
    for (const ComparedCase& one : comparison.cases) {
        if (!value(one)) continue;
        if (!least || *value(one) < *value(*least)) least = &one;
        if (!most || *value(one) > *value(*most)) most = &one;
    }
    if (!least) return text + ".";
    const std::int16_t units = base.current.Units;
    text += ". " + outcome.label() + ": ";
    if (*value(*least) == *value(*most)) return text + outcome.text(*value(*least), units) + ".";
    return text + outcome.text(*value(*least), units) + " in \"" + least->name + "\" to " +
           outcome.text(*value(*most), units) + " in \"" + most->name + "\".";
}

std::string scenarioHeadline(const ScenarioAnswer& answer, std::size_t refused) {
    const std::vector<ScenarioRow>& rows = answer.made.rows;
    const Outcome& first = answer.outcomes.front();
    const auto& own = rows.front().outcomes.front();
    const std::int16_t units = rows.front().current.Units;
    std::string text = first.label() + (own ? " " + first.text(*own, units) + " in the case"
                                            : " not computed in the case");
    const auto& worst = answer.made.worst.front();
    if (worst && *worst > 0)
        text += "; worst in \"" + rows[*worst].name +
                "\": " + first.text(*rows[*worst].outcomes.front(), units);
    else if (worst && own)
        text += "; no scenario is worse";
    const auto without =
        refused +
        static_cast<std::size_t>(std::count_if(rows.begin() + 1, rows.end(),
                                               [](const ScenarioRow& row) { return !row.run; }));
    if (without > 0)
        text += ". " + std::to_string(without) + " of " +
                std::to_string(rows.size() - 1 + refused) + " scenarios could not be computed";
    return text + ".";
}

} // namespace telvo::study
