// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/Outcome.h"

#include "base/numbers.h"
#include "criteria/limits.h"
#include "engine/driver.h"
#include "engine/quantityNames.h"
#include "engine/questions.h"
#include "run/faultWords.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>

namespace telvo::study {

using namespace engine;

namespace {

constexpr std::string_view Smallest = "smallest";

bool hasPart(std::string_view path, std::string_view part) {
    for (std::size_t from = 0; from <= path.size();) {
        const std::size_t to = std::min(path.find('.', from), path.size());
        if (path.substr(from, to - from) == part) return true;
        from = to + 1;
    }
    return false;
}

int sideOf(std::string_view path) {
    for (const int side : AllSides)
        if (hasPart(path, indexName<FirstSide, SecondSide>(side))) return side;
    return 0;
}

} // namespace

bool Outcome::add(std::string_view path) {
    static const AnalysisResults record{};
    const std::string_view quantity = path.substr(0, path.find('.'));
    bool found = false;
    visitQuantities(record, [&](const char* name, Kind kind, const auto& field) {
        if (name != quantity) return;
        int pillar = 0;
        flatten(name, field, MaxPillars, [&](const std::string& known, const auto& number) {
            ++pillar;
            if (known != path) return;
            const auto* begin = reinterpret_cast<const char*>(&record);
            const auto* here = reinterpret_cast<const char*>(&number);
            m_kind = kind;
            m_places[m_count++] = {static_cast<std::size_t>(here - begin),
                                   sizeof number == sizeof(float), sideOf(path),
                                   isPerPillar<std::remove_cvref_t<decltype(field)>> ? pillar : 0};
            found = true;
        });
    });
    return found;
}

std::optional<Outcome> Outcome::named(std::string_view name) {
    Outcome outcome;
    outcome.m_name = name;
    bool known = false;
    if (const std::size_t at = name.find(Smallest); at == std::string_view::npos) {
        known = outcome.add(name);
    } else {
        for (const int side : AllSides) {
            std::string path(name);
            path.replace(at, Smallest.size(), indexName<FirstSide, SecondSide>(side));
            known = sideOf(path) == side && outcome.add(path);
        }
    }
    if (!known) return std::nullopt;
    return outcome;
}

Outcome Outcome::factor(int pass, int side) {
    std::string name = side == 0 ? "TELVOSF." : "BarrierSF.";
    name += indexName<Development, Retreat>(pass);
    if (side != 0) name.append(".").append(indexName<FirstSide, SecondSide>(side));
    return *named(name);
}

Outcome Outcome::marginTo(double limit) const {
    Outcome margin = *this;
    margin.m_limit += limit;
    return margin;
}

std::optional<Outcome> Outcome::marginToSuggested() const {
    Outcome margin = *this;
    if (m_name.starts_with("TELVOSF."))
        margin.m_suggested = Suggested::OfPanel;
    else if (m_name.starts_with("BarrierSF."))
        margin.m_suggested = Suggested::OfBarrier;
    else
        return std::nullopt;
    return margin;
}

int Outcome::pass() const {
    for (const int pass : {Development, Retreat})
        if (hasPart(m_name, indexName<Development, Retreat>(pass))) return pass;
    return 0;
}

std::string Outcome::name() const {
    if (asksForSuggested()) return m_name + " - suggested";
    return m_limit == 0 ? m_name : m_name + " - " + generalNumber(m_limit);
}

std::string Outcome::label() const {
    std::vector<std::string_view> parts;
    for (std::size_t from = 0; from <= m_name.size();) {
        const std::size_t to = std::min(m_name.find('.', from), m_name.size());
        parts.push_back(std::string_view(m_name).substr(from, to - from));
        from = to + 1;
    }
    std::string label;
    if (m_kind == Kind::Factor) {
        const std::string_view last = parts.back();
        const bool panel = parts.front() == "TELVOSF";
        const std::string what = parts.front() == "RemnantSF" ? " remnant" : " barrier";
        if (pass() != 0)
            label = indexName<Development, Retreat>(pass()) == "retreat"
                        ? "retreat factor of the "
                        : "development factor of the ";
        else
            label = "factor of the ";
        if (panel)
            label += "panel";
        else if (last == Smallest)
            label.append("weaker").append(what);
        else
            label.append(last).append(what);
    } else {
        label = run::quantityWords(parts.front());
        for (std::size_t i = 1; i < parts.size(); ++i) {
            const bool pillar = parts[i][0] >= '0' && parts[i][0] <= '9';
            label.append(pillar ? ", pillar " : ", ").append(parts[i]);
            if (sideOf(parts[i]) != 0) label += " side";
        }
    }
    if (label[0] >= 'a' && label[0] <= 'z') label[0] = static_cast<char>(label[0] - 'a' + 'A');
    if (asksForSuggested()) return label + " above the suggested one";
    return m_limit == 0 ? label : label + " less " + generalNumber(m_limit);
}

std::string Outcome::text(double value, std::int16_t units) const {
    std::string text = generalNumber(value, 4);
    if (const std::string_view unit = unitName(m_kind, units); !unit.empty())
        text.append(" ").append(unit);
    return text;
}

std::string Outcome::quantityOf(const Place& place) const {
    std::string path = m_name;
    if (const std::size_t at = path.find(Smallest); at != std::string::npos)
        path.replace(at, Smallest.size(), indexName<FirstSide, SecondSide>(place.side));
    return path;
}

std::vector<std::string> Outcome::quantities() const {
    std::vector<std::string> names;
    for (std::size_t n = 0; n < m_count; ++n)
        names.push_back(quantityOf(m_places[n]));
    return names;
}

double Outcome::lessLimit(double value, double suggested) const {
    switch (m_suggested) {
    case Suggested::OfPanel:
        return value - suggested;
    case Suggested::OfBarrier:
        return value - criteria::SuggestedSF;
    case Suggested::No:
        break;
    }
    return value - m_limit;
}

bool Outcome::has(const Place& place, const Frame& frame, const project::ProjectInput& in) const {
    if (place.pillar > frame.NumberPillars) return false;
    if (place.side == 0) return true;
    const double width = place.side == FirstSide ? in.BarrierFirstGob : in.BarrierSecondGob;
    return place.side <= frame.AnalysisCase && (m_kind != Kind::Factor || width > 0);
}

bool Outcome::isDefined(const Frame& frame, const project::ProjectInput& in) const {
    return std::any_of(m_places.begin(), m_places.begin() + m_count,
                       [&](const Place& place) { return has(place, frame, in); });
}

double Outcome::of(const AnalysisResults& results, const Frame& frame,
                   const project::ProjectInput& in, double suggested) const {
    std::array<double, 2> numbers{};
    for (std::size_t n = 0; n < std::min(m_count, numbers.size()); ++n) {
        const char* number = reinterpret_cast<const char*>(&results) + m_places[n].offset;
        if (m_places[n].single) {
            float single = 0;
            std::memcpy(&single, number, sizeof single);
            numbers[n] = single;
        } else {
            std::memcpy(&numbers[n], number, sizeof numbers[n]);
        }
    }
    return from({numbers.data(), m_count}, frame, in, suggested);
}

double Outcome::from(std::span<const double> quantities, const Frame& frame,
                     const project::ProjectInput& in, double suggested) const {
    double smallest = std::numeric_limits<double>::infinity();
    for (std::size_t n = 0; n < m_count; ++n)
        if (has(m_places[n], frame, in)) smallest = std::min(smallest, quantities[n]);
    return lessLimit(smallest, suggested);
}

std::vector<Outcome> outcomesOf(const project::ProjectCase& base) {
    const Frame frame = frameOf(base.Input, base.Units, DevelopmentLoad);
    const int last = lastPass(frame.AnalysisCase, base.Input.ExtentActiveGob);
    std::vector<Outcome> all;
    const auto add = [&](const std::string& name) {
        const auto outcome = Outcome::named(name);
        if (outcome && outcome->pass() <= last && outcome->isDefined(frame, base.Input))
            all.push_back(*outcome);
    };
    for (const char* quantity : {"TELVOSF", "BarrierSF"})
        for (const int pass : {Retreat, Development}) {
            const std::string name =
                quantity + ("." + std::string(indexName<Development, Retreat>(pass)));
            add(name);
            for (const int side : AllSides)
                add(name + "." + std::string(indexName<FirstSide, SecondSide>(side)));
            if (frame.AnalysisCase == TwoSideGobs) add(name + "." + std::string(Smallest));
        }
    for (const int side : AllSides)
        if (last == Retreat)
            add("RemnantSF." + std::string(indexName<FirstSide, SecondSide>(side)));
    const auto isListed = [&](const std::string& name) {
        return std::any_of(all.begin(), all.end(),
                           [&](const Outcome& outcome) { return outcome.name() == name; });
    };
    static const AnalysisResults record{};
    visitQuantities(record, [&](const char* quantity, Kind, const auto& field) {
        flatten(quantity, field, MaxPillars, [&](const std::string& name, const auto&) {
            if (!isListed(name)) add(name);
        });
    });
    return all;
}

} // namespace telvo::study
