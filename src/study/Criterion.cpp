// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/Criterion.h"

#include "base/numbers.h"
#include "base/text.h"

namespace telvo::study {

namespace {

constexpr std::string_view SuggestedWord = "suggested";

}

Result<Criterion> Criterion::parse(std::string_view text) {
    const std::size_t at = text.find_first_of("<>");
    if (at == std::string_view::npos || at + 1 >= text.size() || text[at + 1] != '=')
        return Fault{"A criterion is written like TELVOSF.retreat>=1.5, with >= or <=",
                     std::string(text)};
    const std::string_view name = trimmed(text.substr(0, at));
    const std::string_view number = trimmed(text.substr(at + 2));
    const auto outcome = Outcome::named(name);
    if (!outcome) return Fault{"No quantity of this name: " + std::string(name), std::string(text)};
    Criterion criterion{*outcome, text[at] == '>' ? Sense::AtLeast : Sense::AtMost, {}};
    if (number == SuggestedWord) {
        if (!outcome->marginToSuggested())
            return Fault{"Only stability factors of the panel and of barriers have a suggested one",
                         std::string(text)};
        return criterion;
    }
    criterion.target = numberOf(number);
    if (!criterion.target) return Fault{"Not a number: " + std::string(number), std::string(text)};
    return criterion;
}

Outcome Criterion::margin() const {
    return target ? outcome.marginTo(*target) : outcome.marginToSuggested().value_or(outcome);
}

std::string Criterion::words() const {
    return inSentence(outcome.label()) + (sense == Sense::AtLeast ? " >= " : " <= ") +
           (target ? generalNumber(*target) : "the suggested one");
}

std::string Criterion::title(std::int16_t units) const {
    return outcome.label() + (sense == Sense::AtLeast ? " at least " : " at most ") +
           (target ? outcome.text(*target, units) : "the suggested one");
}

std::string Criterion::text() const {
    return outcome.name() + (sense == Sense::AtLeast ? ">=" : "<=") +
           (target ? generalNumber(*target) : std::string(SuggestedWord));
}

Result<std::vector<std::optional<double>>> parseTargets(std::string_view text) {
    std::vector<std::optional<double>> targets;
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t to = std::min(text.find(',', from), text.size());
        const std::string_view one = trimmed(text.substr(from, to - from));
        from = to + 1;
        if (one.empty()) continue;
        if (one == "suggested") {
            targets.emplace_back(std::nullopt);
        } else if (const auto number = numberOf(one)) {
            targets.emplace_back(*number);
        } else {
            return Fault{"A target is a number or \"suggested\", not \"" + std::string(one) + "\"",
                         ""};
        }
    }
    if (targets.empty() || targets.size() > MostTargets)
        return Fault{"Enter one to eight targets with commas, such as 1.3, 1.5, suggested", ""};
    return targets;
}

} // namespace telvo::study
