# SPDX-License-Identifier: GPL-3.0-or-later
"""Asks the console program, so that no number of the manuals is typed.

Answers are kept beside what is made from them: where the program is not at hand, as for the compiled
help, they are read again.
"""

import csv
import io
import json
import os
import shlex
import subprocess
import tempfile

from faults import DocsError


# Behind the name of a case: the case as the program converts it to the other units.
CONVERTED = "~converted"


class Answers:
    """`telvo-cli`, called with cases of the given folders."""

    def __init__(self, path, folders, memory=None):
        self.path = path
        self.folders = folders
        self.memory = memory
        self.answers = {}
        if memory and not path and os.path.exists(memory):
            with open(memory, encoding="utf-8") as file:
                self.answers = json.load(file)

    def keep(self):
        """Writes what was answered, for a later making without the program."""
        if self.memory and self.path:
            with open(self.memory, "w", encoding="utf-8") as file:
                json.dump(self.answers, file, indent=0, sort_keys=True)

    def call(self, *arguments, name="", content="", made=""):
        """What the program prints, or writes into the file `made`. It reads the file `name`."""
        key = shlex.join(arguments) + "\n" + content
        if key not in self.answers:
            self.answers[key] = self._ask(arguments, name, content, made)
        return self.answers[key]

    def _ask(self, arguments, name, content, made):
        if not self.path:
            raise DocsError("the console program is needed: " + shlex.join(arguments))
        with tempfile.TemporaryDirectory() as folder:  # no name of a folder gets into a manual
            if name:
                with open(os.path.join(folder, name), "w", encoding="utf-8", newline="") as file:
                    file.write(content)
            done = subprocess.run([os.path.abspath(self.path), *arguments], cwd=folder,
                                  capture_output=True, check=False)
            if done.returncode:
                raise DocsError(f"telvo-cli {shlex.join(arguments)}: {done.stderr.decode()}")
            if made:
                with open(os.path.join(folder, made), encoding="utf-8") as file:
                    return file.read()
        return done.stdout.decode().replace("\r\n", "\n")

    def file(self, case):
        for folder in self.folders:
            path = os.path.join(folder, case + ".TLV")
            if os.path.exists(path):
                return path
        raise DocsError(f"there is no case {case}")

    def results(self, case, changes=()):
        answer = json.loads(self._of_case(case, changes, "results", "CASE", "--format", "json"))[0]
        if not answer["valid"]:
            raise DocsError(f"{case} {changes}: {answer['message']}")
        return answer

    def refusal(self, case, changes=()):
        """The message with which a case is refused, or nothing."""
        try:
            self.results(case, changes)
        except DocsError as fault:
            return str(fault)
        return ""

    def page(self, number, case, changes=(), options=()):
        return self._of_case(case, changes, "report", "CASE", "--page", str(number), *options)

    def working(self, quantity, case, changes=()):
        return self._of_case(case, changes, "explain", "CASE", quantity)

    def graph(self, kind, case, changes=()):
        """Rows of the numbers behind a graph, the titles first."""
        answer = self._of_case(case, changes, "plot", "CASE", "--kind", kind, "-o", "graph.csv",
                               made="graph.csv")
        return list(csv.reader(io.StringIO(answer)))

    def crossing(self, case, changes, kind, column, factor):
        """The first place where a curve of a graph has this factor, between its points on the
        straight line."""
        rows = [[float(cell) if cell else None for cell in row]
                for row in self.graph(kind, case, changes)[1:]]
        column, factor = int(column), float(factor)
        for left, right in zip(rows, rows[1:]):
            a, b = left[column], right[column]
            if None not in (a, b) and a != b and min(a, b) <= factor <= max(a, b):
                return left[0] + (right[0] - left[0]) * (factor - a) / (b - a)
        raise DocsError(f"{case}: the graph {kind} never has the factor {factor}")

    def study(self, command, case, changes, *arguments):
        """What a study answers about a case: find, chart, tornado or sweep."""
        return json.loads(self._of_case(case, changes, command, "CASE", *arguments,
                                        "--format", "json"))[0]

    def version(self):
        return self.call("--version").split()[1]

    def _of_case(self, case, changes, *arguments, made=""):
        case, converted, _ = case.partition(CONVERTED)
        name = case + (".csv" if changes else ".TLV")
        with open(self.file(case), encoding="utf-8", newline="") as file:
            content = file.read()
        if converted:
            content = self.call("convert", case + ".TLV", "-o", "-", name=case + ".TLV",
                                content=content)
        if changes:
            content = self._changed(case, content, changes)
        return self.call(*[name if word == "CASE" else word for word in arguments],
                         name=name, content=content, made=made)

    def _changed(self, case, content, changes):
        """The case as a table of one row, with fields changed."""
        name = case + ".TLV"
        table = self.call("table", "export", name, "-o", "-", name=name, content=content)
        rows = list(csv.reader(io.StringIO(table)))
        for field, value in changes:
            if field not in rows[0]:
                raise DocsError(f"{case}: no field is called {field}")
            rows[1][rows[0].index(field)] = str(value)
        written = io.StringIO()
        csv.writer(written).writerows(rows)
        return written.getvalue()
