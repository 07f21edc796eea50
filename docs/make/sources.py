# SPDX-License-Identifier: GPL-3.0-or-later
"""Fills the chapters with what the program says. Called by itself, it checks the chapters of all
manuals against the program without making anything, and needs nothing but Python."""

import argparse
import glob
import os
import sys

from answers import Answers
from equations import Equations
from faults import DocsError
from figures import Figures
from verification import Verification


class Sources:
    def __init__(self, program, cases, docs):
        self.equations = Equations(docs)
        self.figures = Figures(program)
        self.verification = Verification(program, os.path.join(cases, "expected.json"))

    def fill(self, text, path):
        return self.figures.fill(self.verification.fill(self.equations.fill(text, path), path))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--docs", required=True)
    parser.add_argument("--examples", required=True)
    parser.add_argument("--cases", required=True)
    parser.add_argument("--cli", required=True)
    parser.add_argument("--only", help="one manual")
    given = parser.parse_args()
    sources = Sources(Answers(given.cli, [given.examples, given.cases]), given.cases,
                      given.docs)
    faults = 0
    for settings in sorted(glob.glob(os.path.join(given.docs, given.only or "*", "manual.ini"))):
        for path in sorted(glob.glob(os.path.join(os.path.dirname(settings), "*.md"))):
            with open(path, encoding="utf-8") as file:
                text = file.read()
            try:
                sources.fill(text, path)
            except DocsError as fault:
                print(f"{path}: {fault}", file=sys.stderr)
                faults += 1
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
