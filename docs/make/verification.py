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

Two more blocks: "tally" sums up all checks of the manual, "cases" compares the program with the
second calculation in tests/cases/verification. A value out of tolerance stops the making.
"""

import glob
import html
import json
import os
import re
import shlex

import arithmetic
from faults import DocsError
from figures import quantity

TOLERANCE = 1e-9
SHORT = 6  # rows of a table that stays on one page
# Quantities that depend on single precision: the tolerance of the second calculation.
SINGLE = {"AMZLoad": 2e-7, "TELVOSF": 2e-7, "ArchFactor": 2e-7, "TributaryStress": 2e-7}
BLOCK = re.compile(r"^```(check|tally|cases)\b(.*?)\n(.*?)^```$", re.DOTALL | re.MULTILINE)
LINE = re.compile(r"(?P<what>[^:]+): (?:(?P<symbol>[A-Za-z]\w*) = )?(?P<work>.+?)"
                  r"(?: => (?P<target>.+))?")
PRINTED = re.compile(r"(?<![\w.])-?\d*\.?\d+(?:E[+-]\d+)?(?![\w.])")


def difference(ours, theirs):
    """Relative, and absolute where nothing is expected."""
    return abs(ours - theirs) / abs(theirs) if theirs else abs(ours)


def told(value):
    if value == 0:
        return "0"
    mantissa, exponent = f"{value:.1e}".split("e")
    return f"{mantissa} × 10<sup>−{abs(int(exponent))}</sup>"


class Verification:
    def __init__(self, program, second):
        self.program = program
        self.second = second  # file with the numbers of the second calculation
        self.rules = {}       # heading -> [values compared, largest difference, exact comparisons]

    def fill(self, text, path):
        faults = []

        def made(match):
            kind, source, body = match.groups()
            rule = heading_above(text, match.start())
            try:
                if kind == "check":
                    return self._check(source.split(), body, rule, faults)
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
        symbols, rows = {}, []
        counted = self.rules.setdefault(rule, [0, 0.0])
        for line in filter(None, map(str.strip, body.split("\n"))):
            match = LINE.fullmatch(line)
            if not match:
                raise DocsError(f"cannot read the line: {line}")
            what, symbol, work, target = match.group("what", "symbol", "work", "target")
            by_hand = arithmetic.evaluate(work, symbols)
            if symbol:
                symbols[symbol] = by_hand
            found, off = "", ""
            if target:
                value, off, good = self._compare(by_hand, case, changes, target)
                counted[0] += 1
                counted[1] = max(counted[1], off or 0.0)
                if not good:
                    faults.append(f"{rule}, {case} {changes}, {target}: {by_hand} by hand, {value}")
                found = value if isinstance(value, str) else arithmetic.shown(value)
                off = "none" if off is None else told(off)
            sign = f"<i>{symbol}</i> = " if symbol else ""
            rows.append(f"<tr><td>{html.escape(what)}<br/><span class=\"work\">{sign}"
                        f"{arithmetic.written(work)}</span></td><td>{arithmetic.shown(by_hand)}</td>"
                        f"<td>{found}</td><td>{off}</td></tr>")
        title = f"<code>{case}</code>" + "".join(f", {field} {value}" for field, value in changes)
        kind = "check short" if len(rows) <= SHORT else "check"
        return (f'<table class="{kind}"><thead><tr><th>{title}</th><th>By hand</th><th>TELVO</th>'
                f"<th>Difference</th></tr></thead>\n<tbody>{''.join(rows)}</tbody></table>\n")

    def _compare(self, by_hand, case, changes, target):
        """The program's value, the difference (None: not one of size) and whether they agree."""
        word, *rest = shlex.split(target)
        if word == "page":
            page, label, line, number, *options = rest
            return printed(self.program.page(int(page), case, changes, options), label, int(line),
                           int(number), by_hand)
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

    def _tally(self, path):
        """A line for every rule; the checks of all chapters are made for it."""
        self.rules.clear()
        for chapter in sorted(glob.glob(os.path.join(os.path.dirname(path), "*.md"))):
            with open(chapter, encoding="utf-8") as file:
                text = file.read()
            if "```tally" not in text and "```cases" not in text:
                self.fill(text, chapter)
        lines = ["| Rule | Values compared | Largest difference |", "|---|---|---|"]
        lines += [f"| {rule} | {count} | {told(off)} |" for rule, (count, off) in self.rules.items()]
        total = sum(count for count, _ in self.rules.values())
        largest = max(off for _, off in self.rules.values())
        lines.append(f"| **All {len(self.rules)} rules** | **{total}** | **{told(largest)}** |")
        return "\n".join(lines)

    def _cases(self, faults):
        with open(self.second, encoding="utf-8") as file:
            cases = json.load(file)
        by_case, by_quantity, count = [], {}, 0
        for case in cases:
            name = case["file"].removesuffix(".TLV")
            answer = self.program.results(name)
            largest, compared = 0.0, 0
            for path, value in numbers(case["results"]):
                off = difference(quantity(answer, path), value)
                first = path.split(".")[0]
                if off > SINGLE.get(first, TOLERANCE):
                    faults.append(f"{name}, {path}: {value} expected")
                count_of, largest_of = by_quantity.get(first, (0, 0.0))
                by_quantity[first] = (count_of + 1, max(largest_of, off))
                largest, compared = max(largest, off), compared + 1
            if answer["warnings"]["flags"] != case["flags"]:
                faults.append(f"{name}: warnings {case['flags']} expected")
            flags = ", ".join(map(str, case["flags"])) or "none"
            by_case.append(f"| `{name}` | {compared} | {told(largest)} | {flags} |")
            count += compared
        lines = [f"{len(cases)} cases with {count} numbers were compared.", "",
                 "| Case | Numbers | Largest difference | Warnings |", "|---|---|---|---|", *by_case,
                 "", "| Quantity | Numbers | Largest difference |", "|---|---|---|"]
        lines += [f"| `{name}` | {compared} | {told(off)} |"
                  for name, (compared, off) in sorted(by_quantity.items())]
        return "\n".join(lines)


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
