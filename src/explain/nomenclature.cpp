// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/nomenclature.h"

#include "engine/Frame.h"

#include <cassert>
#include <span>

namespace telvo::explain {

namespace {

using engine::Kind;
using enum Numbered;

constexpr Symbol InputSymbols[] = {
    {"h", "inputs.EntryHeight", "Entry (mining) height"},
    {"H", "inputs.DepthCover", "Depth of cover"},
    {"We", "inputs.EntryWidth", "Entry width"},
    {"Sc", "inputs.XcutSpacing", "Crosscut spacing, center to center"},
    {"Theta", "inputs.XcutAngle", "Crosscut angle"},
    {"n", "inputs.NumberEntries", "Number of entries"},
    {"C", "inputs.XcutCenters.{i}", "Entry center distance {i}", ByPillar},
    {"S0", "inputs.CoalStrength", "In situ coal strength"},
    {"Gamma", "inputs.UnitWeight", "Unit weight of the overburden"},
    {"B0", "inputs.BreadthAMZ", "Breadth of the active mining zone (AMZ) in the case"},
    {"F0", "inputs.ArchFactor", "Pressure arch factor in the case"},
    {"Ea", "inputs.ExtentActiveGob", "Extent of the active gob"},
    {"betaA", "inputs.AbutmentAngleActiveGob", "Abutment angle of the active gob"},
    {"Es", "inputs.Extent{K}Gob", "Extent of the {k} side gob"},
    {"betaS", "inputs.AbutmentAngle{K}Gob", "Abutment angle of the {k} side gob"},
    {"Wb", "inputs.Barrier{K}Gob", "Width of the {k} barrier"},
    {"Sl", "inputs.Slabcut{K}Gob", "Slab cut in the {k} barrier", BySide},
    {"Wr", "inputs.Width{R}", "Width of the pillars in row {R}"},
    {"", "inputs.Anal", "Loading condition (0 development, 1 active gob, 2 one side gob, 3 two)"},
    {"", "inputs.Reserved", "Carried along, used by nothing"},
    {"", "inputs.AMZ", "Breadth of the AMZ is automatic (1 yes)"},
    {"", "inputs.Arch", "Pressure arch factor is automatic (1 yes)"},
    {"", "inputs.RowA", "Pillar row A is left (1 yes)"},
    {"", "inputs.RowB", "Pillar row B is left (1 yes)"},
    {"", "inputs.RowC", "Bleeder row C is left (1 yes)"},
    {"", "inputs.RowD", "Bleeder row D is left (1 yes)"},
};
constexpr Symbol PreparedSymbols[] = {
    {"S1", "CoalStrength", "In situ coal strength in the unit of stress", No, Kind::Stress},
    {"sinT", "SinTheta", "Sine of the crosscut angle"},
    {"ta", "TanActiveGob", "Tangent of the abutment angle of the active gob"},
    {"ts", "Tan{K}Gob", "Tangent of the abutment angle of the {k} side gob"},
};
constexpr Symbol GeometrySymbols[] = {
    {"Wp", "PanelWidth", "Panel width"},
    {"rHW", "DepthToPanelWidthRatio", "Depth to panel width ratio"},
    {"B", "AMZBreadth", "Breadth of the AMZ"},
    {"Az", "AMZArea", "Area of the AMZ"},
    {"Lp", "PillarLength", "Pillar: distance between its crosscut ribs, square to the crosscuts"},
    {"Wg", "PillarGrossWidth.{i}", "Pillar {i}: width between the entries", No, Kind::Length},
    {"Ws", "PillarSkewWidth.{i}", "Pillar {i}: width along the crosscuts"},
    {"A", "PillarArea.{i}", "Pillar {i}: area", ByPillar},
    {"w", "MinDimension.{i}", "Pillar {i}: minimum dimension"},
    {"L", "MaxDimension.{i}", "Pillar {i}: maximum dimension"},
    {"Ap", "PillarAreaAMZ", "Area of the pillars within the AMZ"},
    {"e", "ExtractionRatioAMZ", "Extraction ratio within the AMZ"},
    {"Wa", "ActiveWidth", "Panel width without the outer rows that are left"},
    {"Aa", "ActiveArea", "Area of the AMZ without the outer rows that are left"},
};
constexpr Symbol StrengthSymbols[] = {
    {"s", "PillarStrength.{i}", "Pillar {i}: unit strength"},
    {"K", "PillarCapacity.{i}", "Pillar {i}: load-bearing capacity", ByPillar},
    {"Kt", "TotalCapacityAMZ", "Load-bearing capacity of the pillars within the AMZ"},
    {"Ka", "ActiveCapacityAMZ",
     "Load-bearing capacity within the AMZ without the outer rows that are left"},
    {"Lr", "PillarLengthAlong", "Length of the pillars in rows C and D", No, Kind::Length},
    {"sr", "BleederStrength.{k}", "Row {R}: unit strength"},
    {"Kr", "BleederCapacity.{k}", "Row {R}: load-bearing capacity of a pillar"},
    {"Tr", "BleederLoad.{k}", "Row {R}: tributary load of a pillar"},
    {"Xr", "BleederExcess.{k}", "Row {R}: excess capacity lent to the {k} barrier"},
    {"sb", "BarrierStrength.{k}", "Unit strength of the {k} barrier"},
    {"Kb", "BarrierCapacity.{k}", "Load-bearing capacity of the {k} barrier"},
};
constexpr Symbol RunLoadSymbols[] = {
    {"Fpa", "ArchFactor", "Pressure arch factor used"},
    {"Lt", "TributaryLoadAMZ", "Tributary area load on the AMZ"},
    {"D", "AbutmentExtent", "Extent of the abutment load from the edge of a gob"},
    {"Rf", "RFactorFront", "R-factor of the front abutment"},
    {"Rs", "RFactorSide.{k}", "R-factor of the {k} side abutment"},
    {"Ru", "RFactorSide.{k}@loads", "R-factor of the {k} side abutment, as the loads take it"},
    {"Ls", "SideAbutmentLoad.{k}",
     "Side abutment load of the {k} side gob, per length of its edge"},
};
constexpr Symbol PassSymbols[] = {
    {"Lf", "FrontAbutmentLoad", "Front abutment load per length of the gob's edge"},
    {"Wl", "LoadedWidth", "Width loaded by the front abutment"},
    {"a", "AbutmentHalfWidth", "Half-width of the corner volumes, length of the remnants"},
    {"z1", "FrontHeight1.{p}", "Front abutment: height z1 of block and corner prisms, {p}", No,
     Kind::Length},
    {"z2", "FrontHeight2.{p}", "Front abutment: height z2 of wedge and corner pyramids, {p}", No,
     Kind::Length},
    {"P1", "FrontWeight1.{p}", "Front abutment: weight P1 of the block, {p}", No, Kind::Force},
    {"P2", "FrontWeight2.{p}", "Front abutment: weight P2 of the wedge, {p}", No, Kind::Force},
    {"P3", "FrontWeight3.{p}", "Front abutment: weight P3 of a corner prism, {p}", No, Kind::Force},
    {"P4", "FrontWeight4.{p}", "Front abutment: weight P4 of a corner pyramid, {p}", No,
     Kind::Force},
    {"Lv", "FrontAbutmentShare.{p}", "Front abutment share before the slab corners, {p}", No,
     Kind::Force},
    {"ac", "SlabCornerHalfWidth.{p}.{k}", "Half-width of the corner over the {k} slab cut, {p}", No,
     Kind::Length},
    {"zc", "SlabCornerHeight.{p}.{k}",
     "Height of the prism in the corner over the {k} slab cut, {p}", No, Kind::Length},
    {"Lc", "SlabCornerLoad.{p}.{k}", "Front abutment over the {k} slab cut, {p}", BySide},
    {"Laf", "AbutmentLoadAMZ.{p}.front", "Front abutment load on the AMZ, {p}"},
    {"X", "FrontOnRemnant.{p}.{k}", "Front abutment over the {k} remnant barrier, {p}"},
    {"Las", "AbutmentLoadAMZ.{p}.{k}Side", "Abutment load of the {k} side on the AMZ, {p}", BySide},
    // Remnants and barriers
    {"Wm", "RemnantWidth.{k}", "Width of the {k} remnant barrier"},
    {"Lm", "LFBAR.{p}.{k}", "LFBAR, load on the {k} remnant barrier, {p}"},
    {"sm", "RemnantStrength.{k}", "Unit strength of the {k} remnant barrier"},
    {"Km", "RemnantCapacity.{k}", "Load-bearing capacity of the {k} remnant barrier alone"},
    {"Kn", "RemnantTotalCapacity.{k}",
     "Load-bearing capacity of the {k} remnant with its bleeder row"},
    {"SFm", "RemnantSF.{k}", "Stability factor of the {k} remnant barrier"},
    {"Lrem", "LTRANSREM.{p}.{k}", "LTRANSREM, load from the {k} remnant to the AMZ, {p}", BySide},
    {"Xf", "FrontTransferBase.{p}.{k}",
     "Front abutment over the {k} barrier and half an entry, {p}", No, Kind::Force},
    {"Tf", "BarrierFrontTransfer.{p}.{k}", "Front abutment moved into the {k} barrier, {p}"},
    {"Lbf", "BarrierFrontAbutment.{p}.{k}", "Front abutment on the {k} barrier as reported, {p}",
     No, Kind::Force},
    {"Lbt", "BarrierTributaryLoad.{p}.{k}", "Tributary area load on the {k} barrier, {p}"},
    {"Lbs", "BarrierSideAbutmentLoad.{p}.{k}", "Side abutment load on the {k} barrier, {p}"},
    {"Lba", "BarrierArchLoad.{p}.{k}", "Load that the pressure arch sheds on the {k} barrier, {p}"},
    {"Lb", "BarrierLoad.{p}.{k}", "Total load on the {k} barrier, {p}"},
    {"SFb", "BarrierSF.{p}.{k}", "Stability factor of the {k} barrier, {p}"},
    {"Ltb", "LTRANSBAR.{p}.{k}", "LTRANSBAR, load from the {k} barrier to the AMZ, {p}", BySide},
    // Load on the AMZ
    {"Q1", "AMZLoad.{p}.tributary", "Load on the AMZ: tributary area, {p}"},
    {"Q2", "AMZLoad.{p}.front", "Load on the AMZ: with the front abutment, {p}"},
    {"Q3", "AMZLoad.{p}.firstSide", "Load on the AMZ: with the first side, {p}"},
    {"Q4", "AMZLoad.{p}.secondSide", "Load on the AMZ: with the second side, {p}"},
    {"Qf", "LoadingRow.{p}.front", "Row \"Front abutment load*\", {p}", No, Kind::Force},
    {"Qs", "LoadingRow.{p}.{k}Side", "Row of the {k} side's abutment load, {p}", No, Kind::Force},
    {"Qr", "LoadingRow.{p}.{k}Remnant", "Row of the {k} side's LTRANSREM, {p}", No, Kind::Force},
    {"SF", "TELVOSF.{p}", "TELVO stability factor, {p}"},
};
constexpr Symbol StressSymbols[] = {
    {"pt", "BarrierTributaryStress.{k}", "Average stress on the {k} barrier: tributary load"},
    {"pf", "BarrierFrontStress.{k}", "Average stress on the {k} barrier: front abutment"},
    {"ps", "BarrierSideStress.{k}", "Average stress on the {k} barrier: side abutment"},
    {"pb", "BarrierTotalStress.{k}", "Average stress on the {k} barrier: all three"},
    {"pa", "TributaryStress", "Average pillar stress of the tributary area load"},
    {"x", "SideDistance.{k}.{i}", "Distance from the {k} side gob to the far side of pillar {i}",
     No, Kind::Length},
    {"R", "SideReach.{k}.{i}", "Share of the {k} side abutment up to pillar {i}", ByPillar},
    {"dR", "SideShare.{k}.{i}", "Share of the {k} side's load on the AMZ over pillar {i}"},
    {"pp", "PillarSideStress.{k}.{i}", "Stress of the {k} side abutment on pillar {i}"},
};
constexpr Symbol ReportSymbols[] = {
    {"To", "LeavePillarLoad.{R}", "Row {R}: tributary area load of a pillar", No, Kind::Force},
    {"Xo", "LeavePillarExcess.{R}", "Row {R}: excess load-bearing capacity", No, Kind::Force},
    {"rwh", "WidthToHeightRatio", "Mean width-to-height ratio of the pillars across the panel"},
    {"SFmin", "LeastBarrierSF", "Least barrier stability factor, as the warnings compare it", No,
     Kind::Factor},
    {"Hft", "DepthInFeet", "Depth of cover in feet, for the limits of the warnings"},
    {"SFsug", "SuggestedSF", "Suggested minimum TELVO SF at intermediate depth", No, Kind::Factor},
};

constexpr struct {
    Part part;
    std::span<const Symbol> symbols;
} Parts[] = {{Part::Inputs, InputSymbols},      {Part::Prepared, PreparedSymbols},
             {Part::Geometry, GeometrySymbols}, {Part::Strength, StrengthSymbols},
             {Part::RunLoads, RunLoadSymbols},  {Part::Pass, PassSymbols},
             {Part::Stresses, StressSymbols},   {Part::ReportOnly, ReportSymbols}};

/// What stands for a place of keys and titles.
std::string wordFor(std::string_view place, const Where& at) {
    const bool first = at.side == engine::FirstSide;
    if (place == "i") return std::to_string(at.pillar);
    if (place == "k") return first ? "first" : "second";
    if (place == "K") return first ? "First" : "Second";
    // The outer rows A and B are said of sides with the numbers 1 and 2.
    if (place == "R") return std::string(1, static_cast<char>('A' + at.side - 1));
    return at.pass == engine::Development ? "development" : "retreat"; // {p}
}

std::string filled(std::string_view pattern, const Where& at) {
    std::string text;
    for (;;) {
        const std::size_t place = pattern.find('{');
        text += pattern.substr(0, place);
        if (place == std::string_view::npos) return text;
        const std::size_t end = pattern.find('}', place);
        text += wordFor(pattern.substr(place + 1, end - place - 1), at);
        pattern.remove_prefix(end + 1);
    }
}

/// Calls visit(symbol, part) until it returns true.
template <typename Visit>
void visitSymbols(Visit&& visit) {
    for (const auto& [part, symbols] : Parts)
        for (const Symbol& symbol : symbols)
            if (visit(symbol, part)) return;
}

} // namespace

bool Meaning::ofPass() const {
    return symbol->key.find("{p}") != std::string_view::npos;
}
std::string Meaning::key(const Where& at) const {
    return filled(symbol->key, at);
}
std::string Meaning::title(const Where& at) const {
    return filled(symbol->title, at);
}

Meaning meaningOf(std::string_view name) {
    Meaning found;
    visitSymbols([&](const Symbol& symbol, Part part) {
        if (symbol.name == name) found = {&symbol, part};
        return found.symbol != nullptr;
    });
    assert(found.symbol);
    return found;
}

Name nameOf(std::string_view key) {
    const char number = key.back() >= '1' && key.back() <= '9' ? key.back() : '1';
    Name found;
    visitSymbols([&](const Symbol& symbol, Part) {
        // Most symbols fall out by the letters before their first place.
        if (!key.starts_with(symbol.key.substr(0, symbol.key.find('{')))) return false;
        for (const int pass : {engine::Retreat, engine::Development})
            for (const int side : engine::AllSides) {
                const Where at{pass, side, number - '0'};
                if (filled(symbol.key, at) != key) continue;
                found = {symbol.name, filled(symbol.title, at)};
                return true;
            }
        return false;
    });
    return found;
}

} // namespace telvo::explain
