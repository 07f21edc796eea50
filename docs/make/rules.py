# SPDX-License-Identifier: GPL-3.0-or-later
"""From every rule to its equations, its hand cases, the function of the independent calculation and the
tests of the program: docs/verification/rules.txt, a rule a line,

    rule | equations of the theory manual | headings of hand cases | functions of panel.py | tests

with several of a kind separated by ";" and "-" for rules that have no equation or are no part of a run. An equation in no
rule, and a rule whose heading, function or test is not there, stop the making. A line "no rule | equations"
names those that explain and are not computed.
"""

import glob
import html
import os
import re

from equations import Equations
from faults import DocsError

TEST = re.compile(r"^TEST(?:_F|_P)?\((\w+),\s*(\w+)\)", re.MULTILINE)
FUNCTION = re.compile(r"^def (\w+)\(", re.MULTILINE)


def parts(text):
    return [part.strip() for part in text.split(";") if part.strip()]


def rows_of(path):
    with open(path, encoding="utf-8") as file:
        for line in file:
            if line.strip() and not line.startswith("#"):
                yield [cell.strip() for cell in line.split("|")]


def tests_of(folder):
    found = set()
    for path in glob.glob(os.path.join(folder, "**", "*.cpp"), recursive=True):
        with open(path, encoding="utf-8") as file:
            found |= {f"{suite}.{name}" for suite, name in TEST.findall(file.read())}
    return found


def matrix(docs, checks):
    """The table; `checks` are the values compared under each heading of hand cases."""
    equations = Equations(docs)
    wanted = {name for name, (manual, _, _) in equations.numbers.items() if manual == "theory"}
    with open(os.path.join(docs, "verification", "independent", "panel.py"), encoding="utf-8") as file:
        functions = set(FUNCTION.findall(file.read()))
    tests = tests_of(os.path.join(docs, os.pardir, "tests"))
    faults, used, lines = [], set(), []

    def there(rule, names, known, kind):
        for name in names:
            if name not in known:
                faults.append(f"{rule}: there is no {kind} {name}")
        if not names:
            faults.append(f"{rule}: has no {kind}")
    for row in rows_of(os.path.join(docs, "verification", "rules.txt")):
        if row[0] == "no rule":
            used |= {"eq-" + name for name in row[1].split()}
            continue
        if len(row) != 5:
            faults.append(f"{row[0]}: five columns are wanted")
            continue
        rule, named, headings, second, program = row
        names = [] if named == "-" else ["eq-" + name for name in named.split()]
        used |= set(names)
        if named != "-":  # how a page is written has no equation
            there(rule, names, equations.numbers, "equation")
        if (headings, second) == ("-", "-"):
            faults.append(f"{rule}: has neither hand case nor second calculation")
        if headings != "-":  # a file is compared as a whole
            there(rule, parts(headings), {h for h, (count, _) in checks.items() if count}, "hand case")
        if second != "-":
            there(rule, parts(second), functions, "function")
        there(rule, parts(program), tests, "test")
        numbers = [equations.numbers[name][2] for name in names if name in equations.numbers]
        cells = [rule, ", ".join(f"({number})" for number in numbers) or "–",
                 "; ".join(f"{heading} ({checks[heading][0]})" for heading in parts(headings) if heading in checks) or "–",
                 "<br/>".join(f"`{name}`" for name in parts(second)) if second != "-" else "–",
                 "<br/>".join(f"`{name}`" for name in parts(program))]
        lines.append("<tr>" + "".join(f"<td>{as_html(cell)}</td>" for cell in cells) + "</tr>")
    faults += [f"no rule has the equation {name}" for name in sorted(wanted - used)]
    if faults:
        raise DocsError("the matrix of the rules\n  " + "\n  ".join(faults))
    head = "".join(f"<th>{title}</th>" for title in ("Rule", "Equations", "Hand cases (values)",
                                                     "Second calculation", "Tests of the program"))
    return (f'<table class="matrix"><thead><tr>{head}</tr></thead>\n<tbody>' + "\n".join(lines) +
            "</tbody></table>\n")


def as_html(cell):
    """Names break where their words end."""
    if "`" not in cell:
        return html.escape(cell)
    names = [re.sub(r"(?<=[a-z.])(?=[A-Z])|(?<=_)", "\u200b", html.escape(name))
             for name in re.findall(r"`([^`]+)`", cell)]
    return "<br/>".join(f"<code>{name}</code>" for name in names)
