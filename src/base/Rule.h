// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace telvo {

/// Every decision of the method, named for its "yes". A rule that decides says which one, so that
/// whoever computes can note it, explain it, or take both ways at once.
enum class Rule : std::uint8_t {
    // Automatic values of the record
    BreadthRounded,     // to whole feet or metres: the breadth steps
    FormArchDeepEnough, // the arch factor as the parameter form shows it
    FormArchShallow,
    FormArchLowest,
    FormArchRounded, // to hundredths: the factor steps
    FormArchNoPanel,
    // Preparation
    AngleBelowRight, // an abutment angle of less than 90 degrees
    // Geometry and strength
    PillarLengthIsRounding, // a pillar length below 0 is a rounding error off 0
    LengthIsMinimum,        // the pillar is no longer than it is wide
    NoPillarWidth,
    BarrierTooNarrow, // narrower than the mining height: no strength
    RemnantTooNarrow,
    BleederNegligible, // the bleeder row has nothing to lend
    // Loads
    ArchNoPanel,
    ArchShallow,    // the depth exceeds the panel width by less than the margin
    ArchDeepEnough, // the logarithm is taken at all
    ArchLowest,
    ArchRounded,    // to hundredths: the factor steps
    RFactorFull,    // the whole abutment load lies within the distance
    GobSubcritical, // of the active gob (no side) or of a side gob
    FrontFullHeight,
    FrontGobWider, // the active gob is wider than the loaded width
    // Barriers, remnants and their transfers
    NoBarrier,
    RemnantWithoutLoad,
    RemnantWithoutFactor,
    RemnantGone, // the slab cut takes the whole barrier
    RemnantIsWeak,
    RemnantGivesAll, // never more than there is
    FrontMoves,      // front abutment moves into a barrier whose remnant is weak
    BarrierKeepsAll,
    BarrierGivesAll,
    // Stresses of the drawings and figures of the report
    RFactorAlmostOne, // an R-factor of exactly 1 is shown as 0.999
    DivisionByZero,
    LeavePillarOverloaded, // an outer row that is left has nothing to spare
    // Factors as they are compared
    LowestBarrier,
    Count
};

inline constexpr std::size_t RuleCount = static_cast<std::size_t>(Rule::Count);

/// What a rule is applied to; 0 where it is not said of a pass, a side or a pillar.
struct Where {
    int pass = 0;   // 1 development, 2 retreat
    int side = 0;   // 3 first, 4 second
    int pillar = 0; // 1 to 9

    bool operator==(const Where&) const = default;
};

/// What leaves a case without results.
enum class Stop : std::uint8_t {
    None,
    InputRefused,
    NoAbutmentExtent, // the extent of the abutment load is 0
    NoBarrierLoad,    // a barrier carries no load
    NoAMZLoad,        // the active mining zone carries no load
    Unbounded         // a quantity is beyond the range of its type
};

} // namespace telvo
