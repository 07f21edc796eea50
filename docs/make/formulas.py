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
# A displayed formula may have a name, which gives it a number: see equations.py.
FORMULA = re.compile(r"\$\$(.+?)\$\$(?:[ \t]*\{#(eq-[\w-]+)\})?|\$([^$\n]+?)\$", re.DOTALL)
# matplotlib sets signs close to what stands beside them, and closer still beside a fraction.
SPACED = ((re.compile(r" (=|<|>|\\leq|\\geq) "), r"\\;\1\\;"), (re.compile(r" ([+-]) "), r"\\:\1\\:"))
PLAIN = ((r"\\mathrm\{([^{}]*)\}", r"\1"), (r"\\(?:left|right|quad|qquad|[,;: ])", " "),
         (r"\\leq", "<="), (r"\\geq", ">="), (r"\\ldots", "..."), (r"\\cdot", "*"),
         (r"\\sqrt\{([^{}]*)\}", r"sqrt(\1)"), (r"[\\_]", ""), (r"\{(\w+)\}", r"\1"), (r"\^", "^"))
CODE = re.compile(r"(^```.*?^```|`[^`\n]+`)", re.DOTALL | re.MULTILINE)


def plain(source):
    """The formula in plain letters, as Show Working writes it: for search, for copies and for readers
    that speak."""
    for _ in range(4):  # innermost fractions first
        source = re.sub(r"\\d?frac\{((?:[^{}]|\{[^{}]*\})*)\}\{((?:[^{}]|\{[^{}]*\})*)\}",
                        r" (\1) / (\2)", source)
    for pattern, text in PLAIN:
        source = re.sub(pattern, text, source)
    source = re.sub(r"\((\w+)\) /", r"\1 /", re.sub(r"\s+", " ", source))
    return re.sub(r"/ \((\w+)\)", r"/ \1", source).strip()


def unseen(words, width, baseline):
    """Text that a search finds and a copy takes, over the outlines and as wide as they are."""
    size = min(8, width / (0.5 * max(len(words), 1)))
    return (f'<text x="0" y="{baseline:.2f}" font-size="{size:.2f}" font-family="Liberation Sans" '
            f'fill-opacity="0">{html.escape(words)}</text>')


def raise_exponents(mathtext):
    """matplotlib 3.6 sets an exponent at the height of a small letter's, however tall the bracket is.
    It has a rule for tall signs, which is extended to all that is tall."""
    parser = mathtext.Parser
    if getattr(parser, "telvo_raised", False):
        return
    known = parser.is_dropsub

    def is_tall(self, nucleus):
        return known(self, nucleus) or isinstance(nucleus, mathtext.Hlist) and \
            nucleus.height > FONT_POINTS
    parser.is_dropsub, parser.telvo_raised = is_tall, True


def bracketed(source):
    """Brackets that have an exponent become one thing, so that it is theirs."""
    opened, pairs = [], []
    for match in re.finditer(r"\\(left|right)[()]", source):
        if match.group(1) == "left":
            opened.append(match.start())
        elif source[match.end():match.end() + 1] == "^":
            pairs.append((opened.pop(), match.end()))
        else:
            opened.pop()
    marks = sorted([(place, "{") for place, _ in pairs] + [(place, "}") for _, place in pairs])
    for place, mark in reversed(marks):
        source = source[:place] + mark + source[place:]
    return source


class Formulas:
    """Sets formulas into a folder; a formula that is there already is not set again."""

    def __init__(self, folder, number=None):
        """`number` gives the number of an equation's name."""
        self.folder = folder
        self.number = number
        os.makedirs(folder, exist_ok=True)

    def replace(self, markdown):
        """Markdown with every formula outside of code replaced by its picture."""
        parts = CODE.split(markdown)
        for i in range(0, len(parts), 2):
            parts[i] = FORMULA.sub(self._picture, parts[i])
        return "".join(parts)

    def _picture(self, match):
        display = match.group(1) is not None
        source = (match.group(1) or match.group(3)).strip().replace("\n", " ")
        alt = html.escape(plain(source), quote=True)
        if display:  # fractions in the size of the line
            source = source.replace(r"\frac", r"\dfrac")
        name, width, height, depth = self._set(source)
        kind = "display" if display else "inline"
        style = (f"width:{width:.2f}pt;height:{height:.2f}pt;"
                 f"vertical-align:{-depth:.2f}pt")
        picture = f'<img class="formula {kind}" src="formulas/{name}.svg" alt="{alt}" style="{style}"/>'
        if not match.group(2):
            return picture
        return (f'<table class="equation" id="{match.group(2)}"><tbody><tr><td>{picture}</td>'
                f'<td class="number">({self.number(match.group(2))})</td></tr></tbody></table>\n')

    def _set(self, source):
        name = hashlib.sha256(f"3 {source}".encode()).hexdigest()[:16]
        path = os.path.join(self.folder, name)
        try:
            with open(path + ".size", encoding="ascii") as file:
                width, height, depth = map(float, file.read().split())
                return name, width, height, depth
        except FileNotFoundError:
            pass
        outline, width, height, depth = self._outline(source)
        self._write_svg(path + ".svg", outline, width, height, depth, plain(source))
        self._write_png(path + ".png", outline, width, height, depth)
        with open(path + ".size", "w", encoding="ascii") as file:
            file.write(f"{width} {height} {depth}")
        return name, width, height, depth

    @staticmethod
    def _outline(source):
        from matplotlib import _mathtext
        from matplotlib.font_manager import FontProperties
        from matplotlib.mathtext import MathTextParser
        from matplotlib.textpath import TextPath
        font = FontProperties(family="serif", size=FONT_POINTS, math_fontfamily="stix")
        raise_exponents(_mathtext)
        source = bracketed(source)
        for sign, spaced in SPACED:
            source = sign.sub(spaced, source)
        text = f"${source}$"
        parsed = MathTextParser("path").parse(text, 72, font)
        edge = 0.5  # points; round letters reach over their box
        return (TextPath((edge, parsed.depth + edge), text, prop=font),
                parsed.width + 2 * edge, parsed.height + 2 * edge, parsed.depth + edge)

    @staticmethod
    def _write_svg(path, outline, width, height, depth, words):
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
                       f'<path d="{" ".join(steps)}"/>{unseen(words, width, height - depth)}</svg>\n')

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
