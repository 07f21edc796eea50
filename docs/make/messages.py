# SPDX-License-Identifier: GPL-3.0-or-later
"""Every text with which the program refuses or fails, from its sources, and whether the manual has an
entry for it: messages.py DOCS

An entry is a term of the chapter on messages, "..." in it standing for what differs from case to case.
"""

import argparse
import glob
import os
import re
import sys

TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|\'(?:\\.|[^\'\\\n])+\'|"(?:[^"\\\n]|\\.)*"|[(){}]|\w+', re.DOTALL)
# What hands a text to the user, or carries it there.
CARRIERS = re.compile(r"(refus|fault|fail$|tell$|ask$|complain|wrongUsage|cannot)|.*Fault$", re.IGNORECASE)
LISTS = {"notes", "lines", "faults", "fallbacks", "stale"}  # to which a text is appended
OPENINGS = ("Invalid ", "Cannot ", "The disk ", "The folder ", "The file ", "You may ")
CONSTANTS = ("message", "question")  # what a text is called that is handed on later
ESCAPES = {r"\"": '"', r"\n": "\n", r"\\": "\\"}
# Folders whose faults go to the code that calls them, not to a user.
FOR_PROGRAMS = ("batch",)
LEAST = 12     # letters of a text that says something by itself
TERM = re.compile(r"^(.+?) ?\{#msg-[\w-]+[^}]*\}$", re.MULTILINE)
CHAPTER = os.path.join("manual", "13-messages.md")
# Titles, and names of quantities with what they belong to.
NO_MESSAGES = re.compile(r"Help: Message$|Invalid Character$|HKEY_|&|The file as it is on disk|[A-Z][a-z]+[A-Z]\w+ of ")


def texts_of(source):
    """Texts in the calls that carry them, adjacent pieces joined."""
    found, stack, word, before, last_end, joined = [], [], "", "", 0, None
    for token in TOKEN.finditer(source):
        text = token[0]
        if text.startswith('"'):
            value = re.sub(r"\\.", lambda m: ESCAPES.get(m[0], m[0]), text[1:-1])
            if joined is not None and not source[last_end:token.start()].strip():
                found[joined] = (found[joined][0] + value, found[joined][1])
            else:
                found.append((value, any(stack) or word.lower().endswith(CONSTANTS)))
                joined = len(found) - 1
            last_end = token.end()
            continue
        if text.startswith(("//", "/*")):
            continue
        if text in "({":
            stack.append(bool(CARRIERS.match(word)) or word == "push_back" and before in LISTS)
        elif text in ")}" and stack:
            stack.pop()
        if text.isidentifier():
            before, word = word, text
        else:
            before = word = ""
        joined = None
    return [text for text, carried in found if carried or text.startswith(OPENINGS)]


def says_something(text):
    return len(re.sub(r"[^A-Za-z]", "", text)) >= LEAST and " " in text.strip() and \
        not NO_MESSAGES.match(text)


def collected(folder):
    """Text -> file, of all sources of the program."""
    found = {}
    for path in sorted(glob.glob(os.path.join(folder, "**", "*.cpp"), recursive=True) +
                       glob.glob(os.path.join(folder, "**", "*.h"), recursive=True)):
        if os.path.relpath(path, folder).startswith(FOR_PROGRAMS):
            continue
        with open(path, encoding="utf-8") as file:
            source = file.read()
        for text in texts_of(source):
            for part in text.split("\n"):
                if says_something(part):
                    found.setdefault(part.strip(" :,;.?"), os.path.relpath(path, folder))
    return found


def entries(docs):
    with open(os.path.join(docs, CHAPTER), encoding="utf-8") as file:
        return [re.sub(r"\\(.)", r"\1", term) for term in TERM.findall(file.read())]


def covers(entry, text):
    """Whether one of the fixed parts of an entry holds the text, or the text holds all of them."""
    parts = [part.strip(" :,;.?") for part in entry.split("...")]
    return any(text in part for part in parts) or \
        all(part in text for part in parts if part) and any(parts)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("docs")
    parser.add_argument("--list", action="store_true", help="all texts, with an entry or without")
    given = parser.parse_args()
    found = collected(os.path.join(given.docs, "..", "src"))
    known = [] if given.list else entries(given.docs)
    missing = [(text, path) for text, path in found.items()
               if not any(covers(entry, text) for entry in known)]
    for text, path in missing:
        print(f'{path}: no entry of {CHAPTER} has "{text}"')
    print(f"{len(found)} texts, {len(known)} entries")
    return 1 if missing and not given.list else 0


if __name__ == "__main__":
    sys.exit(main())
