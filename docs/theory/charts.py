# SPDX-License-Identifier: GPL-3.0-or-later
"""Charts and tables of the theory manual; every point is a run of the program."""

import re
from math import sqrt

from charts import (BLUE, GREEN, GREY, OCHRE, RED, markdown_table, quantities, quantity, span)

FEET = 3.280839895013123
CASE = "two-side-gobs.TLV"
LENGTHS = {"EntryHeight": 5.5, "EntryWidth": 20, "XcutSpacing": 100, "XcutCenters.1": 80,
           "XcutCenters.2": 80, "XcutCenters.3": 80, "XcutCenters.4": 80, "BreadthAMZ": 150,
           "ExtentActiveGob": 700, "ExtentFirstGob": 800, "BarrierFirstGob": 150,
           "SlabcutFirstGob": 40, "ExtentSecondGob": 600, "BarrierSecondGob": 60,
           "SlabcutSecondGob": 20}


def metric(change):
    """The case of the charts in metric units; `change` is in feet and degrees."""
    lengths = {name: float(value) / FEET for name, value in {**LENGTHS, **change}.items()}
    return {"Units": "Metric", "CoalStrength": 900 * 0.006894757293168361,
            "UnitWeight": 162 * 0.15708746, **lengths}


def panel(width):
    return {f"XcutCenters.{i}": width / 4 for i in range(1, 5)}


def chart_arch_factor(sheet):
    figure, (left, right) = sheet.figure(columns=2, height=2.6)
    depths = span(100, 2000, 381)
    for width, color in ((200, GREEN), (320, BLUE), (600, OCHRE)):
        runs = sheet.run(CASE, [{"DepthCover": d, **panel(width)} for d in depths])
        left.plot(depths, quantities(runs, "ArchFactor"), color=color, label=f"{width} ft wide")
    left.set(xlabel="depth of cover (ft)", ylabel="pressure arch factor $F_{pa}$", ylim=(0.25, 1.03))
    left.legend()
    english = sheet.run(CASE, [{"DepthCover": d} for d in depths])
    meters = sheet.run(CASE, [metric({"DepthCover": d}) for d in depths])
    right.plot(depths, quantities(english, "ArchFactor"), color=BLUE, label="case in ft")
    right.plot(depths, quantities(meters, "ArchFactor"), color=RED, ls="--", label="case in m")
    right.set(xlabel="depth of cover (ft)", ylim=(0.25, 1.03), title="one panel, 320 ft (97.5 m)")
    right.legend()
    return figure


def chart_rounding(sheet):
    figure, axes = sheet.figure(height=2.8)
    depths = span(800, 1000, 401)
    runs = sheet.run(CASE, [{"DepthCover": d, "BarrierSecondGob": 150} for d in depths])
    axes.plot(depths, quantities(runs, "TELVOSF.development"), color=BLUE, lw=1.1)
    axes.set(xlabel="depth of cover (ft)", ylabel="development factor, unrounded")
    return figure


def chart_gob_extent(sheet):
    figure, axes = sheet.figure(height=2.6)
    extents = span(1, 1200, 240)
    for angle, color in ((15, GREEN), (21, BLUE), (30, OCHRE)):
        runs = sheet.run(CASE, [{"ExtentFirstGob": e, "AbutmentAngleFirstGob": angle}
                                for e in extents])
        axes.plot(extents, [load / 2000 for load in quantities(runs, "SideAbutmentLoad.first")],
                  color=color, label=f"abutment angle {angle}\u00b0")
    axes.set(xlabel="extent of the gob (ft), at 900 ft of cover",
             ylabel="abutment load $L_s$ (tons/ft)")
    axes.legend()
    return figure


def chart_reach(sheet):
    figure, axes = sheet.figure(height=2.3)
    widths = [0.01] + span(2, 330, 165)
    for depth, color in ((400, GREEN), (900, BLUE), (1600, OCHRE)):
        runs = sheet.run(CASE, [{"BarrierFirstGob": w, "SlabcutFirstGob": 0, "DepthCover": depth}
                                for w in widths])
        axes.plot([w + 10 for w in widths], quantities(runs, "RFactorSide.first"), color=color,
                  label=f"{depth} ft of cover, $D$ = {quantity(runs[0], 'AbutmentExtent'):.0f} ft")
    axes.plot([0], [0], "o", color=RED, label="no barrier: $R_s$ = 0")
    axes.set(xlabel="barrier and half an entry, $W_e/2 + W_b$ (ft)", ylabel="R-factor $R_s$",
             xlim=(-5, 345), ylim=(-0.03, 1.03))
    axes.legend()
    return figure


def chart_strength(sheet):
    figure, axes = sheet.figure(height=3.2)
    ratios = span(2, 15, 53)
    height, entry = 5.5, 20
    for shape, color in ((1, OCHRE), (2, GREEN), (4, BLUE)):
        changes = [{**{f"XcutCenters.{i}": r * height + entry for i in range(1, 5)},
                    "XcutSpacing": shape * r * height + entry} for r in ratios]
        runs = sheet.run(CASE, changes)
        axes.plot(ratios, [s / 129600 for s in quantities(runs, "PillarStrength.1")], color=color,
                  label=f"pillar {shape} times as long as wide" if shape > 1 else "square pillar")
    wide = span(0, 15, 301)
    runs = sheet.run(CASE, [{"BarrierFirstGob": r * height, "SlabcutFirstGob": 0} for r in wide])
    axes.plot(wide, [s / 129600 for s in quantities(runs, "BarrierStrength.first")], color=RED,
              ls="--", label="barrier (nothing below $w/h$ = 1)")
    axes.set(xlabel="width-to-height ratio $w/h$", ylabel="strength over $S_1$")
    axes.legend()
    return figure


def chart_transfer(sheet):
    figure, axes = sheet.figure(height=3)
    changes = [{"CoalStrength": s} for s in span(30, 1500, 295)]
    runs = sheet.run(CASE, changes)
    factors = quantities(runs, "BarrierSF.retreat.second")
    shares = [quantity(r, "LTRANSBAR.retreat.second") /
              (quantity(r, "BarrierSideAbutmentLoad.retreat.second") +
               quantity(r, "BarrierArchLoad.retreat.second")) for r in runs]
    axes.plot(factors, shares, color=BLUE, label="barrier: $L_{tb}$ over $L_{bs} + L_{ba}$")
    changes = [{"CoalStrength": s} for s in span(10, 3000, 300)]
    runs = sheet.run(CASE, changes)
    axes.plot(quantities(runs, "RemnantSF.second"),
              [quantity(r, "LTRANSREM.retreat.second") /
               quantity(r, "FrontOnRemnant.retreat.second") for r in runs],
              color=RED, ls="--", label="remnant: $L_{rem}$ over $X$")
    axes.set(xlabel="stability factor of the barrier or remnant", ylabel="share transferred to the AMZ",
             xlim=(0, 2), ylim=(-0.03, 1.05))
    axes.legend()
    return figure


def chart_barrier_width(sheet):
    figure, (left, right) = sheet.figure(columns=2, height=2.8)
    widths = [0.05 * i for i in range(1, 200)] + span(10, 200, 191)
    base = {"SlabcutSecondGob": 0}
    runs = sheet.run(CASE, [{"BarrierSecondGob": 0, **base}] +
                     [{"BarrierSecondGob": w, **base} for w in widths])
    none, some = runs[0], runs[1:]
    for name, color, label in (("TELVOSF.development", BLUE, "development"),
                               ("TELVOSF.retreat", RED, "retreat")):
        left.plot(widths, quantities(some, name), color=color, label=label)
        left.plot([0], [quantity(none, name)], "o", color=color, ms=4.5)
    left.set(xlabel="width of the second barrier (ft)", ylabel="TELVO stability factor")
    left.legend(title="dots: no barrier")
    right.plot(widths, quantities(some, "BarrierSF.development.second"), color=BLUE)
    right.plot(widths, quantities(some, "BarrierSF.retreat.second"), color=RED)
    right.axvline(5.5, color=GREY, lw=0.8, ls=":")
    right.set(xlabel="width of the second barrier (ft)", ylabel="barrier stability factor",
              xlim=(0, 30), ylim=(0, 0.8))
    right.annotate("mining height", (5.7, 0.72), color=GREY, fontsize=8)
    return figure


def chart_active_gob(sheet):
    figure, axes = sheet.figure(height=3.2)
    # Up to the loaded width of 380 ft, and beyond it.
    extents = span(0, 380, 191) + [380.001] + span(382, 800, 210)
    runs = sheet.run(CASE, [{"ExtentActiveGob": e} for e in extents])
    for name, color, style, label in (
            ("AbutmentLoadAMZ.retreat.front", BLUE, "-", "$L_{af}$, on the AMZ"),
            ("FrontOnRemnant.retreat.first", RED, "-", "$X$, over a remnant")):
        tons = [load / 2e6 for load in quantities(runs, name)]
        axes.plot(extents, tons, color=color, ls=style, label=label)
    axes.axvline(quantity(runs[-1], "LoadedWidth"), color=GREY, lw=0.8, ls=":")
    axes.set(xlabel="extent of the active gob $E_a$ (ft); dotted: loaded width $W_l$",
             ylabel="load (1000 tons)")
    axes.legend()
    return figure


def chart_slab_cut(sheet):
    figure, axes = sheet.figure(height=2.5)
    cuts = span(0, 60, 241)
    runs = sheet.run(CASE, [{"SlabcutSecondGob": c} for c in cuts])
    axes.plot(cuts, quantities(runs, "RemnantSF.second"), color=BLUE, label="remnant factor $SF_m$")
    axes.plot(cuts, quantities(runs, "TELVOSF.retreat"), color=RED, label="panel, retreat")
    axes.plot(cuts, quantities(runs, "BarrierSF.retreat.second"), color=OCHRE,
              label="barrier, retreat")
    axes.axhline(1.5, color=GREY, lw=0.8, ls=":")
    axes.set(xlabel="slab cut in the second barrier, 60 ft wide (ft)", ylabel="stability factor")
    axes.legend()
    return figure


# What is looked for in the chapter about searching: what is changed, input, quantity, target, range
# and how close the curve is drawn.
SEARCHES = ({}, "XcutCenters", "TELVOSF.development", 2.48, (67, 69), 0.01), \
    ({"BarrierSecondGob": "150"}, "DepthCover", "TELVOSF.development", 3.24, (940, 1000), 0.25)
SEARCHED = {"XcutCenters": "center to center distances (ft)", "DepthCover": "depth of cover (ft)"}


def searched(sheet, search, within=None):
    changes, variable, name, target, part, _ = search
    low, high = within or part
    return sheet.study("find", CASE, variable, "--for", f"{name}>={target}", "--in",
                       f"{low}:{high}", changes=changes)


def chart_intervals(sheet):
    figure, both = sheet.figure(columns=2, height=2.8)
    for axes, search in zip(both, SEARCHES):
        changes, variable, name, target, (low, high), step = search
        rows = sheet.study("sweep", CASE, "--vary", f"{variable}={low}:{high}:{step}", "--quantity",
                           name, changes=changes)["rows"]
        at = [row.get(variable, row.get(variable + ".1")) for row in rows]
        axes.plot(at, [row[name] for row in rows], color=BLUE, lw=1.1)
        axes.axhline(target, color=GREY, lw=0.8, ls=":")
        for one in searched(sheet, search)["intervals"]:
            axes.axvspan(one["from"], one["to"], color=GREEN, alpha=0.18, lw=0)
        axes.set(xlabel=SEARCHED[variable], title=f"target {target}", xlim=(low, high))
    both[0].set(ylabel="development factor")
    return figure


def table_of_intervals(sheet, search, within):
    rows = []
    for one in searched(sheet, search, within)["intervals"]:
        practical = "\u2013" if one.get("practicalFrom") is None else \
            f"{one['practicalFrom']:g} to {one['practicalTo']:g}"
        rows.append([f"{one['from']:.3f}", f"{one['to']:.3f}", f"`{one['fromEnd']}`", f"`{one['toEnd']}`",
                     practical, one.get("rule") or "\u2013"])
    return markdown_table(["From (ft)", "To (ft)", "begins at", "ends at", "In whole feet", "Rule"], rows)


def table_intervals_centers(sheet):
    return table_of_intervals(sheet, SEARCHES[0], (60, 120))


def table_intervals_depth(sheet):
    return table_of_intervals(sheet, SEARCHES[1], (800, 1000))


def table_jumping(sheet):
    """Inputs whose jumps come of one rule are one line."""
    lines = {}
    for bar in sheet.study("tornado", CASE, "--range", "50%")["bars"]:
        sizes = {}
        for jump in bar["jumps"]:
            rule = re.sub(r"from [\d.]+ to [\d.]+( ft)?(?=, being)", "to another value", jump["rule"])
            sizes.setdefault(rule, []).append(abs(jump["after"] / jump["before"] - 1))
        for rule, all_sizes in sizes.items():
            lines.setdefault((re.sub(r" #\d+$", "", bar["label"]), rule), []).append(all_sizes)
    rows = []
    for (label, rule), bars in lines.items():
        one = ", one of them" if len(bars) > 1 else ""
        rows.append([label + one, rule, f"{len(bars[0])}", f"{100 * max(map(max, bars)):.1f} %"])
    return markdown_table(["Varied", "What switches", "Jumps", "Largest"], rows)


# Where a result jumps: what is changed and between which values, and what to look at. The pairs are
# as close as the place is sharp.
JUMPS = (
    ("$H - 80 = W_p$", "the arch begins: $F_{pa}$ falls from 1", CASE, {"BarrierSecondGob": 150},
     {"DepthCover": 399}, {"DepthCover": 400}, ("ArchFactor", "TELVOSF.development")),
    ("Automatic $F_{pa}$", "steps of 0.01", CASE, {"BarrierSecondGob": 150},
     {"DepthCover": 917}, {"DepthCover": 918}, ("ArchFactor", "TELVOSF.development")),
    ("Automatic *B*", "whole feet or meters; half a foot", CASE, {},
     {"BreadthAMZ": 150}, {"BreadthAMZ": 150.5}, ("TELVOSF.retreat",)),
    ("$E_a = W_l$", "*X* takes its second form", CASE, {},
     {"ExtentActiveGob": 380}, {"ExtentActiveGob": 380.01},
     ("FrontOnRemnant.retreat.second", "RemnantSF.second", "TELVOSF.retreat")),
    ("$W_l/2 = H\\,t_a$ with $E_a > W_l$", "the same, over the depth", CASE, {},
     {"DepthCover": 494.9}, {"DepthCover": 495},
     ("FrontOnRemnant.retreat.second", "RemnantSF.second", "TELVOSF.retreat")),
    ("$W_b = h$", "strength from 0 to $1.18\\,S_1$", CASE, {"SlabcutSecondGob": 0},
     {"BarrierSecondGob": 5.49}, {"BarrierSecondGob": 5.5},
     ("BarrierSF.retreat.second", "TELVOSF.retreat")),
    ("$W_m = h$", "the same for a remnant", CASE, {},
     {"SlabcutSecondGob": 54.51}, {"SlabcutSecondGob": 54.5},
     ("RemnantSF.second", "LTRANSREM.retreat.second", "TELVOSF.retreat")),
    ("$W_b = 0$", "the barrier's rules fall away", CASE, {"SlabcutSecondGob": 0},
     {"BarrierSecondGob": 0}, {"BarrierSecondGob": 0.01},
     ("LTRANSBAR.retreat.second", "TELVOSF.retreat")),
    ("$SF_b = 1.5$", "kink: below it the barrier transfers load", CASE, {},
     {"BarrierSecondGob": 90}, {"BarrierSecondGob": 80},
     ("BarrierSF.retreat.second", "LTRANSBAR.retreat.second", "TELVOSF.retreat")),
    ("Excess of rows C and D", "counted $B/S_c$ times for the remnant; off and on", "bleeder-rows-c-d.TLV",
     {}, {"RowC": 0}, {"RowC": 1}, ("RemnantTotalCapacity.first", "RemnantSF.first")),
    ("Width of a bleeder row", "strongest at 1.5 times its length", "bleeder-rows-c-d.TLV", {},
     {"WidthC": 105}, {"WidthC": 160}, ("BleederStrength.first", "BleederExcess.first")),
)
NAMES = {"ArchFactor": "$F_{pa}$", "TELVOSF.development": "SF development", "TELVOSF.retreat": "SF retreat",
         "FrontOnRemnant.retreat.second": "*X*", "RemnantSF.second": "$SF_m$", "RemnantSF.first": "$SF_m$",
         "BarrierSF.retreat.second": "$SF_b$", "LTRANSBAR.retreat.second": "$L_{tb}$",
         "LTRANSREM.retreat.second": "$L_{rem}$", "RemnantTotalCapacity.first": "$K_n$",
         "BleederStrength.first": "$s_r$", "BleederExcess.first": "$X_r$"}
LABELS = {"DepthCover": "depth", "BreadthAMZ": "breadth", "ExtentActiveGob": "extent of the active gob",
          "BarrierSecondGob": "second barrier", "SlabcutSecondGob": "second slab cut", "RowC": "row C",
          "WidthC": "row C wide"}


def sized(name, first, second):
    """Both values, with a third decimal where two do not tell them apart."""
    pair = one_sized(name, first, 2), one_sized(name, second, 2)
    return pair if pair[0] != pair[1] else (one_sized(name, first, 3), one_sized(name, second, 3))


def one_sized(name, run, decimals):
    value = quantity(run, name)
    if name.startswith(("Arch", "TELVOSF", "RemnantSF", "BarrierSF")):
        return f"{value:.{decimals}f}"
    if name.startswith("BleederStrength"):
        return f"{value / 144:,.0f} psi"
    return f"{value / 2000:,.0f} tons"


def table_peculiarities(sheet):
    rows = []
    for where, what, case, base, before, after, watched in JUMPS:
        first, second = sheet.run(case, [{**base, **before}, {**base, **after}])
        (field, old), (_, new) = (*before.items(), *after.items())
        unit = "" if field == "RowC" else " ft"
        rows.append([where, what, f"{LABELS[field]} {old:g} to {new:g}{unit}", "; ".join(
            NAMES[name] + " {} to {}".format(*sized(name, first, second)) for name in watched)])
    rows.append(["$SF_m = 0.0075$", "kink: LTRANSREM is capped at *X*", "a remnant without strength",
                 f"the cap takes off {100 * (1.5 * 0.67 - 1):.1f} percent of *X* at most"])
    return markdown_table(["Where", "What happens", "Example", "Size"], rows)


def table_arch_jump(sheet):
    widths = (200, 320)
    runs = sheet.run(CASE, [{**panel(width), "DepthCover": width + 80} for width in widths])
    return " and ".join(f"{quantity(run, 'ArchFactor'):.2f} for a panel of {width} ft"
                        for width, run in zip(widths, runs))


def table_stale_breadth(sheet):
    rows = []
    for depth in (400, 650, 900, 1200):
        own = round(5 * sqrt(depth))
        stale, fresh = sheet.run(CASE, [{"DepthCover": depth, "BreadthAMZ": b, "AMZ": 0} for b in (150, own)])
        rows.append([f"{depth} ft", f"{own} ft"] + [f"{quantity(run, 'TELVOSF.retreat'):.2f}"
                                                    for run in (stale, fresh)])
    return markdown_table(["Depth", "Breadth that belongs to it", "SF retreat with 150 ft",
                           "SF retreat with its own"], rows)


def table_crosscut_angle(sheet):
    angles = (90, 80, 70, 60)
    runs = sheet.run(CASE, [{"XcutAngle": angle} for angle in angles])
    rows = []
    for angle, run in zip(angles, runs):
        cells = [f"{angle}\u00b0", f"{quantity(run, 'PillarLength'):.1f} ft"]
        for name, form in (("PillarLength", ""), ("PillarArea.1", ""), ("PillarStrength.1", ""),
                           ("TELVOSF.retreat", "")):
            change = quantity(run, name) / quantity(runs[0], name) - 1
            cells.append(f"{100 * change:+.1f} %".replace("-", "\u2212"))
        rows.append(cells)
    return markdown_table(["Crosscut angle", "$L_p$", "Change of $L_p$", "of the area", "of the strength",
                           "of SF retreat"], rows)


def table_bleeder_excess(sheet):
    run, = sheet.run("bleeder-rows-c-d.TLV", [{}])
    times = quantity(run, "AMZBreadth") / run["inputs"]["XcutSpacing"]
    return f"{times:.2f} times in the example bleeder-rows-c-d."


def table_conversion(sheet):
    rows = []
    for depth in (450, 550, 700, 900):
        english, = sheet.run(CASE, [{"DepthCover": depth, "BreadthAMZ": round(5 * sqrt(depth))}])
        meters = sheet.converted(CASE, {"DepthCover": depth, "BreadthAMZ": round(5 * sqrt(depth))})
        pair = [(quantity(english, name), quantity(meters, name))
                for name in ("ArchFactor", "TELVOSF.development", "TELVOSF.retreat")]
        rows.append([f"{depth} ft"] + [f"{value:.2f}" for both in pair for value in both])
    return markdown_table(["Depth", "$F_{pa}$", "converted", "SF devel.", "converted", "SF retreat",
                           "converted"], rows)


def in_meters(feet):
    return lambda sheet: f"{feet / FEET:.1f}"


table_meters_650, table_meters_1000, table_meters_2000, table_meters_425 = map(
    in_meters, (650, 1000, 2000, 425))


def table_metric_arch_depth(_):
    return f"{80 * FEET + 320:.0f}"


def table_metric(sheet):
    rows = []
    for depth in (300, 450, 550, 650, 900, 1200):
        change = {"DepthCover": depth, "BreadthAMZ": round(5 * sqrt(depth))}
        english, = sheet.run(CASE, [change])
        meters, = sheet.run(CASE, [metric(change)])
        pair = [(quantity(english, name), quantity(meters, name))
                for name in ("ArchFactor", "TELVOSF.development", "TELVOSF.retreat")]
        rows.append([f"{depth} ft = {depth / FEET:.1f} m"] +
                    [f"{value:.2f}" for both in pair for value in both])
    return markdown_table(["Depth", "$F_{pa}$, ft", "$F_{pa}$, m", "SF devel., ft", "SF devel., m",
                           "SF retreat, ft", "SF retreat, m"], rows)


def table_no_barrier(sheet):
    rows = []
    for width in (0, 1, 5.4, 5.5, 20, 60, 100):
        run, = sheet.run(CASE, [{"BarrierSecondGob": width, "SlabcutSecondGob": 0}])
        barrier = quantity(run, "BarrierSF.retreat.second")
        rows.append([f"{width:g}", f"{quantity(run, 'RFactorSide.second'):.3f}",
                     f"{barrier:.2f}" if width else "\u2013",
                     f"{quantity(run, 'AbutmentLoadAMZ.retreat.secondSide') / 2e3:,.0f}",
                     f"{quantity(run, 'LTRANSREM.retreat.second') / 2e3:,.0f}",
                     f"{quantity(run, 'LTRANSBAR.retreat.second') / 2e3:,.0f}",
                     f"{quantity(run, 'TELVOSF.retreat'):.2f}"])
    return markdown_table(["$W_b$ (ft)", "$R_s$", "$SF_b$", "$L_{as}$ (tons)", "$L_{rem}$ (tons)", "$L_{tb}$ (tons)",
                           "SF"], rows)
