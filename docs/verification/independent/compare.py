# SPDX-License-Identifier: GPL-3.0-or-later
"""Sets the independent calculation beside the program, on stored cases and on drawn ones.

    python3 compare.py --cli telvo-cli [--drawn 2000] CASE.TLV ...

Every number and every warning flag has to agree: within a billionth, and within 2e-7 for the quantities
that depend on single precision. Ends with status 1 where one does not.
"""

import argparse
import csv
import json
import os
import random
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from panel import new_case, read_case, warnings, work_out  # noqa: E402

TOLERANCE = 1e-9
SINGLE = {"AMZLoad": 2e-7, "TELVOSF": 2e-7, "ArchFactor": 2e-7, "TributaryStress": 2e-7}


def drawn_cases(count, seed=20261121):
    """Cases that meet the branches of the rules, their corners more often than a mine would."""
    draw = random.Random(seed)
    for number in range(count):
        metric = number % 3 == 0
        f = 0.3048 if metric else 1.0

        def length(*values):
            value = draw.choice(values) if draw.random() < 0.5 else draw.uniform(min(values), max(values))
            return round(value * f, 2)
        case = new_case()
        entries = draw.choice((2, 3, 4, 5, 6, 8, 10))
        width = length(16, 18, 20, 22)
        case.update(
            Units=int(metric), EntryHeight=length(4, 6, 9), EntryWidth=width, NumberEntries=entries,
            DepthCover=length(24, 90, 333, 500, 650, 900, 1000, 1500, 2400),
            XcutAngle=draw.choice((90, 90, 75, 60, 45)), XcutSpacing=length(80, 90, 120),
            XcutCenters=[length(45, 55, 78, 120) for _ in range(entries - 1)],
            CoalStrength=draw.choice((6.21, 7.5) if metric else (900, 700, 1250)),
            UnitWeight=draw.choice((25.45, 26.1) if metric else (162, 158.5)),
            BreadthAMZ=length(90, 112, 150, 400), AMZ=0, Arch=draw.randint(0, 1),
            ArchFactor=draw.choice((0.28, 0.71, 1)), Anal=number % 4,
            ExtentActiveGob=length(0, 150, 350, 600, 2000), ExtentFirstGob=length(0, 150, 2000),
            ExtentSecondGob=length(0, 800), AbutmentAngleActiveGob=draw.choice((21, 21, 5, 45, 90)),
            AbutmentAngleFirstGob=draw.choice((21, 90)), AbutmentAngleSecondGob=draw.choice((10, 21)),
            BarrierFirstGob=length(0, 3, 20, 40, 100, 400), BarrierSecondGob=length(0, 15, 60),
            RowC=draw.randint(0, 1), RowD=draw.randint(0, 1), WidthC=length(10, 60, 90),
            WidthD=length(20, 60))
        left = entries > 4
        case.update(RowA=draw.randint(0, 1) if left else 0, RowB=draw.randint(0, 1) if left else 0)
        beside = case["Anal"] > 1
        for cut, row, barrier in (("SlabcutFirstGob", "RowA", "BarrierFirstGob"),
                                  ("SlabcutSecondGob", "RowB", "BarrierSecondGob")):
            case[cut] = 0.0 if beside and case[row] else min(case[barrier], length(0, 15, 40))
        yield case


def row_of(case):
    """The case as a row of a table."""
    row = {"Title": "drawn", **{key: value for key, value in case.items() if key != "XcutCenters"}}
    row["Units"] = "Metric" if case["Units"] else "English"
    row.update({f"XcutCenters.{i}": C for i, C in enumerate(case["XcutCenters"], 1)})
    return row


def answers(cli, files, rows):
    """The program's records of case files and of rows of a table."""
    records = []
    if files:
        done = subprocess.run([cli, "results", *files, "--format", "json"], capture_output=True, check=False)
        records += json.loads(done.stdout)
    if rows:
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "drawn.csv")
            with open(path, "w", encoding="utf-8", newline="") as file:
                names = list(dict.fromkeys(name for row in rows for name in row))
                writer = csv.DictWriter(file, names, restval="")
                writer.writeheader()
                writer.writerows(rows)
            done = subprocess.run([cli, "results", path, "--format", "json"], capture_output=True, check=False)
            records += json.loads(done.stdout)
    return records


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


class Comparison:
    """What was compared: for each quantity the numbers, those that are not 0, the identical ones and
    the largest difference."""

    def __init__(self):
        self.cases = self.refused = 0
        self.by_quantity = {}
        self.faults = []

    def add(self, name, case, record):
        if not record["valid"] or not record["results"]:
            self.refused += 1
            return
        self.cases += 1
        ours = work_out(case)
        flags = warnings(case, ours)
        theirs = dict(numbers(record["results"]))
        mine = dict(numbers(ours))
        if record["warnings"]["flags"] != flags:
            self.faults.append(f"{name}: warnings {record['warnings']['flags']}, by hand {flags}")
        for path, value in mine.items():
            quantity = path.partition(".")[0]
            if path not in theirs:
                self.faults.append(f"{name}: the program has no {path}")
                continue
            found = theirs[path]
            off = abs(found - value) / abs(value) if value else abs(found)
            if off > SINGLE.get(quantity, TOLERANCE):
                self.faults.append(f"{name}: {path} {found}, by hand {value}")
            counts = self.by_quantity.setdefault(quantity, [0, 0, 0, 0.0])
            counts[0] += 1
            if value != 0 or found != 0:
                counts[1] += 1
                counts[2] += value == found
                counts[3] = max(counts[3], off)
        missing = [path for path, value in theirs.items() if path not in mine and value != 0]
        self.faults += [f"{name}: not worked out by hand: {path}" for path in missing]

    def total(self, which):
        return sum(counts[which] for counts in self.by_quantity.values())

    def largest(self):
        return max(counts[3] for counts in self.by_quantity.values())


def compare(cli, files, drawn):
    """Stored cases and `drawn` random ones against the program at `cli`."""
    cases = [(os.path.basename(path), read_case(path)) for path in files]
    rows = list(drawn_cases(drawn))
    cases += [(f"drawn case {number}", case) for number, case in enumerate(rows, 1)]
    outcome = Comparison()
    records = answers(cli, files, [row_of(case) for case in rows])
    if len(records) != len(cases):
        outcome.faults.append(f"{len(records)} answers to {len(cases)} cases")
    for (name, case), record in zip(cases, records):
        outcome.add(name, case, record)
    return outcome


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--cli", default="telvo-cli", help="the console program")
    parser.add_argument("--drawn", type=int, default=2000, help="random cases besides (2000)")
    parser.add_argument("cases", nargs="*", metavar="CASE.TLV")
    given = parser.parse_args()
    outcome = compare(given.cli, given.cases, given.drawn)
    print(f"{outcome.cases} cases ({outcome.refused} refused by the program), {outcome.total(0)} numbers, "
          f"{outcome.total(1)} not 0, {outcome.total(2)} of these identical to the last bit; "
          f"largest difference {outcome.largest():.1e}")
    for fault in outcome.faults[:50]:
        print(fault, file=sys.stderr)
    if outcome.cases < 0.9 * (outcome.cases + outcome.refused):
        sys.exit("too many cases are refused")
    sys.exit(1 if outcome.faults else 0)


if __name__ == "__main__":
    main()
