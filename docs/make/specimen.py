# SPDX-License-Identifier: GPL-3.0-or-later
"""A page of the report, its lines numbered, each beside what the manual says of it.

The explanations are the first sentences of the definitions of the chapter in which it stands: a term with
the name "pN-..." explains the lines of page N that begin with the term or with one of its keywords; a
keyword "[HEADING] words" counts below that heading.
"""

import re

from faults import DocsError

DEFINITION = re.compile(r"^(?P<term>[^\n{]+?) \{#p(?P<page>\d)-[\w-]+(?P<more>[^}\n]*)\}\n:   (?P<text>.+?)(?=\n\n|\Z)",
                        re.MULTILINE | re.DOTALL)
SENTENCE = re.compile(r"(.+?\.)(?=\s|$)", re.DOTALL)


def explanations(chapter, page):
    """How lines begin -> what they say."""
    found = {}
    for match in DEFINITION.finditer(chapter):
        if int(match["page"]) != page:
            continue
        words = re.search(r'keywords="([^"]*)"', match["more"])
        terms = [re.sub(r" of a [\w ]+$", "", match["term"]).replace("\\", "")]
        terms += words[1].split(";") if words else []
        text = " ".join(SENTENCE.match(match["text"])[1].split())
        for term in terms:
            found[simple(term)] = text
    return found


def simple(text):
    return " ".join(text.split()).lstrip("*")


def specimen(chapter, lines, page):
    """The table in Markdown."""
    known = explanations(chapter, page)
    rows, used, heading = [], 0, ""
    for number, line in enumerate(lines, 1):
        if not line.strip():
            continue
        heading = simple(line) if line.startswith("[") else heading
        # A line may mean something else below another heading.
        ways = (simple(line), simple(heading + " " + line))
        begins = max((term for term in known if any(way.startswith(term) for way in ways)
                      and not (term == heading != simple(line))), key=len, default=None)
        used += begins is not None
        shown = "\u200b" + line.rstrip().replace(" ", "\u00a0").replace("|", "\\|")
        rows.append(f"| {number} | `{shown}` | {known[begins] if begins else ''} |")
        dots = ".." in line and not line.startswith(" ")
        if dots and begins is None:
            raise DocsError(f'page {page} has the line "{line.strip()}", which is not explained')
    if not used:
        raise DocsError(f"nothing explains page {page}")
    return "\n".join(["| Line | Page " + str(page) + " | |", "|---|---|---|", *rows])
