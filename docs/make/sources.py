# SPDX-License-Identifier: GPL-3.0-or-later
"""Fills the chapters with what the program says and runs the commands that they print. Called by
itself, it checks the chapters of all manuals, README and the manual page against the program
without making anything, and needs nothing but Python."""

import argparse
import glob
import os
import re
import sys

from answers import Answers
from commands import Commands, of_manual_page
from equations import Equations
from faults import DocsError
from figures import Figures
from verification import Verification


class Sources:
    def __init__(self, program, cases, docs, commands):
        self.equations = Equations(docs)
        self.figures = Figures(program)
        self.verification = Verification(program, os.path.join(cases, "expected.json"), docs)
        self.commands = commands

    def fill(self, text, path):
        self.commands.check(text)
        text = self.equations.fill(without_remarks(text), path)
        return self.figures.fill(self.verification.fill(text, path))


def without_remarks(text):
    return re.sub(r"<!--.*?-->\n?", "", text, flags=re.DOTALL)


def check_others(commands, project):
    """Runs what is printed besides the chapters: in README, the manual page and --help. Returned: the
    faults, each with its place."""
    faults = []

    def attempt(place, check):
        try:
            check()
        except DocsError as fault:
            faults.append(f"{place}: {fault}")

    for name, prepared in (("README.md", str), (os.path.join("packaging", "man", "telvo-cli.1.in"), of_manual_page)):
        with open(os.path.join(project, name), encoding="utf-8") as file:
            text = prepared(file.read())
        attempt(name, lambda text=text: commands.check(text))
    attempt("--help", commands.check_helps)
    return faults


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--docs", required=True)
    parser.add_argument("--examples", required=True)
    parser.add_argument("--cases", required=True)
    parser.add_argument("--cli", required=True)
    parser.add_argument("--only", help="one manual")
    given = parser.parse_args()
    commands = Commands(given.cli, given.examples)
    sources = Sources(Answers(given.cli, [given.examples, given.cases]), given.cases, given.docs,
                      commands)
    faults = 0

    def attempt(path, read):
        with open(path, encoding="utf-8") as file:
            text = file.read()
        try:
            read(text)
        except DocsError as fault:
            print(f"{path}: {fault}", file=sys.stderr)
            return 1
        return 0
    for settings in sorted(glob.glob(os.path.join(given.docs, given.only or "*", "manual.ini"))):
        for path in sorted(glob.glob(os.path.join(os.path.dirname(settings), "*.md"))):
            faults += attempt(path, lambda text, path=path: sources.fill(text, path))
    for fault in check_others(commands, os.path.dirname(os.path.abspath(given.docs))):
        print(fault, file=sys.stderr)
        faults += 1
    print(f"{commands.count} commands of the documents were run")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
