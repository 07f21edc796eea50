# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the command lines that a document prints, in the order in which they stand.

A command is a line of a fenced block that begins with "telvo-cli " or "$ ", or a code span that begins
with "telvo-cli ". Each runs in a scratch folder of the document that holds the example cases, once more
under examples/, and panel.TLV, old.TLV and wider.TLV, a reader's own. What a line says behind it counts:

    telvo-cli check old.TLV     # exit status 1     another status than 0 is expected
    $ telvo-cli check a.TLV                         the lines below, up to the next "$ ", are what it
    a.TLV: OK                                       prints; "..." alone stands for any lines

A line with placeholders (CASE, [--page N], text|json|csv) is a synopsis: its command, options and
choices have to be those of --help. Comments of Markdown, which no reader sees, say what the lines need:

    <!-- with 2north.TLV = tutorial-3-finished.TLV -->   a file that the reader has by then
    <!-- not run: REASON -->                             the block that follows is not run
"""

import glob
import os
import re
import shutil
import subprocess
import tempfile

from faults import DocsError

PIECE = re.compile(r"<!--(?P<remark>.*?)-->|^(?P<fence>```+)(?P<kind>[^\n`]*)\n(?P<block>.*?)^(?P=fence)\s*$"
                   r"|`(?P<span>telvo-cli [^`]+)`", re.DOTALL | re.MULTILINE)
PLACEHOLDER = re.compile(r"[\[\]]|\.\.\.|^[A-Z]+\d?$|^(FILE|TABLE|FOLDER|CASE)[-.#]\w+$|\w\|\w")
STATUS = re.compile(r"\s+# exit status (\d)\s*$")
# These install or build and are not run; a script has to be there.
TOOLS = re.compile(r"(?:sudo )?(?:(scripts/[\w-]+)|apt|apt-get|git|cd|cmake|ctest|telvo)(?= |$)")
SHELLS = ("sh", "console", "bash")
SECONDS = 60
READERS_CASES = ("panel.TLV", "old.TLV", "wider.TLV")  # as the help of the commands names them
A_CASE = "two-side-gobs.TLV"


class Commands:
    """The program, found by its name, and the folder of the example cases."""

    def __init__(self, program, examples):
        self.program = program and os.path.abspath(program)
        self.examples = examples
        self.project = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
        self.helps = {}
        self.count = 0  # lines that were run

    def check(self, text, given=READERS_CASES):
        """Runs what `text` prints, where the cases `given` are there. Raised: DocsError with the line
        that is not as it says."""
        if not self.program:
            return
        with tempfile.TemporaryDirectory() as folder:
            self._lay_out(folder, given)
            skipped = False
            for piece in PIECE.finditer(text):
                if piece["remark"] is not None:
                    skipped = self._remark(piece["remark"].strip(), folder) or skipped
                elif piece["span"]:
                    self._line(" ".join(piece["span"].split()), None, folder)
                else:
                    if not skipped:
                        self._block(piece["block"], piece["kind"].strip(), folder)
                    skipped = False

    def check_helps(self):
        """Runs the examples of the help of every command."""
        for name in self._names():
            example = re.search(r"^Examples?:\n((?:  .*\n?)+)", self._help([name]), re.MULTILINE)
            if example:
                self.check("```\n" + re.sub("^  ", "", example[1], flags=re.MULTILINE).rstrip() + "\n```",
                           () if name == "new" else READERS_CASES)

    def _names(self):
        return re.findall(r"^  ([a-z]+) ", self._help([]).partition("Subcommands:")[2], re.MULTILINE)

    def _lay_out(self, folder, given):
        """The examples, and the program under its own name at the front of the path."""
        for place in (folder, os.path.join(folder, "examples")):
            os.makedirs(place, exist_ok=True)
            for case in glob.glob(os.path.join(self.examples, "*.TLV")):
                shutil.copy(case, place)
        for name in given:
            shutil.copy(os.path.join(self.examples, A_CASE), os.path.join(folder, name))
        tools = os.path.join(folder, ".tools")
        os.makedirs(tools)
        link = os.path.join(tools, "telvo-cli")
        with open(link, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\nexec "{self.program}" "$@"\n')
        os.chmod(link, 0o755)

    def _remark(self, words, folder):
        """Follows a comment; returned: the next block is not run."""
        if words.startswith("not run:"):
            return True
        given = re.fullmatch(r"with (\S+) = (\S+)", words)
        if given:
            source = os.path.join(self.examples, given[2])
            if not os.path.exists(source):
                raise DocsError(f"there is no example {given[2]}")
            shutil.copy(source, os.path.join(folder, given[1]))
        return False

    def _block(self, block, kind, folder):
        lines = block.split("\n")
        for number, line in enumerate(lines):
            if line.startswith("$ "):
                printed = []
                for below in lines[number + 1:]:
                    if below.startswith("$ "):
                        break
                    printed.append(below)
                self._line(line[2:], printed, folder)
            elif line.startswith("telvo-cli "):
                self._line(line, None, folder)
            elif kind in SHELLS and line.strip() and not TOOLS.match(line) and \
                    not any(above.startswith("$ ") for above in lines[:number]):
                raise DocsError(f'"{line}" is not run and not marked so')
            elif TOOLS.match(line):
                script = TOOLS.match(line)[1]
                if script and not os.path.exists(os.path.join(self.project, script)):
                    raise DocsError(f"there is no {script}")

    def _line(self, line, printed, folder):
        status = STATUS.search(line)
        command = re.split(r"\s{2,}", STATUS.sub("", line))[0]  # two blanks lead to an explanation
        if any(PLACEHOLDER.search(word) for word in command.split()):
            return self._synopsis(command)
        if command.split()[-1] == "telvo-cli" or re.fullmatch(r"telvo-cli( [a-z]+)+", command) and \
                self._known(command):
            return None  # only its name
        self.count += 1
        done = subprocess.run(["sh", "-c", command], cwd=folder, capture_output=True, text=True,
                              check=False, timeout=SECONDS, stdin=subprocess.DEVNULL,
                              env={**os.environ, "LC_ALL": "C.UTF-8",
                                   "PATH": os.path.join(folder, ".tools") + ":" + os.environ["PATH"]})
        expected = int(status[1]) if status else 0
        if done.returncode != expected:
            raise DocsError(f'"{command}" ends with {done.returncode}, not {expected}: '
                            f"{done.stderr.strip()}")
        if printed and any(map(str.strip, printed)):
            compare(command, done.stdout + done.stderr, printed)
        return None

    def _known(self, command):
        """A command that is only named has to be there."""
        self._help(command.split()[1:])
        return True

    def _help(self, words):
        key = " ".join(words)
        if key not in self.helps:
            done = subprocess.run([self.program, *words, "--help"], capture_output=True, text=True,
                                  check=False, timeout=SECONDS)
            if done.returncode or words and words[0] not in self._names():
                raise DocsError(f'there is no command "telvo-cli {key}"')
            self.helps[key] = done.stdout
        return self.helps[key]

    def _synopsis(self, command):
        words = command.replace("[", " ").replace("]", " ").split()[1:]
        path = []
        while words and re.fullmatch(r"[a-z]+", words[0]):
            path.append(words.pop(0))
        told = self._help(path)
        for word in words:
            for part in word.split("|"):
                if re.match(r"-+[a-z]|[a-z]+$", part) and not re.search(rf"(?<![\w-]){re.escape(part)}\b", told):
                    raise DocsError(f'"{command}": --help knows nothing of {part}')


def compare(command, text, printed):
    """The lines that a document shows have to be those printed; "..." stands for any lines."""
    pattern = "".join(r"(?:.*\n)*?" if line.strip() == "..." else re.escape(line.rstrip()) + r"[ ]*\n"
                      for line in "\n".join(printed).strip("\n").split("\n"))
    if not re.fullmatch(pattern, text.rstrip("\n") + "\n"):
        raise DocsError(f'"{command}" prints something else than is shown below it:\n{text}')


def of_manual_page(text):
    """The examples of a manual page, which stand between .nf and .fi, as Markdown."""
    blocks = re.findall(r"^\.nf\n(.*?)^\.fi", text, re.DOTALL | re.MULTILINE)
    return "\n\n".join("```\n" + block.replace("\\-", "-") + "```" for block in blocks)
