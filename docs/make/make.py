#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes the help and the manuals of TELVO from the folders below docs/. See docs/README.md."""

import argparse
import functools
import glob
import multiprocessing
import os
import re
import shutil
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True  # the sources stay as they are
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import charts  # noqa: E402
from answers import Answers  # noqa: E402
from book import Manual, in_help  # noqa: E402
from commands import Commands  # noqa: E402
from faults import DocsError  # noqa: E402
from formulas import Formulas  # noqa: E402
from help import Help  # noqa: E402
from program import Program, fill  # noqa: E402
from sources import Sources, check_others  # noqa: E402

SCREENS_CASE = "two-side-gobs.TLV"
CHANGE = re.compile(r"[A-Z]\w*(\.\d)?=")  # a field and its value
HERE = os.path.dirname(os.path.abspath(__file__))


def lines_of(listing):
    with open(listing, encoding="utf-8") as file:
        return [line.split() for line in file if line.strip() and not line.startswith("#")]


def posed(examples, program, case, words, scratch):
    """The file of an example, with the changes that stand among `words`, and the other words."""
    changes = dict(word.split("=", 1) for word in words if CHANGE.match(word))
    path = os.path.join(examples, case)
    if changes:
        path = program.changed(path, changes, scratch)
    return path, [word for word in words if not CHANGE.match(word)]


def draw(listing, examples, program, folder):
    """Drawings by the console program: one line each, name, case and what it is called with."""
    os.makedirs(folder, exist_ok=True)
    for name, case, *words in lines_of(listing):
        with tempfile.TemporaryDirectory() as scratch:
            path, words = posed(examples, program, case, words, scratch)
            for extension, more in ((".svg", []), (".png", ["--dpi", "140"])):
                program.call("plot", path, *words, *more, "-o", os.path.join(folder, name + extension), "--force")


def pose(listing, examples, program, screens, folder):
    """Pictures of single windows: one line each, name, case, window and what it shows."""
    for name, case, *words in lines_of(listing):
        with tempfile.TemporaryDirectory() as scratch:
            path, words = posed(examples, program, case, words, scratch)
            subprocess.run([screens, "case", path, folder, name, *words], check=True)


def read(folder, formulas, sources, program, pictures):
    """A manual with its own drawings, its charts and the figures of the program."""
    for path in sorted(glob.glob(os.path.join(folder, "figures", "*.svg"))):
        shutil.copy(path, pictures)
    tables = charts.of_manual(folder, program, pictures) if program.program else {}
    return Manual(folder, lambda text, path: formulas.replace(
        fill(sources.fill(text, path), program, tables)))


def photograph(program, what, folder):
    """Pictures of the windows by the windows themselves."""
    subprocess.run([program, *what, folder], check=True)


def arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--docs", required=True, help="folder with the manuals")
    parser.add_argument("--build", required=True, help="folder for everything that is made")
    parser.add_argument("--version", required=True)
    parser.add_argument("--examples", help="folder of the example cases")
    parser.add_argument("--cases", help="folder of the cases with known answers")
    parser.add_argument("--cli", help="console program, which draws the pictures")
    parser.add_argument("--screens", help="program that takes the pictures of the windows")
    parser.add_argument("--only", choices=["help", "pdf", "chm"], action="append",
                        help="what is made; everything but the CHM unless given")
    return parser.parse_args()


JOBS = []  # what forked processes do; they have it from their start, so that nothing is handed over


def run_job(number):
    JOBS[number]()


def disclaimer_of(project):
    """The text of the program's own window, in paragraphs."""
    with open(os.path.join(project, "src", "app", "reminders.h"), encoding="utf-8") as file:
        text = re.search(r'DisclaimerText =((?:\s*"(?:[^"\\]|\\.)*")+);', file.read())
    return "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', text[1])).split("\\n")


def write_pdfs(manuals, given):
    """In one process for each processor: setting pages is most of the work."""
    import pdf
    titles = {name: manual.settings["title"] for manual in manuals for name in manual.ids}
    edition = pdf.Edition(given.version, given.build, os.path.join(HERE, "print.css"), titles,
                          disclaimer_of(os.path.dirname(os.path.abspath(given.docs))))
    # The long ones first, so that no processor is left with one at the end.
    for manual in sorted(manuals, key=lambda manual: -sum(len(list(c.iter())) for c in manual.chapters)):
        JOBS.append(functools.partial(pdf.write, manual, edition, given.build))
    with multiprocessing.get_context("fork").Pool() as pool:
        pool.map(run_job, range(len(JOBS)), chunksize=1)


def say(step):
    """What is being done: the making takes minutes."""
    print(f"docs: {step}", flush=True)


def main():
    given = arguments()
    wanted = given.only or ["help", "pdf"]
    pictures = os.path.join(given.build, "pictures")
    program = Program(given.cli, given.examples)
    if given.cli:
        say("drawings of cases")
        draw(os.path.join(given.docs, "drawings.txt"), given.examples, program, pictures)
    if given.screens:
        say("pictures of windows")
        photograph(given.screens, ["windows", os.path.join(given.examples, SCREENS_CASE)], pictures)
        pose(os.path.join(given.docs, "windows.txt"), given.examples, program, given.screens, pictures)
    say("numbers, printed commands and formulas")
    answers = Answers(given.cli, [given.examples, given.cases],
                      os.path.join(given.build, "answers.json"))
    commands = Commands(given.cli, given.examples)
    sources = Sources(answers, given.cases, given.docs, commands)
    formulas = Formulas(os.path.join(given.build, "formulas"), sources.equations.number)
    folders = [os.path.dirname(path)
               for path in sorted(glob.glob(os.path.join(given.docs, "*", "manual.ini")))]
    if "pdf" not in wanted:
        folders = [folder for folder in folders if in_help(folder)]
    manuals = [read(folder, formulas, sources, program, pictures) for folder in folders]
    answers.keep()
    if given.cli and "pdf" in wanted:
        faults = check_others(commands, os.path.dirname(os.path.abspath(given.docs)))
        if faults:
            raise DocsError("\n".join(faults))
    # The user manual leads the contents of the help.
    manuals.sort(key=lambda manual: (int(manual.settings.get("order", "9")), manual.name))
    pages = Help([manual for manual in manuals if in_help(manual.folder)], os.path.join(given.build, "help"), given.build)
    stylesheet = os.path.join(HERE, "help.css")
    say("pages of the help")
    if given.screens:
        # The help window shows the help, which shows the help window.
        shutil.copy(os.path.join(pictures, "frmMain.png"), os.path.join(pictures, "frmHelp.png"))
        pages.write(stylesheet)
        photograph(given.screens, ["help", pages.folder + os.sep], pictures)
    if "help" in wanted or "chm" in wanted:
        pages.write(stylesheet)
    if "pdf" in wanted:
        say("manuals for print")
        write_pdfs(manuals, given)
    if "chm" in wanted:
        import chm
        chm.write(pages, os.path.join(given.build, "chm"), "TELVO.CHM")


if __name__ == "__main__":
    try:
        main()
    except DocsError as fault:
        sys.exit(f"docs: {fault}")
