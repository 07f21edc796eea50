// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/inputFields.h"
#include "project/ProjectInput.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

/// Cases drawn from a counter: the same on every machine, which the distributions of the standard
/// library are not.
namespace telvo::tests {

class Draw {
  public:
    explicit Draw(std::uint64_t seed) : m_state(seed) {}
    std::uint64_t bits() { // SplitMix64
        std::uint64_t z = (m_state += 0x9e3779b97f4a7c15U);
        z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9U;
        z = (z ^ z >> 27) * 0x94d049bb133111ebU;
        return z ^ z >> 31;
    }
    bool one(unsigned in) { return bits() % in == 0; }
    double between(double low, double high) {
        return low + (high - low) * static_cast<double>(bits() >> 11) * 0x1p-53;
    }
    std::int16_t number(int count) {
        return static_cast<std::int16_t>(bits() % static_cast<unsigned>(count));
    }

  private:
    std::uint64_t m_state;
};

/// A value of an input: mostly what a mine has, on a grid in every third draw so that rules meet
/// their ties, and now and then what no mine has.
inline double drawn(Draw& draw, project::FieldId id, bool metric) {
    using project::Field;
    const double metre = metric ? 0.3048 : 1;
    if (draw.one(400)) {
        const double odd[] = {0,
                              -1,
                              1e300,
                              1e-300,
                              std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN(),
                              90};
        return odd[draw.bits() % std::size(odd)];
    }
    const auto length = [&](double low, double high) {
        const double x = draw.between(low, high);
        return metre * (draw.one(3) ? std::round(x / 5) * 5 : x);
    };
    switch (id.field) {
    case Field::EntryHeight:
        return length(3, 14);
    case Field::DepthCover:
        return draw.one(30) ? length(0, 60) : length(60, 2600);
    case Field::EntryWidth:
        return length(14, 24);
    case Field::XcutSpacing:
        return length(20, 160);
    case Field::XcutAngle:
        return draw.one(2) ? 90 : draw.between(28, 91);
    case Field::XcutCenters:
        return length(15, 150);
    case Field::CoalStrength:
        return draw.one(4) ? (metric ? 6.21 : 900) : draw.between(300, 1500) * (metric ? .0069 : 1);
    case Field::UnitWeight:
        return draw.one(4) ? (metric ? 25.45 : 162) : draw.between(140, 180) * (metric ? .157 : 1);
    case Field::BreadthAMZ:
        return length(10, 400);
    case Field::ArchFactor:
        return draw.one(20) ? 0 : draw.between(0.2, 1.02);
    case Field::AbutmentAngleActiveGob:
    case Field::AbutmentAngleFirstGob:
    case Field::AbutmentAngleSecondGob:
        return draw.one(3) ? 21 : draw.one(20) ? 90 * draw.number(2) : draw.between(1, 92);
    case Field::BarrierFirstGob:
    case Field::BarrierSecondGob:
        return draw.one(5) ? 0 : length(2, 300);
    case Field::SlabcutFirstGob:
    case Field::SlabcutSecondGob:
        return draw.one(2) ? 0 : length(0, 60);
    case Field::WidthC:
    case Field::WidthD:
        return length(5, 120);
    default:
        return draw.one(6) ? 0 : length(0, 3000);
    }
}

/// A panel of any loading condition, unit system and number of entries, with or without rows.
inline project::ProjectCase drawnCase(Draw& draw) {
    project::ProjectCase made = project::newCase(project::English);
    made.Units = draw.one(12) ? std::int16_t{2} : draw.number(2);
    project::ProjectInput& in = made.Input;
    for (const project::FieldId id : project::NumericInputs)
        for (int again = 0; again < 9; ++again) { // odd ones seldom, or no case would have results
            const double x = drawn(draw, id, made.Units != project::English);
            project::set(in, id, x);
            if (std::isfinite(x) && x >= 0 && (x == 0 || (x > 1e-9 && x < 1e9))) break;
        }
    in.NumberEntries = static_cast<std::int16_t>(2 + draw.number(9));
    in.Anal = draw.number(5);
    in.AMZ = draw.number(2);
    in.Arch = draw.number(3);
    in.RowA = draw.one(5) ? draw.number(3) : std::int16_t{0};
    in.RowB = draw.one(5) ? draw.number(2) : std::int16_t{0};
    in.RowC = draw.number(2);
    in.RowD = draw.number(2);
    if (draw.one(2)) // as most panels are
        for (double& distance : in.XcutCenters)
            distance = in.XcutCenters[1];
    if (in.RowA == 1) in.SlabcutFirstGob = 0;
    if (in.RowB == 1) in.SlabcutSecondGob = 0;
    in.SlabcutFirstGob = std::min(in.SlabcutFirstGob, in.BarrierFirstGob);
    in.SlabcutSecondGob = std::min(in.SlabcutSecondGob, in.BarrierSecondGob);
    return made;
}

} // namespace telvo::tests
