# SPDX-License-Identifier: GPL-3.0-or-later
"""Formulas between dollar signs become pictures: SVG for print, PNG for the help window.

$...$ stands in the line, $$...$$ in a paragraph of its own. They are written in the subset of TeX
that matplotlib sets.
"""

import hashlib
import html
import os
import re

FONT_POINTS = 11
POINTS_TO_PIXELS = 96 / 72
FORMULA = re.compile(r"\$\$(.+?)\$\$|\$([^$\n]+?)\$", re.DOTALL)
CODE = re.compile(r"(^```.*?^```|`[^`\n]+`)", re.DOTALL | re.MULTILINE)


class Formulas:
    """Sets formulas into a folder; a formula that is there already is not set again."""

    def __init__(self, folder):
        self.folder = folder
        os.makedirs(folder, exist_ok=True)

    def replace(self, markdown):
        """Markdown with every formula outside of code replaced by its picture."""
        parts = CODE.split(markdown)
        for i in range(0, len(parts), 2):
            parts[i] = FORMULA.sub(self._picture, parts[i])
        return "".join(parts)

    def _picture(self, match):
        display = match.group(1) is not None
        source = (match.group(1) or match.group(2)).strip().replace("\n", " ")
        if display:  # fractions in the size of the line
            source = source.replace(r"\frac", r"\dfrac")
        name, width, height, depth = self._set(source)
        alt = html.escape(source, quote=True)
        kind = "display" if display else "inline"
        style = (f"width:{width:.2f}pt;height:{height:.2f}pt;"
                 f"vertical-align:{-depth:.2f}pt")
        return f'<img class="formula {kind}" src="formulas/{name}.svg" alt="{alt}" style="{style}"/>'

    def _set(self, source):
        name = hashlib.sha256(source.encode()).hexdigest()[:16]
        path = os.path.join(self.folder, name)
        try:
            with open(path + ".size", encoding="ascii") as file:
                width, height, depth = map(float, file.read().split())
                return name, width, height, depth
        except FileNotFoundError:
            pass
        outline, width, height, depth = self._outline(source)
        self._write_svg(path + ".svg", outline, width, height, depth)
        self._write_png(path + ".png", outline, width, height, depth)
        with open(path + ".size", "w", encoding="ascii") as file:
            file.write(f"{width} {height} {depth}")
        return name, width, height, depth

    @staticmethod
    def _outline(source):
        from matplotlib.font_manager import FontProperties
        from matplotlib.mathtext import MathTextParser
        from matplotlib.textpath import TextPath
        font = FontProperties(family="serif", size=FONT_POINTS, math_fontfamily="stix")
        text = f"${source}$"
        parsed = MathTextParser("path").parse(text, 72, font)
        edge = 0.5  # points; round letters reach over their box
        return (TextPath((edge, parsed.depth + edge), text, prop=font),
                parsed.width + 2 * edge, parsed.height + 2 * edge, parsed.depth + edge)

    @staticmethod
    def _write_svg(path, outline, width, height, _depth):
        from matplotlib.path import Path
        letters = {Path.MOVETO: "M", Path.LINETO: "L", Path.CURVE3: "Q", Path.CURVE4: "C"}
        steps = []
        for points, code in outline.iter_segments(simplify=False):
            if code == Path.CLOSEPOLY:
                steps.append("Z")
                continue
            pairs = zip(points[::2], points[1::2])
            steps.append(letters[code] + " ".join(f"{x:.3f},{height - y:.3f}" for x, y in pairs))
        with open(path, "w", encoding="utf-8") as file:
            file.write(f'<svg xmlns="http://www.w3.org/2000/svg" width="{width:.2f}pt" '
                       f'height="{height:.2f}pt" viewBox="0 0 {width:.3f} {height:.3f}">'
                       f'<path d="{" ".join(steps)}"/></svg>\n')

    @staticmethod
    def _write_png(path, outline, width, height, _depth):
        """Black on nothing, in two pixels to the screen's one."""
        from matplotlib.backends.backend_agg import FigureCanvasAgg
        from matplotlib.figure import Figure
        from matplotlib.patches import PathPatch
        figure = Figure(figsize=(width / 72, height / 72), dpi=2 * 72 * POINTS_TO_PIXELS)
        FigureCanvasAgg(figure)
        axes = figure.add_axes((0, 0, 1, 1))
        axes.set_xlim(0, width)
        axes.set_ylim(0, height)
        axes.axis("off")
        axes.add_patch(PathPatch(outline, facecolor="black", linewidth=0))
        figure.savefig(path, transparent=True, metadata={"Software": None})
