// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/compare.h"

#include "criteria/criteria.h"
#include "engine/quantities.h"
#include "engine/quantityNames.h"
#include "project/inputFields.h"
#include "project/unitFactors.h"
#include "run/caseRun.h"
#include "run/faultWords.h"
#include "study/Outcome.h"
#include "study/output/StudyOutput.h"

#include <algorithm>
#include <cmath>

namespace telvo::study {

namespace {

/// What two values of cases in different units may differ by and still be one value.
constexpr double ConversionError = 1e-9;

constexpr double PoundsPerKilonewton = 224.80894309971047;
constexpr double PsfPerKilopascal = 20.885434233150126;

} // namespace

double englishOf(project::FieldKind kind) {
    switch (kind) {
    case project::FieldKind::Length:
        return project::FeetPerMetre;
    case project::FieldKind::Strength:
        return project::PsiPerMPa;
    case project::FieldKind::UnitWeight:
        return project::PcfPerKilonewtonPerCubicMetre;
    default:
        return 1;
    }
}

double englishOf(engine::Kind kind) {
    switch (kind) {
    case engine::Kind::Length:
        return project::FeetPerMetre;
    case engine::Kind::Area:
        return project::FeetPerMetre * project::FeetPerMetre;
    case engine::Kind::Force:
        return PoundsPerKilonewton;
    case engine::Kind::ForcePerLength:
        return PoundsPerKilonewton / project::FeetPerMetre;
    case engine::Kind::Stress:
        return PsfPerKilopascal;
    default:
        return 1;
    }
}

namespace {

bool isEnglish(const project::ProjectCase& current) {
    return current.Units == project::English;
}

double converted(double value, double english, const project::ProjectCase& from,
                 const project::ProjectCase& to) {
    if (isEnglish(from) == isEnglish(to)) return value;
    return isEnglish(to) ? value * english : value / english;
}

ComparedCase computed(std::string name, project::ProjectCase current, int RoundTELVOSF) {
    ComparedCase one;
    one.name = std::move(name);
    run::RunOutcome outcome = run::runCase(current);
    if (auto* done = std::get_if<run::Run>(&outcome)) {
        one.flags = criteria::assess(done->in, current.Input, done->results, RoundTELVOSF).flags;
        one.run = std::move(*done);
    } else if (const auto* refusal = std::get_if<Refusal>(&outcome)) {
        one.message = refusal->message;
    } else {
        one.message = faultText(run::inWords(std::get<Fault>(outcome), current.Units, true));
    }
    one.current = std::move(current);
    return one;
}

class Comparing {
  public:
    explicit Comparing(Comparison& comparison) : m_all(comparison) {}

    void run() {
        texts("Title", "Title", [](const ComparedCase& one) { return one.current.Title; });
        texts("Units", "Units", [](const ComparedCase& one) {
            return std::string(isEnglish(one.current) ? "English" : "metric");
        });
        for (const project::FieldId id : project::RecordNumbers)
            if (id.field != project::Field::Reserved) input(id);
        results();
        texts("flags", "Flags of the warnings", [](const ComparedCase& one) {
            return one.run ? flagText(one.flags) : std::string();
        });
        texts("message", "Why there is no result",
              [](const ComparedCase& one) { return one.message; });
    }

  private:
    const ComparedCase& base() const { return m_all.cases[m_all.base]; }

    template <typename Text>
    void texts(std::string name, std::string label, Text&& text) {
        ComparedRow row;
        row.name = std::move(name);
        row.label = std::move(label);
        for (const ComparedCase& one : m_all.cases)
            row.texts.push_back(text(one));
        for (const std::string& each : row.texts)
            row.differs = row.differs || each != row.texts[m_all.base];
        m_all.rows.push_back(std::move(row));
    }

    void input(project::FieldId id) {
        ComparedRow row;
        row.kind = ComparedRow::Kind::Input;
        row.name = project::nameOf(id);
        row.label = project::fullLabelOf(id);
        row.unit = project::fieldUnit(project::kindOf(id), base().current.Units);
        const double english = englishOf(project::kindOf(id));
        for (const ComparedCase& one : m_all.cases) {
            const project::ProjectInput& in = one.current.Input;
            const bool has =
                !project::rowOf(id.field).isDistances() || id.index <= project::distanceCount(in);
            row.values.push_back(has ? std::optional(converted(project::get(in, id), english,
                                                               one.current, base().current))
                                     : std::nullopt);
        }
        add(std::move(row));
    }

    void results() {
        const engine::AnalysisResults none{};
        engine::visitQuantities(none, [&](const char* name, engine::Kind kind, const auto& field) {
            engine::flatten(
                name, field, engine::MaxPillars, [&](const std::string& path, const auto& number) {
                    const auto* begin = reinterpret_cast<const char*>(&none);
                    const auto* here = reinterpret_cast<const char*>(&number);
                    using Number = std::remove_cvref_t<decltype(number)>;
                    result<Number>(path, kind, static_cast<std::size_t>(here - begin),
                                   engine::isPerPillar<std::remove_cvref_t<decltype(field)>>);
                });
        });
    }

    template <typename Number>
    void result(const std::string& path, engine::Kind kind, std::size_t offset, bool perPillar) {
        ComparedRow row;
        row.kind = ComparedRow::Kind::Result;
        row.name = path;
        if (const auto outcome = Outcome::named(path)) row.label = outcome->label();
        row.unit = engine::unitName(kind, base().current.Units);
        const int pillar = perPillar ? path.back() - '0' : 0;
        const double english = englishOf(kind);
        for (const ComparedCase& one : m_all.cases) {
            if (!one.run || pillar > one.run->results.NumberPillars) {
                row.values.emplace_back();
                continue;
            }
            const auto* number = reinterpret_cast<const Number*>(
                reinterpret_cast<const char*>(&one.run->results) + offset);
            row.values.push_back(
                converted(static_cast<double>(*number), english, one.current, base().current));
        }
        add(std::move(row));
    }

    void add(ComparedRow row) {
        bool any = false;
        const auto& own = row.values[m_all.base];
        for (std::size_t i = 0; i < row.values.size(); ++i) {
            const auto& value = row.values[i];
            any = any || value;
            if (!value || !own) {
                row.differs = row.differs || value.has_value() != own.has_value();
                continue;
            }
            const bool exact = isEnglish(m_all.cases[i].current) == isEnglish(base().current);
            const double allowed =
                exact ? 0 : ConversionError * std::max(std::abs(*value), std::abs(*own));
            row.differs = row.differs || std::abs(*value - *own) > allowed;
        }
        if (any) m_all.rows.push_back(std::move(row));
    }

    Comparison& m_all;
};

} // namespace

std::optional<double> Comparison::difference(const ComparedRow& row, std::size_t which) const {
    if (row.values.empty() || !row.values[which] || !row.values[base]) return std::nullopt;
    return *row.values[which] - *row.values[base];
}

std::optional<double> Comparison::percent(const ComparedRow& row, std::size_t which) const {
    const auto by = difference(row, which);
    if (!by || *row.values[base] == 0) return std::nullopt;
    return *by / std::abs(*row.values[base]) * 100;
}

Result<Comparison> compare(std::vector<std::pair<std::string, project::ProjectCase>> cases,
                           std::size_t base, int RoundTELVOSF) {
    if (cases.size() < 2) return Fault{"A comparison needs two cases", ""};
    if (base >= cases.size()) return Fault{"The base is none of the cases", ""};
    Comparison comparison;
    comparison.base = base;
    for (auto& [name, current] : cases)
        comparison.cases.push_back(computed(std::move(name), std::move(current), RoundTELVOSF));
    Comparing(comparison).run();
    return comparison;
}

} // namespace telvo::study
