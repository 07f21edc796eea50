# SPDX-License-Identifier: GPL-3.0-or-later
"""What the charts.py of the manuals draw with: one look for all, and tables of Markdown.

The charts.py of a manual's folder has functions whose names begin with "chart_" and "table_", of one
argument, the Sheet. A chart draws with sheet.figure() and becomes pictures/MANUAL-NAME; a table
returns Markdown, which stands for {{table NAME}}.
"""

import importlib.util
import json
import os
import tempfile

from book import in_help

BLUE, RED, GREEN, GREY, OCHRE = "#1d5a8a", "#b03030", "#2e7d4f", "#777777", "#b08020"


class Sheet:
    """What a chart or a table of a manual is made with."""

    def __init__(self, program, folder):
        self.program = program
        self.folder = folder  # for files that pass between

    def run(self, example, changes):
        return self.program.run(example, changes, self.folder)

    def study(self, command, example, *arguments, changes=None):
        """What find, chart, tornado or sweep answers about an example with changed inputs."""
        with tempfile.TemporaryDirectory(dir=self.folder) as place:
            path = self.program.case(example)
            if changes:
                path = self.program.changed(path, changes, place)
            return json.loads(self.program.call(command, path, *arguments, "--format", "json"))[0]

    def converted(self, example, changes):
        """The record of an example with changed inputs, converted to the other units."""
        return self.program.run_converted(example, changes, self.folder)

    @staticmethod
    def figure(width=6.1, height=3.5, columns=1):
        """Axes, in inches; as many beside each other as there are columns."""
        from matplotlib import rcParams
        from matplotlib.backends.backend_agg import FigureCanvasAgg
        from matplotlib.figure import Figure
        rcParams.update({"font.family": ["Liberation Sans", "DejaVu Sans"], "font.size": 8.5,
                         "axes.spines.top": False, "axes.spines.right": False,
                         "axes.grid": True, "grid.color": "#d8dee3", "grid.linewidth": 0.5,
                         "axes.edgecolor": "#555555", "lines.linewidth": 1.6,
                         "legend.frameon": False, "svg.hashsalt": "telvo",
                         "svg.fonttype": "path", "mathtext.fontset": "stix"})
        figure = Figure(figsize=(width, height), layout="constrained")
        FigureCanvasAgg(figure)
        axes = figure.subplots(1, columns)
        return figure, axes


def quantity(record, name):
    """A result by its name with dots: "AbutmentLoadAMZ.retreat.front"."""
    found = record["results"]
    for part in name.split("."):
        found = found[int(part) - 1] if isinstance(found, list) else found[part]
    return found


def quantities(records, name):
    return [quantity(record, name) for record in records]


def span(first, last, count):
    """`count` values from `first` to `last`."""
    return [first + (last - first) * i / (count - 1) for i in range(count)]


def markdown_table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


def of_manual(folder, program, pictures):
    """Draws the charts of a manual. Returned: its tables by name."""
    path = os.path.join(folder, "charts.py")
    if not os.path.exists(path):
        return {}
    about = importlib.util.spec_from_file_location("charts_of_" + os.path.basename(folder), path)
    module = importlib.util.module_from_spec(about)
    about.loader.exec_module(module)
    sheet = Sheet(program, pictures)
    tables = {}
    for name, function in vars(module).items():
        if name.startswith("chart_"):
            figure = function(sheet)
            target = f"{os.path.basename(folder)}-{name[6:].replace('_', '-')}"
            figure.savefig(os.path.join(pictures, target + ".svg"),
                           metadata={"Date": None, "Creator": None})
            if in_help(folder):
                figure.savefig(os.path.join(pictures, target + ".png"), dpi=140,
                               metadata={"Software": None})
        elif name.startswith("table_"):
            tables[name[6:].replace("_", "-")] = lambda function=function: function(sheet)
    return tables
