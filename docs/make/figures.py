# SPDX-License-Identifier: GPL-3.0-or-later
"""Puts the program's numbers into a chapter, where {{...}} stands:

    {{CASE: QUANTITY FORMAT}}                    {{two-side-gobs: TELVOSF.retreat .2f}}
    {{CASE FIELD=VALUE ...: QUANTITY FORMAT}}    the same with fields changed
    {{CASE: page N [from WORD]}}                 a page of the report, from a line with WORD on
    {{CASE: working QUANTITY [from QUANTITY]}}   how a quantity is worked out, from a step on
    {{CASE: crossing GRAPH COLUMN FACTOR FORMAT}}   where a graph has this factor
    {{CASE: find INPUT CRITERION LOW:HIGH}}      the sentence with which find answers
    {{CASE: found WHAT INPUT CRITERION LOW:HIGH FORMAT}}   a number of its answer, such as atAnswer
    {{CASE: found N.WHAT ...}}                   a number of its interval N, such as 2.practicalFrom
    {{specimen CASE N}}                          page N, each line beside the chapter's explanation of it
    {{CASE: warnings}}                           numbers of the warnings
    {{version}}, {{date}}, {{system}}            of the program; of the making; where it was made

A tutorial leads from one case to another:

    {{start CASE}}          it begins with this case
    {{convert}}             the case is converted to the other units
    {{set FIELD VALUE}}     the value, which the reader enters; XcutCenters.1-5 stands for five fields
    {{choose FIELD VALUE}}  the same, and nothing is written
    {{now: QUANTITY ...}}   as above, of the case with everything entered so far
    {{expect CASE}}         what was entered has to have led to this case, field by field

FORMAT is one of Python's, or tons, psi and percent.
"""

import datetime
import os
import platform
import re

from answers import CONVERTED
from faults import DocsError
from specimen import specimen

# Placeholders that begin with these words are those of program.py.
FIGURE = re.compile(r"\{\{(?!(?:value|working|report|table) )([^{}]+)\}\}")


class Reader:
    """The case that the reader of a tutorial has before him."""

    def __init__(self):
        self.case = None
        self.entered = {}

    def enter(self, field, value):
        several = re.fullmatch(r"(\w+\.)(\d)-(\d)", field)
        if several:
            name, first, last = several.groups()
            for index in range(int(first), int(last) + 1):
                self.entered[f"{name}{index}"] = value
        else:
            self.entered[field] = value


class Figures:
    def __init__(self, program):
        self.program = program

    def fill(self, text):
        reader = Reader()

        def answer(match):
            words = match.group(1).split()
            try:
                if words[0] == "specimen":
                    page = int(words[2])
                    return specimen(text, self.program.page(page, words[1]).splitlines(), page)
                return self._answer(match.group(1).strip(), reader)
            except (DocsError, KeyError, IndexError, ValueError, TypeError) as fault:
                raise DocsError(f"{match.group(0)}: {fault}") from fault
        filled = FIGURE.sub(answer, text)
        if reader.case:
            raise DocsError("what is entered is compared with no finished case")
        return filled

    def _answer(self, wanted, reader):
        if wanted == "version":
            return self.program.version()
        if wanted == "date":
            return date_of_making()
        if wanted == "system":
            return system_of_making()
        if ":" in wanted:
            return self._figure(wanted, reader)
        word, *rest = wanted.split(" ", 2)
        if word in ("set", "choose"):
            reader.enter(*rest)
            return rest[1] if word == "set" else ""
        if word == "start":
            reader.case = rest[0]
        elif word == "convert":
            reader.case += CONVERTED
        elif word == "expect":
            self._expect(reader, rest[0])
            reader.__init__()
        else:
            raise DocsError("not known")
        return ""

    def _figure(self, wanted, reader):
        source, _, what = wanted.partition(":")
        case, *changes = source.split()
        changes = [tuple(change.split("=", 1)) for change in changes]
        if case == "now":
            case, changes = reader.case, [*reader.entered.items(), *changes]
        changes = tuple(changes)
        word, *rest = what.split()
        if word == "page":
            return code(from_line(self.program.page(int(rest[0]), case, changes), rest[1:]))
        if word == "working":
            return code(from_line(self.program.working(rest[0], case), rest[1:]))
        if word == "crossing":
            return self._crossing(case, changes, *rest)
        if word == "find":
            return self._find(case, changes, *rest)["headline"]
        if word == "found":
            return shown(found(self._find(case, changes, *rest[1:4]), rest[0]), *rest[4:])
        answer = self.program.results(case, changes)
        if word == "warnings":
            return ", ".join(map(str, answer["warnings"]["flags"])) or "none"
        return shown(quantity(answer, word), *rest)

    def _find(self, case, changes, variable, criterion, within):
        return self.program.study("find", case, changes, variable, "--for", criterion,
                                  "--in", within)

    def _crossing(self, case, changes, kind, column, factor, form):
        return format(self.program.crossing(case, changes, kind, column, factor), form)

    def _expect(self, reader, finished):
        result = self.program.results(reader.case, tuple(reader.entered.items()))["inputs"]
        wanted = self.program.results(finished)["inputs"]
        different = [f"{key}: {result.get(key)} instead of {wanted.get(key)}"
                     for key in {**wanted, **result}
                     if key not in TITLES and result.get(key) != wanted.get(key)]
        if different:
            raise DocsError("the finished case is not reached: " + "; ".join(different))


# These say which file it is.
TITLES = {"Title", "Description", "FileVersion"}


def moment_of_making():
    """Now, or the moment of SOURCE_DATE_EPOCH, which makes a build repeatable."""
    seconds = os.environ.get("SOURCE_DATE_EPOCH")
    utc = datetime.timezone.utc
    return datetime.datetime.fromtimestamp(int(seconds), utc) if seconds else \
        datetime.datetime.now(utc)


def system_of_making():
    """Name of the system and kind of processor on which the program was asked."""
    try:
        name = platform.freedesktop_os_release()["PRETTY_NAME"]
    except (OSError, KeyError, AttributeError):  # other systems, older Pythons
        name = f"{platform.system()} {platform.release()}"
    return f"{name}, {platform.machine()}"


def date_of_making():
    day = moment_of_making()
    return f"{day:%B} {day.day}, {day.year}"


def time_of_making():
    return f"{moment_of_making():%Y-%m-%dT%H:%M:%SZ}"


def quantity(answer, name):
    """BarrierSF.retreat.first, PillarArea.1 or a field of the input, from the results of a case;
    "inputs.ArchFactor" where a result has the name of a field."""
    first, *path = name.split(".")
    if first == "inputs":  # a field that a result is called after
        answer, (first, *path) = {"results": {}, "inputs": answer["inputs"]}, path
    value = answer["results"].get(first, answer["inputs"].get(first))
    for step in path:
        value = value[int(step) - 1] if step.isdigit() else value[step]
    if value is None or isinstance(value, (dict, list)):
        raise DocsError(f"{name} is not a number")
    return value


def found(answer, what):
    """A number of what find answers: "answer", or "2.from" of the second interval."""
    number, _, name = what.rpartition(".")
    value = (answer["intervals"][int(number) - 1] if number else answer)[name]
    if value is None or isinstance(value, (dict, list, str)):
        raise DocsError(f"{what} is not a number")
    return value


def shown(value, form="g"):
    if form == "tons":
        return f"{value / 2000:,.0f}"
    if form == "psi":
        return f"{value / 144:,.0f}"
    if form == "percent":
        return f"{value * 100:.0f}"
    if form == ".2f":
        return f"{round(value * 100) / 100:.2f}"  # as the report: half to even
    return format(value, form)


def from_line(text, start):
    """The text, or what of it follows `from WORD`."""
    if not start:
        return text
    lines = text.split("\n")
    first = next((n for n, line in enumerate(lines) if start[1] in line), None)
    if first is None:
        raise DocsError(f"no line has {start[1]}")
    return "\n".join(lines[first:])


def code(text):
    return "```\n" + text.strip("\n") + "\n```"
