# SPDX-License-Identifier: GPL-3.0-or-later
"""Works out what the verification manual writes down and compares it with the program.

    ```check CASE FIELD=VALUE ...
    Length of the pillars: L = (100 - 20 / sin(90 * deg)) * sin(90 * deg) => PillarLength
    ```

Each line has what is worked out, the symbol that keeps it (which may be left out), the arithmetic and,
behind =>, what of the program has to be the same:

    QUANTITY                        as in "telvo-cli results": BarrierSF.retreat.first, PillarArea.1
    flag N, flags                   whether a warning is raised; the numbers of all of them
    page N LABEL LINE NUMBER ...    a number printed on a page of the report, on the LINEth line that
                                    begins so; options of the report follow
    says N WORDS ...                whether a page of the report has these words, however it is wrapped
    branch QUANTITY WORDS           whether the working of a quantity has this condition or reason
    refused WORDS FIELD=VALUE ...   whether the run with these changes is refused with these words
    plotted KIND LABEL COLUMN       a number behind a drawing, in the row that begins so
    inputs.FIELD                    a field of the case
    crossing GRAPH COLUMN FACTOR    where a graph has this factor, within a thousandth
    yes, no                         a condition; one without => has to hold

"keep NAME = ..." keeps a value for later blocks and chapters and is not printed. A changed depth brings its
automatic breadth with it, as in the parameter form, unless the breadth is changed too or set by hand.

Three more blocks: "tally" sums up all checks of the manual, "cases" compares the program with the
independent calculation, "matrix" goes from every rule to its equations, hand cases and tests. A value
out of tolerance, a condition that does not hold and a rule without a check stop the making.
"""

import glob
import html
import json
import os
import re
import shlex
import sys

import arithmetic
import rules
from faults import DocsError
from figures import quantity

TOLERANCE = 1e-9
CROSSING = 1e-3  # graphs are read between their points
DRAWN = 1000  # random cases of the independent calculation
SHORT = 6  # rows of a table that stays on one page
# Quantities that depend on single precision: the tolerance of the second calculation.
SINGLE = {"AMZLoad": 2e-7, "TELVOSF": 2e-7, "ArchFactor": 2e-7, "TributaryStress": 2e-7}
FEET = 3.280839895013123
BLOCK = re.compile(r"^```(check|tally|cases|matrix)\b(.*?)\n(.*?)^```$", re.DOTALL | re.MULTILINE)
LINE = re.compile(r"(?:keep (?P<kept>[A-Za-z]\w*) = (?P<kept_work>.+)"
                  r"|(?P<what>[^:]+): (?:(?P<symbol>[A-Za-z]\w*) = )?(?P<work>.+?)"
                  r"(?: => (?P<target>.+))?)")
PRINTED = re.compile(r"(?<![\w.])-?\d*\.?\d+(?:E[+-]\d+)?(?![\w.])")
# A row of the table of the input fields that is a box of the form.
FIELD = re.compile(r'\{TELVO_FIELD\((\w+)\),\s*(?:\.kind = (\w+),)?[^{}]*?\.control = "txt\w+",[^{}]*?'
                   r'\.group = (?:"([^"]+)"|(\w+)),\s*\.label = "([^"]+)"')
GOBS = {"ActiveGob": "Active Gob, ", "FirstGob": "First Gob, ", "SecondGob": "Second Gob, "}
# Fields that are no boxes of the form with a label of their own.
OTHER_FIELDS = {"NumberEntries": "Number of Entries", "Anal": "Loading Condition",
                "AMZ": "AMZ set automatically", "Arch": "Pressure Arch Factor set automatically",
                "RowA": "Leave pillar Row 'A'", "RowB": "Leave pillar Row 'B'",
                "RowC": "Leave pillar Row 'C'", "RowD": "Leave pillar Row 'D'"}
UNITS = {"Length": ("ft", "m"), "Angle": ("\u00b0", "\u00b0"), "Strength": ("psi", "MPa"),
         "UnitWeight": ("pcf", "kN/m\u00b3"), "Number": ("", "")}


def difference(ours, theirs):
    """Relative, and absolute where nothing is expected."""
    return abs(ours - theirs) / abs(theirs) if theirs else abs(ours)


def told(value):
    if value == 0:
        return "0"
    mantissa, exponent = f"{value:.1e}".split("e")
    return f"{mantissa} × 10<sup>−{abs(int(exponent))}</sup>"


class Screen:
    """What the fields are called in the parameter form."""

    def __init__(self, sources):
        self.fields = {}
        path = os.path.join(sources, "project", "inputFields.h")
        with open(path, encoding="utf-8") as file:
            for name, kind, _, frame, label in FIELD.findall(file.read()):
                self.fields[name] = GOBS.get(frame, "") + label, UNITS[kind or "Number"]

    def change(self, field, value, metric):
        """A changed field as the reader finds it."""
        if field in OTHER_FIELDS:
            if field in ("NumberEntries", "Anal"):
                return f"{OTHER_FIELDS[field]} {value}"
            return f"{OTHER_FIELDS[field]}: {'yes' if value == '1' else 'no'}"
        spacing = re.fullmatch(r"XcutCenters\.(\d)", field)
        if spacing:
            return f"Center to Center Distance #{spacing.group(1)} {value} {'m' if metric else 'ft'}"
        label, units = self.fields[field]
        if not value:
            return f"{label} left empty in a table"
        return f"{label} {value} {units[metric]}".strip().replace(" \u00b0", "\u00b0")


class Verification:
    def __init__(self, program, second, docs):
        self.program = program
        self.second = second  # file with the numbers of the second calculation
        self.docs = docs
        self.screen = Screen(os.path.join(docs, os.pardir, "src")) if docs else None
        self.rules = {}       # heading -> [values compared, largest difference, exact comparisons]
        self.kept = {}

    def fill(self, text, path):
        faults = []

        def made(match):
            kind, source, body = match.groups()
            rule = heading_above(text, match.start())
            try:
                if kind == "check":
                    return self._check(source.split(), body, rule, faults)
                if kind == "matrix":
                    return rules.matrix(self.docs, self._all_checks(path))
                return self._tally(path) if kind == "tally" else self._cases(faults)
            except DocsError as fault:
                raise DocsError(f"{rule}: {fault}") from fault
        filled = BLOCK.sub(made, text)
        if faults:
            raise DocsError("out of tolerance\n  " + "\n  ".join(faults))
        return filled

    def _check(self, source, body, rule, faults):
        case, *changes = source
        changes = tuple(tuple(change.split("=", 1)) for change in changes)
        changes += self._breadth(case, dict(changes))
        symbols, rows = dict(self.kept), []
        counted = self.rules.setdefault(rule, [0, 0.0])
        for line in filter(None, map(str.strip, body.split("\n"))):
            match = LINE.fullmatch(line)
            if not match:
                raise DocsError(f"cannot read the line: {line}")
            if match["kept"]:
                self.kept[match["kept"]] = arithmetic.evaluate(match["kept_work"], symbols)
                continue
            what, symbol, work, target = match.group("what", "symbol", "work", "target")
            by_hand = arithmetic.evaluate(work, symbols)
            if symbol:
                symbols[symbol] = by_hand
            found, off = "", ""
            if target in ("yes", "no") or not target and isinstance(by_hand, bool):
                wanted = target != "no"
                counted[0] += 1
                if by_hand is not wanted:
                    faults.append(f"{rule}, {case} {changes}: {what}: {work} is {by_hand}")
                found, off = "", "as required"
            elif target:
                value, off, good = self._compare(by_hand, case, changes, target)
                counted[0] += 1
                counted[1] = max(counted[1], off or 0.0)
                if not good:
                    faults.append(f"{rule}, {case} {changes}, {target}: {by_hand} by hand, {value}")
                found = value if isinstance(value, str) else arithmetic.shown(value)
                off = "equal" if off is None else told(off)
            sign = f"<i>{symbol}</i> = " if symbol else ""
            rows.append(f"<tr><td>{html.escape(what)}<br/><span class=\"work\">{sign}"
                        f"{arithmetic.written(work)}</span></td><td>{arithmetic.shown(by_hand)}</td>"
                        f"<td>{found}</td><td>{off}</td></tr>")
        title = f"<code>{case}</code>" + "".join(f"; {html.escape(change)}" for change in
                                                 self._on_screen(case, changes))
        kind = "check short" if len(rows) <= SHORT else "check"
        return (f'<table class="{kind}"><thead><tr><th>{title}</th><th>By hand</th><th>TELVO</th>'
                f"<th>Difference</th></tr></thead>\n<tbody>{''.join(rows)}</tbody></table>\n")

    def _breadth(self, case, changes):
        """The automatic breadth of a changed depth: 5 sqrt(H) in feet, as a whole number."""
        if "DepthCover" not in changes or "BreadthAMZ" in changes or "AMZ" in changes:
            return ()
        inputs = self.program.results(case)["inputs"]
        feet = FEET if self._is_metric(inputs) else 1.0
        H = float(changes["DepthCover"])
        if inputs["AMZ"] != 1 or H <= 0:
            return ()
        return (("BreadthAMZ", f"{5 * (H * feet) ** 0.5 / feet:.0f}"),)

    @staticmethod
    def _is_metric(inputs):
        return inputs["Units"] in (1, "Metric")

    def _on_screen(self, case, changes):
        if not self.screen or not changes:
            return [f"{field} {value}" for field, value in changes]
        metric = self._is_metric(self.program.results(case)["inputs"])
        equal = [value for field, value in changes if field.startswith("XcutCenters.")]
        shown = [self.screen.change(field, value, metric) for field, value in changes
                 if len(equal) < 2 or len(set(equal)) > 1 or not field.startswith("XcutCenters.")]
        if len(equal) > 1 and len(set(equal)) == 1:
            shown.append(f"all Center to Center Distances {equal[0]} {'m' if metric else 'ft'}")
        return shown

    def _compare(self, by_hand, case, changes, target):
        """The program's value, the difference (None: not one of size) and whether they agree."""
        word, *rest = shlex.split(target)
        if word == "page":
            page, label, line, number, *options = rest
            return printed(self.program.page(int(page), case, changes, options), label, int(line),
                           int(number), by_hand)
        if word == "says":
            page, words, *options = rest
            text = re.sub(r"\s+", " ", self.program.page(int(page), case, changes, options))
            return agreement(words, re.sub(r"\s+", " ", words) in text, by_hand)
        if word == "branch":
            working = re.sub(r"\s+", " ", self.program.working(rest[0], case, changes).split("\n" + rest[0] + ":")[-1])
            return agreement(rest[1], rest[1] in working, by_hand)
        if word == "refused":
            more = tuple(tuple(change.split("=", 1)) for change in rest[1:])
            message = self.program.refusal(case, changes + more)
            return agreement(rest[0], rest[0] in message, by_hand)
        if word == "crossing":
            value = self.program.crossing(case, changes, *rest)
            off = difference(value, by_hand)
            return value, off, off <= CROSSING
        if word == "plotted":
            row = next(row for row in self.program.graph(rest[0], case, changes) if row[0] == rest[1])
            value = float(row[int(rest[2])])
            off = difference(value, by_hand)
            return value, off, off <= TOLERANCE
        answer = self.program.results(case, changes)
        if word in ("flag", "flags"):
            flags = answer["warnings"]["flags"]
            value = flags if word == "flags" else int(rest[0]) in flags
            if word == "flags":
                by_hand = sorted(by_hand)
            return value, None, value == by_hand
        value = quantity(answer, target)
        off = difference(value, by_hand)
        return value, off, off <= TOLERANCE

    def _all_checks(self, path):
        """Values compared under each heading; the checks of all chapters are made for it."""
        self.rules.clear()
        for chapter in sorted(glob.glob(os.path.join(os.path.dirname(path), "*.md"))):
            with open(chapter, encoding="utf-8") as file:
                text = file.read()
            if not re.search(r"^```(tally|cases|matrix)", text, re.MULTILINE):
                self.fill(text, chapter)
        return self.rules

    def _tally(self, path):
        """A line for every heading with checks."""
        self._all_checks(path)
        lines = ["| Hand cases | Values compared | Largest difference |", "|---|---|---|"]
        lines += [f"| {rule} | {count} | {told(off)} |" for rule, (count, off) in self.rules.items()]
        total = sum(count for count, _ in self.rules.values())
        largest = max(off for _, off in self.rules.values())
        lines.append(f"| **All {len(self.rules)} headings** | **{total}** | **{told(largest)}** |")
        return "\n".join(lines)

    def _cases(self, faults):
        """The independent calculation beside the program, on stored and on drawn cases."""
        folder = os.path.join(self.docs, "verification", "independent")
        sys.path.insert(0, folder)
        from compare import compare
        with open(self.second, encoding="utf-8") as file:
            earlier = json.load(file)
        for case in earlier:
            name = case["file"].removesuffix(".TLV")
            answer = self.program.results(name)
            for path, value in numbers(case["results"]):
                if difference(quantity(answer, path), value) > SINGLE.get(path.split(".")[0], TOLERANCE):
                    faults.append(f"{name}, {path}: {value} expected")
            if answer["warnings"]["flags"] != case["flags"]:
                faults.append(f"{name}: warnings {case['flags']} expected")
        files = [self.program.file(case["file"].removesuffix(".TLV")) for case in earlier]
        files += sorted(glob.glob(os.path.join(os.path.dirname(self.program.file("two-side-gobs")), "*.TLV")))
        outcome = compare(os.path.abspath(self.program.path), files, DRAWN)
        faults.extend(outcome.faults)
        not_zero, identical = outcome.total(1), outcome.total(2)
        lines = [f"{outcome.cases:,} cases were compared: {len(earlier)} stored ones at the limits of the rules, "
                 f"{len(files) - len(earlier)} examples and {outcome.cases - len(files):,} drawn at random. Of "
                 f"{outcome.total(0):,} numbers {not_zero:,} are not 0. Of these, {identical:,} are identical to "
                 f"the last bit and {not_zero - identical:,} differ, by {told(outcome.largest())} of their value at "
                 "most.", "", "All warnings are the same ones.", "",
                 "| Quantity | Numbers that are not 0 | Identical | Largest difference |", "|---|---|---|---|"]
        lines += [f"| `{name}` | {some:,} | {same:,} | {told(off)} |"
                  for name, (_, some, same, off) in sorted(outcome.by_quantity.items()) if some]
        return "\n".join(lines)


def agreement(words, found, by_hand):
    """Words that are there, or not: what is shown, no difference of size, and whether it is as expected."""
    return f"“{html.escape(words)}”" if found else "other words", None, found == by_hand


def numbers(value, path=""):
    """Every number below a value, with its path."""
    if isinstance(value, dict):
        for key, element in value.items():
            yield from numbers(element, f"{path}.{key}" if path else key)
    elif isinstance(value, list):
        for index, element in enumerate(value, 1):
            yield from numbers(element, f"{path}.{index}")
    else:
        yield path, value


def printed(page, label, line, number, by_hand):
    """A number of a page has to be the hand calculation, rounded to the digits that are printed."""
    lines = [text for text in page.split("\n") if text.strip().startswith(label)]
    if len(lines) < line:
        raise DocsError(f"the report has no line {line} that begins with {label}")
    text = PRINTED.findall(lines[line - 1].strip()[len(label):].replace("....", " ")
                           .lstrip("."))[number - 1]
    digits, _, exponent = text.partition("E")
    step = 10.0 ** (int(exponent or 0) - len(digits.partition(".")[2]))
    off = abs(float(text) - by_hand)
    return f"“{text}”", None, off <= step * (0.5 + 1e-9)


def heading_above(text, place):
    headings = re.findall(r"^#+ (.*?)\s*(?:\{.*\})?$", text[:place], re.MULTILINE)
    return headings[-1] if headings else ""
