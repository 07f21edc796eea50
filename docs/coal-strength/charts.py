# SPDX-License-Identifier: GPL-3.0-or-later
"""What another coal strength does to the factors; every figure is a run of the program."""

from charts import BLUE, GREY, OCHRE, RED, markdown_table, quantities, quantity, span

CASE = "two-side-gobs.TLV"
FACTORS = (("TELVOSF.development", BLUE, "panel, development"),
           ("TELVOSF.retreat", RED, "panel, retreat"),
           ("BarrierSF.retreat.second", OCHRE, "second barrier, retreat"))


def chart_factors(sheet):
    figure, axes = sheet.figure(height=3.2)
    strengths = span(300, 1800, 151)
    runs = sheet.run(CASE, [{"CoalStrength": s} for s in strengths])
    for name, color, label in FACTORS:
        axes.plot(strengths, quantities(runs, name), color=color, label=label)
    axes.axvline(900, color=GREY, lw=0.8, ls=":")
    axes.axhline(1.5, color=GREY, lw=0.8, ls=":")
    axes.set(xlabel="in situ coal strength of the case (psi); dotted: 900 psi and a factor of 1.5",
             ylabel="stability factor", xlim=(300, 1800), ylim=(0, 6))
    axes.legend()
    return figure


def table_strengths(sheet):
    strengths = (450, 600, 750, 900, 1050, 1200, 1800)
    runs = sheet.run(CASE, [{"CoalStrength": s} for s in strengths])
    rows = [[f"{s} psi ({s / 145.0377:.2f} MPa)", f"{s / 900:.2f}"] +
            [f"{quantity(run, name):.2f}" for name, _, _ in FACTORS]
            for s, run in zip(strengths, runs)]
    return markdown_table(["Strength", "Times 900 psi", "Development", "Retreat",
                           "Second barrier, retreat"], rows)


MEAN = 0.35 / 6 ** 0.5
TOTAL = (MEAN ** 2 + 0.25 ** 2) ** 0.5


def table_mean_uncertainty(_):
    return f"{100 * MEAN:.0f}"


def table_total_uncertainty(_):
    return f"{100 * TOTAL:.0f}"


def table_low(_):
    return f"{1.5 * (1 - TOTAL):.1f}"


def table_high(_):
    return f"{1.5 * (1 + TOTAL):.1f}"
