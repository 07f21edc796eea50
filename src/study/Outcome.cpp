// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/Outcome.h"

#include "base/numbers.h"
#include "engine/quantityNames.h"

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
        flatten(name, field, MaxPillars, [&](const std::string& known, const auto& number) {
            if (known != path) return;
            const auto* begin = reinterpret_cast<const char*>(&record);
            const auto* here = reinterpret_cast<const char*>(&number);
            m_kind = kind;
            m_places[m_count++] = {static_cast<std::size_t>(here - begin),
                                   sizeof number == sizeof(float), sideOf(path)};
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

std::string Outcome::name() const {
    return m_limit == 0 ? m_name : m_name + " - " + generalNumber(m_limit);
}

bool Outcome::has(const Place& place, const Frame& frame, const project::ProjectInput& in) const {
    if (place.side == 0) return true;
    const double width = place.side == FirstSide ? in.BarrierFirstGob : in.BarrierSecondGob;
    return place.side <= frame.AnalysisCase && (m_kind != Kind::Factor || width > 0);
}

bool Outcome::isDefined(const Frame& frame, const project::ProjectInput& in) const {
    return std::any_of(m_places.begin(), m_places.begin() + m_count,
                       [&](const Place& place) { return has(place, frame, in); });
}

double Outcome::of(const AnalysisResults& results, const Frame& frame,
                   const project::ProjectInput& in) const {
    double smallest = std::numeric_limits<double>::infinity();
    for (std::size_t n = 0; n < m_count; ++n) {
        const Place& place = m_places[n];
        if (!has(place, frame, in)) continue;
        const char* number = reinterpret_cast<const char*>(&results) + place.offset;
        double value = 0;
        if (place.single) {
            float single = 0;
            std::memcpy(&single, number, sizeof single);
            value = single;
        } else {
            std::memcpy(&value, number, sizeof value);
        }
        smallest = std::min(smallest, value);
    }
    return smallest - m_limit;
}

} // namespace telvo::study
