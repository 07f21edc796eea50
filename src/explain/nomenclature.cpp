// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/nomenclature.h"

#include <algorithm>
#include <iterator>

namespace telvo::explain {

namespace {

using enum Numbered;

constexpr Symbol Symbols[] = {
    // Inputs
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
    {"Ea", "{in}ExtentActiveGob{q}", "Extent of the active gob{d}"},
    {"betaA", "inputs.AbutmentAngleActiveGob", "Abutment angle of the active gob"},
    {"Es", "inputs.Extent{K}Gob", "Extent of the {k} side gob"},
    {"betaS", "inputs.AbutmentAngle{K}Gob", "Abutment angle of the {k} side gob"},
    {"Wb", "inputs.Barrier{K}Gob", "Width of the {k} barrier"},
    {"Sl", "{in}Slabcut{K}Gob{q}", "Slab cut in the {k} barrier{d}", BySide},
    {"Wr", "inputs.Width{R}", "Width of the pillars in row {R}"},
    {"", "inputs.Anal", "Loading condition (0 development, 1 active gob, 2 one side gob, 3 two)"},
    {"", "inputs.Reserved", "Carried along, used by nothing"},
    {"", "inputs.AMZ", "Breadth of the AMZ is automatic (1 yes)"},
    {"", "inputs.Arch", "Pressure arch factor is automatic (1 yes)"},
    {"", "inputs.RowA", "Pillar row A is left (1 yes)"},
    {"", "inputs.RowB", "Pillar row B is left (1 yes)"},
    {"", "inputs.RowC", "Bleeder row C is left (1 yes)"},
    {"", "inputs.RowD", "Bleeder row D is left (1 yes)"},
    // Prepared inputs
    {"S1", "CoalStrength", "In situ coal strength in the unit of stress"},
    {"sinT", "SinTheta", "Sine of the crosscut angle"},
    {"ta", "TanActiveGob", "Tangent of the abutment angle of the active gob"},
    {"ts", "Tan{K}Gob", "Tangent of the abutment angle of the {k} side gob"},
    // Panel geometry
    {"Wp", "PanelWidth", "Panel width"},
    {"rHW", "DepthToPanelWidthRatio", "Depth to panel width ratio"},
    {"B", "AMZBreadth", "Breadth of the AMZ"},
    {"Az", "AMZArea", "Area of the AMZ"},
    {"Lp", "PillarLength", "Pillar: distance between its crosscut ribs, square to the crosscuts"},
    {"Wg", "PillarGrossWidth.{i}", "Pillar {i}: width between the entries"},
    {"Ws", "PillarSkewWidth.{i}", "Pillar {i}: width along the crosscuts"},
    {"A", "PillarArea.{i}", "Pillar {i}: area", ByPillar},
    {"w", "MinDimension.{i}", "Pillar {i}: minimum dimension"},
    {"L", "MaxDimension.{i}", "Pillar {i}: maximum dimension"},
    {"Ap", "PillarAreaAMZ", "Area of the pillars within the AMZ"},
    {"e", "ExtractionRatioAMZ", "Extraction ratio within the AMZ"},
    {"Wa", "ActiveWidth", "Panel width without the outer rows that are left"},
    {"Aa", "ActiveArea", "Area of the AMZ without the outer rows that are left"},
    // Strength and capacity
    {"s", "PillarStrength.{i}", "Pillar {i}: unit strength"},
    {"K", "PillarCapacity.{i}", "Pillar {i}: load-bearing capacity", ByPillar},
    {"Kt", "TotalCapacityAMZ", "Load-bearing capacity of the pillars within the AMZ"},
    {"Ka", "ActiveCapacityAMZ",
     "Load-bearing capacity within the AMZ without the outer rows that are left"},
    {"Lr", "PillarLengthAlong", "Length of the pillars in rows C and D"},
    {"sr", "BleederStrength.{k}", "Row {R}: unit strength"},
    {"Kr", "BleederCapacity.{k}", "Row {R}: load-bearing capacity of a pillar"},
    {"Tr", "BleederLoad.{k}", "Row {R}: tributary load of a pillar"},
    {"Xr", "BleederExcess.{k}", "Row {R}: excess capacity lent to the {k} barrier"},
    {"sb", "BarrierStrength.{k}", "Unit strength of the {k} barrier"},
    {"Kb", "BarrierCapacity.{k}", "Load-bearing capacity of the {k} barrier"},
    // Loads of the run
    {"Fpa", "ArchFactor", "Pressure arch factor used"},
    {"Lt", "TributaryLoadAMZ", "Tributary area load on the AMZ"},
    {"D", "AbutmentExtent", "Extent of the abutment load from the edge of a gob"},
    {"Rf", "RFactorFront", "R-factor of the front abutment"},
    {"Rs", "RFactorSide.{k}", "R-factor of the {k} side abutment"},
    {"Ru", "RFactorSide.{k}@loads", "R-factor of the {k} side abutment, as the loads take it"},
    {"Ls", "SideAbutmentLoad.{k}",
     "Side abutment load of the {k} side gob, per length of its edge"},
    // Loads of a pass
    {"Lf", "FrontAbutmentLoad{q}", "Front abutment load per length of the gob's edge{d}"},
    {"Wl", "LoadedWidth{q}", "Width loaded by the front abutment{d}"},
    {"a", "AbutmentHalfWidth{q}", "Half-width of the corner volumes, length of the remnants{d}"},
    {"z1", "FrontHeight1.{p}", "Front abutment: height z1 of block and corner prisms, {p}"},
    {"z2", "FrontHeight2.{p}", "Front abutment: height z2 of wedge and corner pyramids, {p}"},
    {"P1", "FrontWeight1.{p}", "Front abutment: weight P1 of the block, {p}"},
    {"P2", "FrontWeight2.{p}", "Front abutment: weight P2 of the wedge, {p}"},
    {"P3", "FrontWeight3.{p}", "Front abutment: weight P3 of a corner prism, {p}"},
    {"P4", "FrontWeight4.{p}", "Front abutment: weight P4 of a corner pyramid, {p}"},
    {"Lv", "FrontAbutmentShare.{p}", "Front abutment share before the slab corners, {p}"},
    {"Lc", "SlabCornerLoad.{p}.{k}", "Front abutment over the {k} slab cut, {p}", BySide},
    {"Laf", "AbutmentLoadAMZ.{p}.front", "Front abutment load on the AMZ, {p}"},
    {"X", "FrontOnRemnant.{p}.{k}", "Front abutment over the {k} remnant barrier, {p}"},
    {"Las", "AbutmentLoadAMZ.{p}.{k}Side", "Abutment load of the {k} side on the AMZ, {p}", BySide},
    // Remnants and barriers
    {"Wm", "RemnantWidth.{k}{q}", "Width of the {k} remnant barrier{d}"},
    {"Lm", "LFBAR.{p}.{k}", "LFBAR, load on the {k} remnant barrier, {p}"},
    {"sm", "RemnantStrength.{k}{q}", "Unit strength of the {k} remnant barrier{d}"},
    {"Km", "RemnantCapacity.{k}{q}", "Load-bearing capacity of the {k} remnant barrier alone{d}"},
    {"Kn", "RemnantTotalCapacity.{k}{q}",
     "Load-bearing capacity of the {k} remnant with its bleeder row{d}"},
    {"SFm", "RemnantSF.{k}{q}", "Stability factor of the {k} remnant barrier{d}"},
    {"Lrem", "LTRANSREM.{p}.{k}", "LTRANSREM, load from the {k} remnant to the AMZ, {p}", BySide},
    {"Xf", "FrontTransferBase.{p}.{k}",
     "Front abutment over the {k} barrier and half an entry, {p}"},
    {"Tf", "BarrierFrontTransfer.{p}.{k}", "Front abutment moved into the {k} barrier, {p}"},
    {"Lbf", "BarrierFrontAbutment.{p}.{k}", "Front abutment on the {k} barrier as reported, {p}"},
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
    {"Qf", "LoadingRow.{p}.front", "Row \"Front abutment load*\", {p}"},
    {"Qs", "LoadingRow.{p}.{k}Side", "Row of the {k} side's abutment load, {p}"},
    {"Qr", "LoadingRow.{p}.{k}Remnant", "Row of the {k} side's LTRANSREM, {p}"},
    {"SF", "TELVOSF.{p}", "TELVO stability factor, {p}"},
    // Stresses of the plots
    {"pt", "BarrierTributaryStress.{k}", "Average stress on the {k} barrier: tributary load"},
    {"pf", "BarrierFrontStress.{k}", "Average stress on the {k} barrier: front abutment"},
    {"ps", "BarrierSideStress.{k}", "Average stress on the {k} barrier: side abutment"},
    {"pb", "BarrierTotalStress.{k}", "Average stress on the {k} barrier: all three"},
    {"pa", "TributaryStress", "Average pillar stress of the tributary area load"},
    {"x", "SideDistance.{k}.{i}", "Distance from the {k} side gob to the far side of pillar {i}"},
    {"R", "SideReach.{k}.{i}", "Share of the {k} side abutment up to pillar {i}", ByPillar},
    {"dR", "SideShare.{k}.{i}", "Share of the {k} side's load on the AMZ over pillar {i}"},
    {"pp", "PillarSideStress.{k}.{i}", "Stress of the {k} side abutment on pillar {i}"},
    // Figures that only the report has
    {"To", "LeavePillarLoad.{R}", "Row {R}: tributary area load of a pillar"},
    {"Xo", "LeavePillarExcess.{R}", "Row {R}: excess load-bearing capacity"},
    {"rwh", "WidthToHeightRatio", "Mean width-to-height ratio of the pillars across the panel"},
    {"SFmin", "LeastBarrierSF", "Least barrier stability factor, as the warnings compare it"},
    {"Hft", "DepthInFeet", "Depth of cover in feet, for the limits of the warnings"},
    {"SFsug", "SuggestedSF", "Suggested minimum TELVO SF at intermediate depth"},
};

const Symbol* named(std::string_view name) {
    const auto found = std::find_if(std::begin(Symbols), std::end(Symbols),
                                    [&](const Symbol& s) { return s.name == name; });
    return found == std::end(Symbols) ? nullptr : &*found;
}

std::string wordFor(std::string_view place, const At& at) {
    const bool development = at.pass == engine::Development;
    const bool first = at.side == engine::FirstSide;
    if (place == "i") return std::to_string(at.pillar);
    if (place == "k") return first ? "first" : "second";
    if (place == "K") return first ? "First" : "Second";
    // The outer rows A and B are said of sides with the numbers 1 and 2.
    if (place == "R") return std::string(1, static_cast<char>('A' + at.side - 1));
    if (place == "p") return development ? "development" : "retreat";
    if (place == "q") return development ? "@development" : "";
    if (place == "d") return development ? ", development" : "";
    return development ? "" : "inputs."; // {in}
}

std::string filled(std::string_view pattern, const At& at) {
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

} // namespace

Meaning meaningOf(std::string_view name, const At& at) {
    At whose = at;
    const Symbol* symbol = named(name);
    if (!symbol && !name.empty() && name.back() >= '1' && name.back() <= '9') {
        symbol = named(name.substr(0, name.size() - 1));
        const int number = name.back() - '0';
        if (symbol && symbol->numbered == No) symbol = nullptr;
        if (symbol && symbol->numbered == ByPillar) whose.pillar = number;
        if (symbol && symbol->numbered == BySide) whose.side = engine::FirstSide + number - 1;
    }
    if (!symbol || name.empty()) return {};
    return {filled(symbol->key, whose), filled(symbol->title, whose)};
}

Name nameOf(std::string_view key) {
    const char number = key.back() >= '1' && key.back() <= '9' ? key.back() : '1';
    for (const Symbol& symbol : Symbols) {
        // Most symbols fall out by the letters before their first place.
        if (!key.starts_with(symbol.key.substr(0, symbol.key.find('{')))) continue;
        for (const int pass : {engine::Retreat, engine::Development})
            for (const int side : {engine::FirstSide, engine::SecondSide}) {
                const At at{pass, side, number - '0'};
                if (filled(symbol.key, at) == key) return {symbol.name, filled(symbol.title, at)};
            }
    }
    return {};
}

} // namespace telvo::explain
