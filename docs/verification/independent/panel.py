# SPDX-License-Identifier: GPL-3.0-or-later
"""The whole method once more, in plain Python: an independent calculation of TELVO's results.

It was written from the Theory Manual, whose equations stand in the comments, and shares no line with the
program. It needs Python 3.9 and nothing else:

    python3 panel.py CASE.TLV ...    prints what it works out, as JSON
    python3 panel.py --help

Results are named as in "telvo-cli results --format json". compare.py beside it sets the two against each
other.
"""

import argparse
import json
import math
import struct
import sys

FEET = 3.280839895013123
DEGREE = 0.017453292519943278
STEEPEST = 1.5690509975429008  # 89.9 degrees
SIDES = ("first", "second")
PASSES = ("development", "retreat")
LEVELS = {"TELVO_500": 50, "TELVO_501": 51, "TELVO_601": 52, "TELVO_602": 53}


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


def hundredths(value):
    """Two decimals, a half to the even digit."""
    return round(value * 100) / 100


# --- The case

def new_case():
    """What a case has before its file is read: older files leave the items that they lack."""
    return {"Units": 0, "AMZ": 1, "Arch": 1, "ArchFactor": 1.0, "Anal": 0, "RowA": 0, "RowB": 0, "RowC": 0,
            "RowD": 0, "WidthC": 0.0, "WidthD": 0.0}


def read_case(path):
    """A case file: one item a line, in a fixed order."""
    with open(path, encoding="latin-1") as file:
        lines = [line.strip() for line in file]
    level = LEVELS[lines[0]]
    case = new_case()
    case["Units"] = int(lines[1])
    at = next(n for n, line in enumerate(lines) if line == "##EndDesc##") + 1

    def take(name, kind=float):
        nonlocal at
        case[name] = kind(lines[at])
        at += 1
    for name in ("EntryHeight", "DepthCover", "XcutAngle", "EntryWidth", "XcutSpacing"):
        take(name)
    take("NumberEntries", int)
    case["XcutCenters"] = [float(text) for text in lines[at:at + case["NumberEntries"] - 1]]
    at += case["NumberEntries"] - 1
    for name in ("CoalStrength", "UnitWeight", "BreadthAMZ"):
        take(name)
    take("AMZ", int)
    if level >= 53:
        take("Arch", int)
    take("Anal", int)
    case["Anal"] = min(case["Anal"], 3)
    if level >= 51:
        take("Reserved", int)
    if level >= 52:
        take("ArchFactor", float)
    for name in ("ExtentActiveGob", "AbutmentAngleActiveGob", "ExtentFirstGob", "AbutmentAngleFirstGob",
                 "BarrierFirstGob", "SlabcutFirstGob", "ExtentSecondGob", "AbutmentAngleSecondGob",
                 "BarrierSecondGob", "SlabcutSecondGob"):
        take(name)
    if level >= 53:
        for name in ("RowA", "RowB", "RowC", "RowD"):
            take(name, int)
        take("WidthC")
        take("WidthD")
    return case


# --- The rules, in the order of the manual

def tangent(degrees):
    return math.tan(degrees * DEGREE if degrees < 90 else STEEPEST)


def pillar_dimensions(Wg, Ws, Lp, sine):
    """Minimum and maximum dimension: eq-dimensions-long, eq-dimensions-short."""
    return (Wg, Lp / sine) if Lp > Wg else (Lp, Ws)


def pillar_strength(S1, w, L, h):
    """eq-pillar-strength"""
    return 0.0 if w == 0 else S1 * (0.64 + 0.54 * w / h - 0.18 * w**2 / (h * L))


def strip_strength(S1, W, h):
    """Barriers and remnants: eq-barrier-strength, eq-remnant-strength."""
    return 0.0 if W < h else S1 * (0.64 + 0.54 * W / h)


def arch_factor(case, H, centers):
    """eq-arch, eq-arch-none"""
    if case["Arch"] == 0:
        return single(case["ArchFactor"])
    W = 0.0
    for C in centers:
        W = single(W + C)
    if W == 0 or H - 80 < W:
        return 1.0
    return single(hundredths(max(0.28, 1 - 0.28 * math.log(H / W) if H > 25 else 0.0)))


def extent(H, units):
    """eq-extent"""
    return 9.3 * math.sqrt(single(H * FEET)) / FEET if units == 1 else 9.3 * math.sqrt(H)


def share(D, x):
    """eq-front-share, eq-side-share, eq-side-reach"""
    return min(1.0, 1 - ((D - x) / D)**3)


def abutment(Gamma, H, E, t):
    """Per length of the edge: eq-front-sub, eq-front-super, eq-side-sub, eq-side-super."""
    if E / 2 <= H * t:
        return Gamma * (H * E / 2 - E**2 / (8 * t))
    return Gamma * H**2 * t / 2


def front_parts(Gamma, H, Ea, Wl, t):
    """Half-width, weight of all parts, and whether the gob is wider: eq-block to eq-pyramid."""
    full = min(Ea, Wl) / 2 >= H * t
    wider = not full and Ea > Wl
    a = H * t if full else (Wl if wider else Ea) / 2
    z2 = a / t
    z1 = 0.0 if full else H - z2
    between = 0.0 if wider else Wl - 2 * a
    P1, P2 = between * z1 * a * Gamma, between * z2 * a / 2 * Gamma
    P3, P4 = a * z1 * a / 2 * Gamma, a * z2 * a / 3 * Gamma
    return a, P1 + P2 + 2 * (P3 + P4), wider


def slab_corner(Gamma, H, Sl, t, Rf):
    """eq-slab-corner"""
    half = Sl / 2
    return Gamma * Rf * (half**2 * (H - half / t) / 2 + half**3 / t / 3)


def bleeder(S1, h, H, Gamma, We, Sc, B, W):
    """Strength, capacity, load and excess: eq-bleeder-length to eq-bleeder-excess."""
    L = Sc - We
    strength = S1 * (0.64 + 0.54 * W / h - 0.18 * W**2 / (h * L))
    capacity, load = W * strength * L, (We + W) * Sc * H * Gamma
    excess = (capacity - load) * B / Sc
    return strength, capacity, load, excess if excess >= 0.01 else 0.0


def remnant_transfer(width, SF, X):
    """eq-remnant-all, eq-remnant-transfer, eq-remnant-none"""
    if width <= 0:
        return X
    return min(X, 0.67 * (1.5 - SF) * X if SF <= 1.5 else 0.0)


def barrier_transfer(SF, load):
    """eq-barrier-none, eq-barrier-transfer, eq-barrier-all"""
    if SF > 1.5:
        return 0.0
    return load if SF < 0.5 else (1.5 - SF) * load


# --- A whole case

def both(value=0.0):
    return {side: value for side in SIDES}


def work_out(case):
    units, condition = case["Units"], case["Anal"] + 1
    h, H, We, Sc = (case[name] for name in ("EntryHeight", "DepthCover", "EntryWidth", "XcutSpacing"))
    Gamma, B, C = case["UnitWeight"], case["BreadthAMZ"], case["XcutCenters"]
    S1 = case["CoalStrength"] * (144 if units == 0 else 1000)
    sine = math.sin(case["XcutAngle"] * DEGREE)
    taking_part = SIDES[:max(0, condition - 2)]
    tan_of = {"active": tangent(case["AbutmentAngleActiveGob"]),
              "first": tangent(case["AbutmentAngleFirstGob"]),
              "second": tangent(case["AbutmentAngleSecondGob"])}
    Es = {"first": case["ExtentFirstGob"], "second": case["ExtentSecondGob"]}
    Wb = {"first": case["BarrierFirstGob"], "second": case["BarrierSecondGob"]}
    row_left = {"first": case["RowC"] == 1, "second": case["RowD"] == 1}
    row_width = {"first": single(case["WidthC"]), "second": single(case["WidthD"])}

    r = {"AnalysisCase": condition, "AMZBreadth": B}
    # Geometry: eq-panel-width to eq-active-area
    Wp = r["PanelWidth"] = sum(C)
    Az = r["AMZArea"] = B * Wp
    Lp = Sc * sine - We
    if abs(Lp) < 1e-12 * Sc:
        Lp = 0.0
    r["PillarLength"] = Lp
    widths = [c - We for c in C]
    skew = r["PillarSkewWidth"] = [Wg / sine for Wg in widths]
    area = r["PillarArea"] = [Lp * Ws for Ws in skew]
    sizes = [pillar_dimensions(Wg, Ws, Lp, sine) for Wg, Ws in zip(widths, skew)]
    r["MinDimension"], r["MaxDimension"] = [w for w, _ in sizes], [L for _, L in sizes]
    r["PillarAreaAMZ"] = sum(area) * B / Sc
    e = r["ExtractionRatioAMZ"] = (Az - r["PillarAreaAMZ"]) / Az
    first, last = int(case["RowA"] == 1), len(C) - int(case["RowB"] == 1)
    Wa = Wp - (C[0] if case["RowA"] == 1 else 0) - (C[-1] if case["RowB"] == 1 else 0)
    r["ActiveWidth"], r["ActiveArea"] = Wa, Wa * B

    # Strength: eq-pillar-strength to eq-bleeder-excess
    strength = r["PillarStrength"] = [pillar_strength(S1, w, L, h) for w, L in sizes]
    K = r["PillarCapacity"] = [s * A for s, A in zip(strength, area)]
    Kt = r["TotalCapacityAMZ"] = sum(K) * B / Sc
    Ka = r["ActiveCapacityAMZ"] = sum(K[first:last]) * B / Sc
    for name in ("BleederStrength", "BleederCapacity", "BleederLoad", "BleederExcess", "BarrierStrength",
                 "BarrierCapacity"):
        r[name] = both()
    for k in SIDES:
        if row_left[k]:
            (r["BleederStrength"][k], r["BleederCapacity"][k], r["BleederLoad"][k],
             r["BleederExcess"][k]) = bleeder(S1, h, H, Gamma, We, Sc, B, row_width[k])
        r["BarrierStrength"][k] = strip_strength(S1, Wb[k], h)
        r["BarrierCapacity"][k] = Wb[k] * r["BarrierStrength"][k] * B + r["BleederExcess"][k]

    # Loads of the run: eq-arch to eq-side-share
    Fpa = r["ArchFactor"] = arch_factor(case, H, C)
    Lt = r["TributaryLoadAMZ"] = Gamma * H * (r["ActiveArea"] if condition == 2 else Az)
    D = r["AbutmentExtent"] = extent(H, units)
    Rf = r["RFactorFront"] = share(D, B)
    Rs, Ls = both(), both()
    for k in taking_part:
        Ls[k] = abutment(Gamma, H, Es[k], tan_of[k])
        Rs[k] = share(D, We / 2 + Wb[k]) if Wb[k] else 0.0
    r["SideAbutmentLoad"] = Ls

    per_pass_and_side = ("SlabCornerLoad", "FrontOnRemnant", "LFBAR", "BarrierFrontTransfer", "LTRANSREM",
                         "LTRANSBAR", "BarrierTributaryLoad", "BarrierSideAbutmentLoad", "BarrierArchLoad",
                         "BarrierLoad", "BarrierSF")
    for name in per_pass_and_side:
        r[name] = {p: both() for p in PASSES}
    r["AbutmentLoadAMZ"] = {p: {"front": 0.0, "firstSide": 0.0, "secondSide": 0.0}
                            for p in PASSES}
    r["AMZLoad"] = {p: {} for p in PASSES}
    r["TELVOSF"] = {}
    for name in ("RemnantWidth", "RemnantStrength", "RemnantCapacity", "RemnantTotalCapacity", "RemnantSF"):
        r[name] = both()

    for p in PASSES:
        retreat = p == "retreat"
        Ea = case["ExtentActiveGob"] if retreat else 0.0
        Sl = {"first": case["SlabcutFirstGob"] if retreat else 0.0,
              "second": case["SlabcutSecondGob"] if retreat else 0.0}
        t = tan_of["active"]
        on_zone = r["AbutmentLoadAMZ"][p]

        # Front abutment: eq-loaded-width to eq-over-remnant-wide
        Lf = abutment(Gamma, H, Ea, t)
        Wl = 0.0 if condition == 1 else Wa + sum(Sl[k] for k in taking_part)
        a, weight, wider = front_parts(Gamma, H, Ea, Wl, t)
        Laf = weight * Rf
        for k in taking_part:
            r["SlabCornerLoad"][p][k] = slab_corner(Gamma, H, Sl[k], t, Rf)
            Laf -= r["SlabCornerLoad"][p][k]
        on_zone["front"] = Laf
        for k in taking_part:
            r["FrontOnRemnant"][p][k] = Laf / 2 if wider else (Wp * Lf * Rf - Laf) / 2
            on_zone[k + "Side"] = B * Ls[k] * (1 - Rs[k])  # eq-side-zone
        r["FrontAbutmentLoad"], r["LoadedWidth"], r["AbutmentHalfWidth"] = Lf, Wl, a

        Q = single(Fpa * Lt)
        r["AMZLoad"][p]["tributary"] = Q
        Q = single(Fpa * Laf + Q)
        r["AMZLoad"][p]["front"] = Q
        for k in SIDES:
            if k in taking_part:
                Q += one_side(r, p, k, case, locals())
            r["AMZLoad"][p][k + "Side"] = Q
        # eq-factor-open, eq-factor-sides
        capacity = Ka if condition == 2 else Kt
        load = r["AMZLoad"][p][("tributary", "front", "firstSide", "secondSide")[condition - 1]]
        r["TELVOSF"][p] = capacity / load
    stresses(r, case, taking_part, Gamma, H, B, Sc, e, D, C, area, Wb, Rs)
    return r


def one_side(r, p, k, case, given):
    """Remnant and barrier of a side; returns what the side adds to the load on the zone."""
    Gamma, H, B, We, Sc, S1, h = (given[name] for name in ("Gamma", "H", "B", "We", "Sc", "S1", "h"))
    a, Fpa, Rf, Lf = (given[name] for name in ("a", "Fpa", "Rf", "Lf"))
    Wb, Sl, Ls, Rs = (given[name][k] for name in ("Wb", "Sl", "Ls", "Rs"))
    X, Lc = r["FrontOnRemnant"][p][k], r["SlabCornerLoad"][p][k]
    Las = r["AbutmentLoadAMZ"][p][k + "Side"]

    # Remnant: eq-remnant-width to eq-remnant-total, eq-remnant-load, eq-remnant-factor
    Wm = r["RemnantWidth"][k] = Wb - Sl
    sm = r["RemnantStrength"][k] = strip_strength(S1, Wm, h)
    Km = r["RemnantCapacity"][k] = a * sm * Wm
    Kn = r["RemnantTotalCapacity"][k] = Km + a * r["BleederExcess"][k] / Sc
    Lm = r["LFBAR"][p][k] = Gamma * H * Wm * a + a * Ls + X if a != 0 and Wm != 0 else 0.0
    SFm = r["RemnantSF"][k] = Kn / Lm if Lm != 0 and Wm > 0 else 0.0
    Lrem = r["LTRANSREM"][p][k] = remnant_transfer(Wm, SFm, X)
    if Wb == 0:
        return Fpa * (Lrem + Las)
    # eq-front-base, eq-front-transfer
    Xf = (We / 2 + Wb) * Lf * Rf - Lc
    Tf = r["BarrierFrontTransfer"][p][k] = 0.67 * (1.5 - SFm) * Xf if SFm < 1.5 else 0.0
    # Barrier: eq-barrier-tributary to eq-barrier-load, eq-barrier-factor
    Lbt = r["BarrierTributaryLoad"][p][k] = Gamma * H * (We / 2 + Wb) * B
    Lbs = r["BarrierSideAbutmentLoad"][p][k] = Ls * Rs * B
    Lba = r["BarrierArchLoad"][p][k] = ((1 - Fpa) / 2 * (given["Lt"] + given["Laf"]) +
                                        (1 - Fpa) * (Lrem + Las))
    Lb = r["BarrierLoad"][p][k] = Lbt + Tf + Lbs + Lba + Lc
    SFb = r["BarrierSF"][p][k] = r["BarrierCapacity"][k] / Lb
    Ltb = r["LTRANSBAR"][p][k] = barrier_transfer(SFb, Lbs + Lba)
    return Fpa * (Lrem + Las) + Ltb  # eq-load-first, eq-load-second


def stresses(r, case, taking_part, Gamma, H, B, Sc, e, D, C, area, Wb, Rs):
    """For the plots, of the retreat pass: eq-barrier-stress to eq-side-stress."""
    names = {"BarrierTributaryStress": ("BarrierTributaryLoad",), "BarrierFrontStress": ("BarrierFrontTransfer",),
             "BarrierSideStress": ("BarrierSideAbutmentLoad",),
             "BarrierTotalStress": ("BarrierTributaryLoad", "BarrierFrontTransfer", "BarrierSideAbutmentLoad")}
    for name, loads in names.items():
        r[name] = {k: sum(r[load]["retreat"][k] for load in loads) / (B * Wb[k]) if Wb[k] > 0 else 0.0
                   for k in SIDES}
    r["TributaryStress"] = single(Gamma * H / (1 - e)) if e != 1 else 0.0
    r["RFactorSide"] = {k: 0.999 if k in taking_part and Rs[k] == 1 else Rs[k] for k in SIDES}
    r["SideShare"] = {k: [0.0] * len(C) for k in SIDES}
    r["PillarSideStress"] = {k: [0.0] * len(C) for k in SIDES}
    for k in taking_part:
        load = (r["LTRANSBAR"]["retreat"][k] + r["AbutmentLoadAMZ"]["retreat"][k + "Side"]) / B
        order = list(range(len(C))) if k == "first" else list(range(len(C)))[::-1]
        x, before = Wb[k], r["RFactorSide"][k]
        for i in order[:3]:
            x += C[i]
            reached = share(D, x)
            r["SideShare"][k][i] = (reached - before) / (1 - r["RFactorSide"][k])
            if area[i] != 0:
                r["PillarSideStress"][k][i] = load * r["SideShare"][k][i] * Sc / area[i]
            before = reached


# --- Warnings: Theory Manual, chapter "The warnings"

def warnings(case, r):
    metric = case["Units"] == 1
    feet = FEET if metric else 1.0
    H, PW, n = case["DepthCover"] * feet, r["PanelWidth"] * feet, len(case["XcutCenters"])
    LC = r["AnalysisCase"]
    barriers = [r["BarrierSF"][p][k] for p in PASSES for k in SIDES[:max(0, LC - 2)]
                if case[f"Barrier{k.capitalize()}Gob"] != 0]
    SB = min(barriers, default=10000.0)
    suggested = hundredths(single(1.5 - 0.2 * (H - 650) / 350))
    slender = (r["PanelWidth"] - n * case["EntryWidth"]) / (n * case["EntryHeight"]) < 4
    flags = set()
    for p in PASSES:
        SF = hundredths(single(r["TELVOSF"][p]))
        strong = LC < 3 or SB >= 2
        if SF < 1.5 and H <= 650:
            flags.add(0)
        if SF < 1.5 and 650 < H <= 1000 and not (PW <= 425 and SF >= suggested and strong):
            flags.add(1)
        if SF < 1.5 and H > 1000 and not (PW <= 425 and SF >= 1.3 and strong):
            flags.add(2)
        if SF < 2 and slender:
            flags.add(5)
    angles = [case["AbutmentAngleActiveGob"], case["AbutmentAngleFirstGob"], case["AbutmentAngleSecondGob"]]
    raised = {3: H > 650 and LC >= 3 and SB < 1.5,
              6: case["ExtentActiveGob"] > 0 and H > 2000, 7: case["ExtentActiveGob"] > 0 and H > 1000,
              9: case["AMZ"] != 1, 10: case["UnitWeight"] != (25.45 if metric else 162),
              11: case["CoalStrength"] != (6.21 if metric else 900),
              12: any(angle != 21 for angle in angles[:LC - 1]), 13: LC == 4, 14: case["Arch"] != 1,
              15: single(case["ArchFactor"]) < 1}
    return sorted(flags | {flag for flag, is_raised in raised.items() if is_raised})


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("cases", nargs="+", metavar="CASE.TLV")
    records = []
    for path in parser.parse_args().cases:
        case = read_case(path)
        results = work_out(case)
        records.append({"file": path, "inputs": case, "results": results, "flags": warnings(case, results)})
    json.dump(records, sys.stdout, indent=1)
    print()


if __name__ == "__main__":
    main()
