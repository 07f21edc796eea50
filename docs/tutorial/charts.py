# SPDX-License-Identifier: GPL-3.0-or-later
"""The design chart of the fourth tutorial and its tables, from the studies themselves."""

from charts import BLUE, GREEN, OCHRE, RED, markdown_table

START = "tutorial-4-start.TLV"
FINISHED = "tutorial-4-finished.TLV"
WIDTHS = ("--in", "20:250", "--step", "1")
STEP = 50  # ft of depth between the rows of a table


def required(sheet, criterion, step):
    """Curves of the width of the second barrier over the depth: target, points."""
    answer = sheet.study("chart", START, "BarrierSecondGob", "--over", f"DepthCover=700:1100:{step}",
                         "--for", criterion, *WIDTHS)
    return [(curve["criterion"].split(">=")[1], curve["points"]) for curve in answer["curves"]]


def chart_width_over_depth(sheet):
    figure, axes = sheet.figure(height=3.4)
    curves = [(f"barrier at least {target}", points, color, "-") for (target, points), color in
              zip(required(sheet, "BarrierSF.retreat.second>=2,1.5,1.3", 10), (GREEN, BLUE, OCHRE))]
    curves += [("panel at least the suggested factor", points, RED, "--")
               for _, points in required(sheet, "TELVOSF.retreat>=suggested", 10)]
    for label, points, color, style in curves:
        axes.plot([point["over"] for point in points], [point["required"] for point in points],
                  color=color, ls=style, label=label)
    axes.set(xlabel="depth of cover (ft)", ylabel="width of the second barrier\nrequired on retreat (ft)",
             xlim=(700, 1100))
    axes.legend()
    return figure


def in_whole_feet(points):
    """What is required at the depths of the rows; not at the steps between them."""
    return {point["over"]: f"{point['practical']:g} ft" for point in points
            if point["over"] % STEP == 0}


def table_width_over_depth(sheet):
    curves = [in_whole_feet(points) for criterion in
              ("BarrierSF.retreat.second>=1.3,1.5,2", "TELVOSF.retreat>=suggested")
              for _, points in required(sheet, criterion, STEP)]
    return markdown_table(["Depth", "Barrier 1.3", "Barrier 1.5", "Barrier 2.0", "Panel as suggested"],
                          [[f"{depth:g} ft"] + [curve[depth] for curve in curves] for depth in curves[0]])


def table_along_the_panel(sheet):
    rows = sheet.study("sweep", FINISHED, "--vary", f"DepthCover=700:1100:{2 * STEP}", "--quantity",
                       "TELVOSF.retreat", "--quantity", "BarrierSF.retreat.smallest")["rows"]
    return markdown_table(["Row", "Depth", "Panel, retreat", "Smaller barrier factor, retreat", "Warnings"],
                          [[f"{row['id']}", f"{row['DepthCover']:g} ft", f"{row['TELVOSF.retreat']:.2f}",
                            f"{row['BarrierSF.retreat.smallest']:.2f}", row["flags"].replace(" ", ", ")] for row in rows])


def table_what_matters(sheet):
    bars = sheet.study("tornado", FINISHED, changes={"BarrierSecondGob": "110"})["bars"][:6]
    return markdown_table(["Input", "Varied", "Retreat factor of the panel"],
                          [[bar["label"], "{:g} to {:g} {}".format(*bar["range"], bar["unit"]),
                            f"{bar['least']['y']:.2f} to {bar['most']['y']:.2f}"] for bar in bars])
