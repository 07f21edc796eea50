// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"

#include <cstdint>
#include <string_view>

namespace telvo::engine {

/// What a quantity measures; with the unit system it tells the unit.
enum class Kind { Number, Factor, Length, Area, Force, ForcePerLength, Stress };

/// Unit of a kind in the engine: "ft", "lb/ft", "psf", "m", "kN/m", "kPa"; "" for plain numbers.
std::string_view unitName(Kind kind, std::int16_t units);

/// Calls visit(name, kind, field) for every quantity of the record, in report order.
/// The one list of the quantities: output, unit steps and the check for unbounded values use it.
template <typename Results, typename Visit>
constexpr void visitQuantities(Results& r, Visit&& visit) {
    visit("PanelWidth", Kind::Length, r.PanelWidth);
    visit("AMZBreadth", Kind::Length, r.AMZBreadth);
    visit("AMZArea", Kind::Area, r.AMZArea);
    visit("PillarLength", Kind::Length, r.PillarLength);
    visit("PillarSkewWidth", Kind::Length, r.PillarSkewWidth);
    visit("PillarArea", Kind::Area, r.PillarArea);
    visit("MinDimension", Kind::Length, r.MinDimension);
    visit("MaxDimension", Kind::Length, r.MaxDimension);
    visit("PillarAreaAMZ", Kind::Area, r.PillarAreaAMZ);
    visit("ExtractionRatioAMZ", Kind::Number, r.ExtractionRatioAMZ);
    visit("PillarStrength", Kind::Stress, r.PillarStrength);
    visit("PillarCapacity", Kind::Force, r.PillarCapacity);
    visit("TotalCapacityAMZ", Kind::Force, r.TotalCapacityAMZ);
    visit("ActiveWidth", Kind::Length, r.ActiveWidth);
    visit("ActiveArea", Kind::Area, r.ActiveArea);
    visit("ActiveCapacityAMZ", Kind::Force, r.ActiveCapacityAMZ);
    visit("BleederStrength", Kind::Stress, r.BleederStrength);
    visit("BleederCapacity", Kind::Force, r.BleederCapacity);
    visit("BleederLoad", Kind::Force, r.BleederLoad);
    visit("BleederExcess", Kind::Force, r.BleederExcess);
    visit("BarrierStrength", Kind::Stress, r.BarrierStrength);
    visit("BarrierCapacity", Kind::Force, r.BarrierCapacity);
    visit("ArchFactor", Kind::Number, r.ArchFactor);
    visit("TributaryLoadAMZ", Kind::Force, r.TributaryLoadAMZ);
    visit("AbutmentExtent", Kind::Length, r.AbutmentExtent);
    visit("RFactorFront", Kind::Number, r.RFactorFront);
    visit("RFactorSide", Kind::Number, r.RFactorSide);
    visit("FrontAbutmentLoad", Kind::ForcePerLength, r.FrontAbutmentLoad);
    visit("SideAbutmentLoad", Kind::ForcePerLength, r.SideAbutmentLoad);
    visit("LoadedWidth", Kind::Length, r.LoadedWidth);
    visit("AbutmentHalfWidth", Kind::Length, r.AbutmentHalfWidth);
    visit("AbutmentLoadAMZ", Kind::Force, r.AbutmentLoadAMZ);
    visit("SlabCornerLoad", Kind::Force, r.SlabCornerLoad);
    visit("FrontOnRemnant", Kind::Force, r.FrontOnRemnant);
    visit("RemnantWidth", Kind::Length, r.RemnantWidth);
    visit("RemnantStrength", Kind::Stress, r.RemnantStrength);
    visit("RemnantCapacity", Kind::Force, r.RemnantCapacity);
    visit("RemnantTotalCapacity", Kind::Force, r.RemnantTotalCapacity);
    visit("RemnantSF", Kind::Factor, r.RemnantSF);
    visit("LFBAR", Kind::Force, r.LFBAR);
    visit("BarrierFrontTransfer", Kind::Force, r.BarrierFrontTransfer);
    visit("LTRANSREM", Kind::Force, r.LTRANSREM);
    visit("LTRANSBAR", Kind::Force, r.LTRANSBAR);
    visit("BarrierTributaryLoad", Kind::Force, r.BarrierTributaryLoad);
    visit("BarrierSideAbutmentLoad", Kind::Force, r.BarrierSideAbutmentLoad);
    visit("BarrierArchLoad", Kind::Force, r.BarrierArchLoad);
    visit("BarrierLoad", Kind::Force, r.BarrierLoad);
    visit("BarrierSF", Kind::Factor, r.BarrierSF);
    visit("AMZLoad", Kind::Force, r.AMZLoad);
    visit("TELVOSF", Kind::Factor, r.TELVOSF);
    visit("BarrierTributaryStress", Kind::Stress, r.BarrierTributaryStress);
    visit("BarrierFrontStress", Kind::Stress, r.BarrierFrontStress);
    visit("BarrierSideStress", Kind::Stress, r.BarrierSideStress);
    visit("BarrierTotalStress", Kind::Stress, r.BarrierTotalStress);
    visit("TributaryStress", Kind::Stress, r.TributaryStress);
    visit("SideShare", Kind::Number, r.SideShare);
    visit("PillarSideStress", Kind::Stress, r.PillarSideStress);
}

/// The first number of a quantity, for its type.
template <typename Field>
constexpr auto firstNumber(const Field& field) {
    if constexpr (requires { field.begin(); })
        return firstNumber(*field.begin());
    else
        return field;
}

/// Calls visit(value) for every number of a quantity, however it is indexed.
template <typename Field, typename Visit>
constexpr void visitNumbers(Field& field, Visit&& visit) {
    if constexpr (requires { field.begin(); }) {
        for (auto& element : field)
            visitNumbers(element, visit);
    } else {
        visit(field);
    }
}

} // namespace telvo::engine
