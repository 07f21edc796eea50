# SPDX-License-Identifier: GPL-3.0-or-later
"""Figures of the manuals from the program itself, so that they stay true.

{{value CASE KEY FORMAT}}   a quantity of "telvo-cli explain", e.g. {{value a.TLV TELVOSF.retreat .2f}};
                            FORMAT is Python's, with "/2000" behind it for another unit
{{working CASE KEY}}        its formula, the formula with numbers, and the result
{{report CASE PAGE FROM TO}}  lines of a page of the report, 1 is the first
{{table NAME}}              a table that charts.py of the manual makes
"""

import csv
import io
import json
import os
import re
import subprocess
import tempfile

from book import DocsError

PLACEHOLDER = re.compile(r"\{\{(\w+) ([^{}]+)\}\}")


class Program:
    """The console program and the example cases."""

    def __init__(self, program, examples):
        self.program = program
        self.examples = examples
        self._steps = {}  # case -> key -> lines of its working

    def call(self, *arguments, given=None):
        if not self.program:
            raise DocsError("figures of the program are wanted, but --cli is not given")
        run = subprocess.run([self.program, *arguments], input=given, text=True,
                             capture_output=True, check=False)
        if run.returncode != 0:
            raise DocsError(f"telvo-cli {' '.join(arguments)}: {run.stderr.strip()}")
        return run.stdout

    def case(self, name):
        path = os.path.join(self.examples, name)
        if not os.path.exists(path):
            raise DocsError(f"there is no example {name}")
        return path

    def run(self, example, changes, folder):
        """Records of "results" for an example, once for each dictionary of changed inputs."""
        text = self.call("table", "export", self.case(example), "-o", "-")
        base = next(csv.DictReader(io.StringIO(text)))
        path = os.path.join(folder, "sweep.csv")
        with open(path, "w", encoding="utf-8", newline="") as file:
            writer = csv.DictWriter(file, base.keys())
            writer.writeheader()
            writer.writerows({**base, **change} for change in changes)
        try:
            records = json.loads(self.call("results", path, "--format", "json"))
        finally:
            os.remove(path)
        for record in records:
            if not record["valid"] or not record["results"]:
                raise DocsError(f"{record['file']}: {record['message']}")
        return records

    def run_converted(self, example, changes, folder):
        """The record of an example with changed inputs, converted to the other units by the program."""
        rows = list(csv.DictReader(io.StringIO(
            self.call("table", "export", self.case(example), "-o", "-"))))
        with tempfile.TemporaryDirectory(dir=folder) as place:
            table, case = os.path.join(place, "one.csv"), os.path.join(place, "one.TLV")
            with open(table, "w", encoding="utf-8", newline="") as file:
                writer = csv.DictWriter(file, rows[0].keys())
                writer.writeheader()
                writer.writerow({**rows[0], **changes})
            self.call("convert", table + "#2", "-o", case)
            return json.loads(self.call("results", case, "--format", "json"))[0]

    def changed(self, path, changes, folder):
        """A case file in `folder` with fields changed, under the name of the other one."""
        table = os.path.join(folder, "changed.csv")
        rows = list(csv.reader(io.StringIO(self.call("table", "export", path, "-o", "-"))))
        for field, value in changes.items():
            if field not in rows[0]:
                raise DocsError(f"{path}: no field is called {field}")
            rows[1][rows[0].index(field)] = value
        with open(table, "w", encoding="utf-8", newline="") as file:
            csv.writer(file).writerows(rows)
        target = os.path.join(folder, os.path.basename(path))
        self.call("save", table + "#2", "-o", target)
        return target

    def steps(self, name):
        if name not in self._steps:
            blocks = self.call("explain", self.case(name)).split("\n")
            found, key = {}, None
            for line in blocks:
                head = re.match(r"(\w[\w.@]*): ", line)
                if head:
                    key = head.group(1)
                    found[key] = []
                if key and line.strip():
                    found[key].append(line)
                elif not line.strip():
                    key = None
            self._steps[name] = found
        return self._steps[name]

    def step(self, name, key):
        try:
            return self.steps(name)[key]
        except KeyError as error:
            raise DocsError(f"{name} has no quantity {key}") from error

    # --- What stands for a placeholder

    def value(self, name, key, form, factor="/1"):
        result = [line for line in self.step(name, key)[1:] if re.match(r"\s+\w*\s*= ", line)][-1]
        number = re.match(r"-?[\d.]+(e[+-]?\d+)?", result.split("= ", 1)[1])
        if not number:
            raise DocsError(f"{name}: {key} has no number: {result}")
        return format(float(number.group(0)) / float(factor[1:]), form).replace("-", "\u2212")

    def working(self, name, key):
        lines, names = [], False  # without the names of what the symbols stand for
        for line in self.step(name, key):
            label = re.match(r"  (with|since|rule|report) ", line)
            names = label.group(1) == "with" if label else names
            if not names:
                lines.append(line)
        return "```\n" + "\n".join(lines) + "\n```"

    def report(self, name, page, first, last):
        lines = self.call("report", self.case(name), "--page", page).splitlines()
        return "```\n" + "\n".join(lines[int(first) - 1:int(last)]).rstrip() + "\n```"


def fill(text, program, tables):
    """`text` with every placeholder resolved; `tables` are functions that give Markdown."""
    def resolve(match):
        kind, words = match.group(1), match.group(2).split()
        if kind == "table" and words[0] in tables:
            return tables[words[0]]()
        if kind not in ("value", "working", "report"):
            raise DocsError(f"nothing is known of {match.group(0)}")
        return getattr(program, kind)(*words)
    return PLACEHOLDER.sub(resolve, text)
