# SPDX-License-Identifier: GPL-3.0-or-later
"""Figure and table of all inputs for the user manual."""

import os
import re

from charts import markdown_table

HERE = os.path.dirname(os.path.abspath(__file__))
ROW = re.compile(r"^###? (?P<title>[^{\n]+) \{#(?P<name>\w+) [^\n]*\}\n\n\| Unit [^\n]*\n\|[-|]+\n"
                 r"\| (?P<unit>[^|]+) \| (?P<valid>[^|]+) \| (?P<new>[^|]+) \| `(?P<field>\w+)` \|",
                 re.MULTILINE)
# Symbol, as in Show Working, and where it is measured; fields that no figure shows have no letter.
MEASURED = {
    "EntryHeight": ("h", "roof to floor of the entries"),
    "DepthCover": ("H", "seam to surface, the deepest part"),
    "XcutAngle": ("Theta", "between entries and crosscuts"),
    "EntryWidth": ("We", "rib to rib, square to the roadway"),
    "XcutSpacing": ("Sc", "center to center, along the entries"),
    "NumberEntries": ("n", "counted from the first side"),
    "XcutCenters": ("C", "center to center, square to the entries"),
    "CoalStrength": ("S0", "not measured: leave the default"),
    "UnitWeight": ("Gamma", "mean of the overburden: leave the default"),
    "BreadthAMZ": ("B0", "from the pillar line into the panel"),
    "AMZ": ("", ""),
    "ArchFactor": ("F0", "share of the load that the panel carries"),
    "Arch": ("", ""),
    "Anal": ("", "which gobs there are"),
    "ExtentActiveGob": ("Ea", "along the panel, behind the pillar line"),
    "AbutmentAngleActiveGob": ("betaA", "from the vertical"),
    "ExtentFirstGob": ("Es1", "across the panels, away from the barrier"),
    "AbutmentAngleFirstGob": ("betaS1", "from the vertical"),
    "BarrierFirstGob": ("Wb1", "rib to rib"),
    "SlabcutFirstGob": ("Sl1", "off the barrier, on the panel's side"),
    "ExtentSecondGob": ("Es2", "across the panels, away from the barrier"),
    "AbutmentAngleSecondGob": ("betaS2", "from the vertical"),
    "BarrierSecondGob": ("Wb2", "rib to rib"),
    "SlabcutSecondGob": ("Sl2", "off the barrier, on the panel's side"),
    "RowA": ("row A", "outermost pillars, first side"),
    "RowB": ("row B", "outermost pillars, second side"),
    "RowC": ("row C", "beside the first barrier"),
    "RowD": ("row D", "beside the second barrier"),
    "WidthC": ("Wr1", "rib to rib"),
    "WidthD": ("Wr2", "rib to rib"),
    "Reserved": ("", ""),
}


def fields():
    """Title, topic, unit, range, value of a new case, name: of every page of an input."""
    with open(os.path.join(HERE, "04-parameters.md"), encoding="utf-8") as file:
        return [match.groupdict() for match in ROW.finditer(file.read())]


def table_inputs(_):
    rows = []
    for field in fields():
        letter, where = MEASURED[field["field"]]
        rows.append([letter, f'[{field["title"]}](#{field["name"]})', field["unit"].strip(),
                     field["new"].strip(), field["valid"].strip(), where])
    missing = set(MEASURED) - {field["field"] for field in fields()} - {"Reserved"}
    assert not missing, f"no page of the chapter on the parameters has {missing}"
    return markdown_table(["Symbol", "Input", "Unit", "New case", "Valid", "Measured"], rows)


# --- The figure: plan of a panel on retreat, and a section through gob and barrier

COAL, ROADWAY, GOB, INK, CUT = "#d9d9d9", "#ffffff", "#f3e3c3", "#1d3a52", "#c9d8e6"


def chart_inputs(_):
    from matplotlib.backends.backend_agg import FigureCanvasAgg
    from matplotlib.figure import Figure
    import matplotlib
    matplotlib.rcParams.update({"font.family": ["Liberation Sans"], "font.size": 8.5,
                                "svg.hashsalt": "telvo", "svg.fonttype": "path"})
    figure = Figure(figsize=(5.3, 4.1), layout="constrained")
    FigureCanvasAgg(figure)
    plan, section = figure.subplots(2, 1, height_ratios=[3.4, 1])
    draw_plan(plan)
    draw_section(section)
    return figure


def box(axes, x, y, width, height, color, **more):
    from matplotlib.patches import Rectangle
    axes.add_patch(Rectangle((x, y), width, height, facecolor=color, edgecolor="none", **more))


def dimension(axes, a, b, text, aside=(0, 0), size=9):
    """A double arrow with its letter in the middle, or beside it."""
    axes.annotate("", a, b, arrowprops={"arrowstyle": "<->", "color": INK, "linewidth": 0.9,
                                        "shrinkA": 0, "shrinkB": 0})
    axes.text((a[0] + b[0]) / 2 + aside[0], (a[1] + b[1]) / 2 + aside[1], text, color=INK, size=size,
              weight="bold", ha="center", va="center",
              bbox={"facecolor": "white", "edgecolor": "none", "pad": 0.8, "alpha": 0.9})


def note(axes, x, y, text, size=8, **more):
    axes.text(x, y, text, ha="center", va="center", size=size, color="#333333", **more)


def draw_plan(axes):
    """x across the panel, y along it; the section retreats downwards, the active gob is above."""
    axes.set_aspect("equal")
    axes.axis("off")
    # First side: gob, row C in the barrier's place beside it, barrier with a slab cut, panel.
    barrier1, barrier2, left, center, entry, spacing, rows = 34, 30, 79, 24, 6, 30, 4
    right = left + 4 * center + entry
    height = rows * spacing + entry
    line = 2 * spacing  # the pillar line
    edge1, edge2 = left - barrier1 - entry - 11, right + barrier2 + entry + 11  # of the gobs
    box(axes, 0, 0, edge1, height, GOB)
    box(axes, edge2, 0, 28, height, GOB)
    for x in (edge1, edge2 - 11):  # bleeder rows C and D
        for row in range(rows):
            box(axes, x, row * spacing + entry, 11, spacing - entry, COAL)
    box(axes, left - barrier1, 0, barrier1, height, COAL)
    box(axes, right, 0, barrier2, height, COAL)
    box(axes, left - 10, line + entry, 10, height - line - entry, CUT, hatch="////", fill=True, alpha=0.9)
    box(axes, right, line + entry, 8, height - line - entry, CUT, hatch="////", fill=True, alpha=0.9)
    box(axes, left, line + entry, right - left, height - line - entry, GOB)
    for column in range(4):
        for row in range(rows):
            x, y = left + entry + column * center, row * spacing + entry
            if row < 2 or column in (0, 3):
                box(axes, x, y, center - entry, spacing - entry, COAL)
    for column, text in ((0, "row A"), (3, "row B")):
        note(axes, left + entry + column * center + 9, line + entry + spacing * 1.5 - 3, text, 8.5, weight="bold")
    note(axes, edge1 + 5.5, height - 15, "row C", 8.5, weight="bold", rotation=90)
    note(axes, edge2 - 5.5, height - 15, "row D", 8.5, weight="bold", rotation=90)
    note(axes, (left + right) / 2, height - 8, "active gob")
    note(axes, 13, height - 8, "first\ngob")
    note(axes, edge2 + 14, height - 8, "second\ngob")
    note(axes, left - barrier1 / 2 - 5, 12, "first barrier", rotation=90)
    note(axes, right + barrier2 / 2 + 4, 12, "second\nbarrier", rotation=90)
    for number in range(5):
        note(axes, left + entry / 2 + number * center, -5, str(number + 1), 7.5)
    note(axes, left - 16, -5, "entry", 7.5)
    axes.plot([left, right], [line + entry] * 2, color="#b03020", linewidth=1.6)
    note(axes, left + 30, line + entry + 4, "pillar line", 7.5, bbox={"facecolor": GOB, "edgecolor": "none", "pad": 0.5})
    middle = left + entry / 2
    dimension(axes, (middle, 22), (middle + center, 22), "C")
    dimension(axes, (left + 2 * center, 48), (left + 2 * center + entry, 48), "We", (0, 5))
    x = left + center + entry / 2
    dimension(axes, (x, entry / 2), (x, entry / 2 + spacing), "Sc", (5, 0))
    dimension(axes, (right - entry / 2 - 3, line + entry), (right - entry / 2 - 3, 18), "B0", (6, 6))
    dimension(axes, (left + 2 * center + 3, line + entry), (left + 2 * center + 3, height), "Ea")
    dimension(axes, (0, 58), (edge1, 58), "Es1")
    dimension(axes, (edge2, 58), (edge2 + 28, 58), "Es2")
    dimension(axes, (left - barrier1, 34), (left, 34), "Wb1")
    dimension(axes, (right, 34), (right + barrier2, 34), "Wb2")
    dimension(axes, (left - 10, 84), (left, 84), "Sl1", (-9, 0))
    dimension(axes, (right, 84), (right + 8, 84), "Sl2", (10, 0))
    dimension(axes, (edge1, 48), (edge1 + 11, 48), "Wr1", (0, 5))
    dimension(axes, (edge2 - 11, 48), (edge2, 48), "Wr2", (0, 5))
    from matplotlib.patches import Arc
    corner = (left + 3 * center + entry, spacing + entry)
    axes.add_patch(Arc(corner, 16, 16, theta1=0, theta2=90, color=INK, linewidth=0.9))
    axes.text(corner[0] + 1, corner[1] + 13, "Theta", size=8, color=INK, weight="bold", ha="left")
    axes.set_xlim(-2, edge2 + 30)
    axes.set_ylim(-9, height + 1)


def draw_section(axes):
    """Through the first gob, the barrier and the panel: depth, height and the abutment angle."""
    axes.set_aspect("equal")
    axes.axis("off")
    axes.plot([0, 200], [42, 42], color="#5a8a4a", linewidth=2)
    note(axes, 100, 46, "surface", 7.5)
    box(axes, 0, 0, 66, 6, GOB)
    box(axes, 66, 0, 34, 6, COAL)
    for column in range(4):
        box(axes, 106 + 24 * column, 0, 18, 6, COAL)
    axes.plot([66, 50], [6, 42], color="#b03020", linewidth=1.2)
    axes.plot([66, 66], [6, 42], color="#b03020", linewidth=0.8, linestyle="--")
    note(axes, 33, 3, "gob", 7.5)
    note(axes, 83, 3, "barrier", 7.5)
    axes.text(50, 24, "abutment angle,\nbetaS1", size=8, color=INK, weight="bold", ha="right")
    dimension(axes, (150, 6), (150, 42), "H")
    dimension(axes, (101.6, 0), (101.6, 6), "h", (3.2, 4.6))
    axes.set_xlim(-2, 202)
    axes.set_ylim(-2, 50)


# The scatter that a default range is taken from, and where it comes from. A name that ends in "_" stands
# for all fields that begin so.
SCATTER = (
    ("DepthCover", "%", "Depth of Cover", "5 % to either side: topography and boreholes"),
    ("EntryHeight", "%", "Entry Height", "7 %: seam, and roof that is taken with it"),
    ("EntryWidth", "", "Entry Width", "0.5 ft less to 2 ft more: overcut and spalling are one-sided"),
    ("XcutSpacing", "", "Crosscut Spacing", "1.5 ft: survey"),
    ("XcutCenters.1", "", "Center to Center Distances", "1.5 ft: survey"),
    ("XcutAngle", "", "Crosscut Angle", "2 degrees"),
    ("WidthC", "", "Width of rows C and D", "1.5 ft: survey"),
    ("BarrierFirstGob", "", "Barrier Pillar Width", "3 ft: maps of old workings"),
    ("SlabcutFirstGob", "", "Depth of Slab Cut", "3 ft less to 5 ft more: cutting too deep is the danger"),
    ("ExtentFirstGob", "%", "Extents of gobs", "3 %"),
    ("AbutmentAngleFirstGob", "", "Abutment Angles", "6 degrees less to 6 more; part of the calibration"),
    ("UnitWeight", "%", "Unit Weight of Overburden", "4 %"),
    ("CoalStrength", "%", "In Situ Coal Strength", "15 %, lognormal; part of the calibration"),
    ("BreadthAMZ", "%", "Breadth of AMZ, when entered by hand", "none: 10 % are a way to look at it"),
    ("ArchFactor", "%", "Pressure Arch Factor, when entered by hand", "the same"),
)
BY_HAND = {"XcutAngle": "70", "AMZ": "0", "Arch": "0", "SlabcutFirstGob": "6", "SlabcutSecondGob": "6"}
ROWS_LEFT = {"RowC": "1", "RowD": "1", "WidthC": "10", "WidthD": "10", "BarrierFirstGob": "15",
             "BarrierSecondGob": "15"}


def table_default_ranges(sheet):
    """From cases in both units that use every input, away from the limits of the form."""
    english, metric = ({bar["input"]: bar for bar in sheet.study("tornado", case, changes=changes)["bars"]}
                       for case, changes in (("bleeder-rows-c-d.TLV", BY_HAND),
                                             ("metric-two-side-gobs.TLV", {**BY_HAND, **ROWS_LEFT})))
    known = {re.sub(r"First|Second|Active|\.\d|[CD]$", "", field) for field, *_ in SCATTER}
    for field in english:
        if re.sub(r"First|Second|Active|\.\d|[CD]$", "", field) not in known:
            raise ValueError(f"no reason is given for the default range of {field}")

    def range_of(bar, percent):
        ends = [100 * (end / bar["own"] - 1) if percent else end - bar["own"] for end in bar["range"]]
        return "{:+.4g} to {:+.4g}".format(*(round(end, 4) for end in ends)).replace("-", "\u2212") + \
            (" %" if percent else " " + bar["unit"])
    rows = []
    for field, percent, label, why in SCATTER:
        pair = [range_of(bars[field], percent) for bars in (english, metric)]
        rows.append([label, pair[0], pair[1] if pair[1] != pair[0] else "the same", why])
    return markdown_table(["Input", "English", "Metric", "Scatter it is taken from"], rows)
