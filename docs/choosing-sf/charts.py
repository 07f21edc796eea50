# SPDX-License-Identifier: GPL-3.0-or-later
"""The limits of the warnings, felt out by runs of the program, and factors to compare with them."""

from math import sqrt

from charts import BLUE, GREEN, GREY, OCHRE, RED, markdown_table, quantities, quantity, span

MAINS = "development-mains.TLV"
ONE_SIDE = "one-side-gob-slab-cut.TLV"


def narrow(width=80):
    """Five entries: four distances."""
    return {"NumberEntries": 5, **{f"XcutCenters.{i}": width for i in range(1, 5)},
            **{f"XcutCenters.{i}": "" for i in range(5, 10)}}


def least_factors(sheet, example, changes, name, flags, targets):
    """For each case the least factor among `targets` that raises none of the warnings. The factor is
    brought about by the coal strength, to which it is proportional as no load is transferred."""
    factors = quantities(sheet.run(example, [{**c, "CoalStrength": 900} for c in changes]), name)
    rows = [{**change, "CoalStrength": 900 * target / factor}
            for change, factor in zip(changes, factors) for target in targets]
    runs = iter(sheet.run(example, rows))
    least = []
    for _ in changes:
        accepted = [target for target, run in zip(targets, runs)
                    if not flags & set(run["warnings"]["flags"])]
        least.append(min(accepted, default=None))
    return least


def hundredths(first, last):
    return [i / 100 + 1e-6 for i in range(round(first * 100), round(last * 100) + 1)]


def chart_suggested(sheet):
    figure, axes = sheet.figure(height=3.4)
    depths = [300, 649, 650] + span(651, 1000, 26) + [1001, 1400]
    for width, color, label in ((107, RED, "panel 428 ft wide, or a barrier factor below 2.0"),
                                (80, BLUE, "panel 320 ft wide, barriers from 2.0 or no side gob")):
        least = least_factors(sheet, MAINS, [{**narrow(width), "DepthCover": d} for d in depths],
                              "TELVOSF.development", {0, 1, 2}, hundredths(1.2, 1.6))
        axes.plot(depths, least, color=color, label=label)
    axes.set(xlabel="depth of cover (ft)", ylabel="least TELVO factor without warning A, B, C",
             ylim=(1.1, 1.7))
    axes.legend(loc="upper right")
    return figure


def chart_barrier(sheet):
    figure, axes = sheet.figure(height=2.5)
    depths = [300, 500, 649, 650, 651, 800, 1000, 1400]
    changes = [{"DepthCover": d, "ExtentActiveGob": 0, "SlabcutFirstGob": 0} for d in depths]
    least = least_factors(sheet, ONE_SIDE, changes, "BarrierSF.development.first", {3},
                          [0.01] + hundredths(1.4, 1.6))
    axes.plot(depths, least, color=BLUE)
    axes.set(xlabel="depth of cover (ft)", ylabel="least barrier factor\nwithout its warning",
             ylim=(-0.05, 2))
    return figure


def chart_slender(sheet):
    figure, axes = sheet.figure(height=2.6)
    ratios = span(2, 3.99, 6) + [4.01] + span(4.5, 8, 5)
    changes = [{**narrow(), "DepthCover": 400, "EntryWidth": 20, "EntryHeight": 60 / r}
               for r in ratios]
    least = least_factors(sheet, MAINS, changes, "TELVOSF.development", {0, 5},
                          hundredths(1.4, 2.1))
    axes.plot(ratios, least, color=BLUE)
    axes.set(xlabel="mean pillar width over mining height, at 400 ft of cover",
             ylabel="least factor\nwithout warning", ylim=(1.2, 2.2))
    return figure


def chart_widths(sheet):
    figure, axes = sheet.figure(height=3.6)
    depths = span(300, 1600, 131)
    for width, color in ((60, RED), (70, OCHRE), (80, GREEN)):
        changes = [{**narrow(width), "XcutSpacing": 100, "EntryHeight": 8, "EntryWidth": 20,
                    "DepthCover": d, "BreadthAMZ": round(5 * sqrt(d))} for d in depths]
        runs = sheet.run("retreat-one-section.TLV", changes)
        axes.plot(depths, quantities(runs, "TELVOSF.retreat"), color=color,
                  label=f"centers {width} ft, panel {4 * width} ft")
    least = least_factors(sheet, MAINS, [{**narrow(), "DepthCover": d} for d in depths[::5]],
                          "TELVOSF.development", {0, 1, 2}, hundredths(1.2, 1.6))
    axes.plot(depths[::5], least, color=GREY, ls="--", label="least factor without warning")
    axes.set(xlabel="depth of cover (ft)", ylabel="retreat factor", ylim=(0.8, 4))
    axes.legend()
    return figure


def table_examples(sheet):
    letters = {0: "A", 1: "B", 2: "C", 3: "barrier", 5: "slender", 6: "very deep", 7: "bursts",
               13: "two side gobs"}
    rows = []
    for name in ("development-mains", "retreat-one-section", "retreat-rows-a-b",
                 "one-side-gob-slab-cut", "two-side-gobs", "bleeder-rows-c-d", "deep-cover"):
        run, = sheet.run(name + ".TLV", [{}])
        given, n = run["inputs"], run["inputs"]["NumberEntries"] - 1
        ratio = (quantity(run, "PanelWidth") / n - given["EntryWidth"]) / given["EntryHeight"]
        sides = range(max(0, quantity(run, "AnalysisCase") - 2))
        passes = ("development", "retreat")
        barriers = [quantity(run, f"BarrierSF.{p}.{('first', 'second')[k]}") for k in sides
                    for p in passes if given[("BarrierFirstGob", "BarrierSecondGob")[k]]]
        raised = [letters[flag] for flag in run["warnings"]["flags"] if flag in letters]
        rows.append([name, f"{given['DepthCover']:g}", f"{quantity(run, 'PanelWidth'):g}",
                     f"{ratio:.1f}", f"{quantity(run, 'TELVOSF.development'):.2f}",
                     f"{quantity(run, 'TELVOSF.retreat'):.2f}" if given["ExtentActiveGob"]
                     else "\u2013", f"{min(barriers):.2f}" if barriers else "\u2013",
                     ", ".join(raised) or "none"])
    return markdown_table(["Example", "Depth (ft)", "Width (ft)", "w/h", "Devel.", "Retreat", "Barrier",
                           "Warnings"], rows)


def table_limits(_):
    rows = [[what, f"{feet} ft", f"{feet / 3.280839895013123:.1f} m", printed] for what, feet, printed in (
        ("Shallow to intermediate cover", 650, "200 m"), ("Intermediate to deep cover", 1000, "300 m"),
        ("Very deep cover", 2000, "600 m"), ("Panel width", 425, "130 m"))]
    return markdown_table(["Limit", "English", "Metric, exact", "As the texts print it"], rows)


def table_suggested(sheet):
    depths = (650, 700, 750, 800, 850, 900, 950, 1000)
    least = least_factors(sheet, MAINS, [{**narrow(), "DepthCover": d} for d in depths],
                          "TELVOSF.development", {0, 1, 2}, hundredths(1.2, 1.6))
    return markdown_table(["Depth (ft)"] + [f"{d}" for d in depths],
                          [["Depth (m)"] + [f"{d / 3.28084:.0f}" for d in depths],
                           ["Least factor"] + [f"{factor:.2f}" for factor in least]])
