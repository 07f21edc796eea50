# SPDX-License-Identifier: GPL-3.0-or-later
"""Where things are in a printed manual: numbers of sections, links with their pages, the index."""

import html
import re

from book import HEADINGS, plain
from faults import DocsError

DENSE = ("specimen", "inputs")  # tables without room for pages
NO_WORDS = re.compile(r"^(frm|txt|cmd|chk|opt)[A-Z]|^[-\[*]|^[A-Z][a-z]+[A-Z]\w+$|^([A-Z-]+ ){3}|^Columns of")


class Places:
    """Numbers of the sections of a manual, before its pages are set."""

    def __init__(self, manual, titles):
        self.manual = manual
        self.titles = titles
        self.numbers = {}  # id -> number of the section it lies in
        counts = [0, 0]
        for number, chapter in enumerate(manual.chapters):
            for order, element in enumerate(self._with_root(chapter)):
                level = HEADINGS.get(element.tag)
                if level == 1:
                    counts = [counts[0] + 1, 0]
                elif level == 2:
                    counts[1] += 1
                name = element.get("id") or (f"section-{number}-{order}" if level else None)
                if name:
                    self.numbers[name] = str(counts[0]) if level == 1 or not counts[1] else \
                        f"{counts[0]}.{counts[1]}"

    @staticmethod
    def _with_root(chapter):
        """In the order of document(), which puts the chapter below an element of its own."""
        return list(chapter.iter())

    def number_of(self, name):
        return self.numbers.get(name, "")

    def mark_links(self, section):
        """Links say on paper where they lead; the first one to a place in each section does."""
        here, told = None, set()
        tables = {link for table in section.iter("table") for link in table.iter("a")}
        dense = {link for table in section.iter("table") if table.get("class") in DENSE
                 for link in table.iter("a")}
        for element in section.iter():
            if element.tag in HEADINGS and element.get("id"):
                number = self.number_of(element.get("id"))
                here, told = (number, set()) if number != here else (here, told)
            target = element.get("href", "") if element.tag == "a" else ""
            if not target.startswith("#"):
                continue
            name = target[1:]
            if name not in self.manual.ids:
                if name not in self.titles:
                    raise DocsError(f"{self.manual.folder}: link to #{name}, which is nowhere")
                del element.attrib["href"]
                if self.titles[name] not in told and self.titles[name] not in plain(element):
                    element.set("class", "elsewhere")
                    element.set("data-title", self.titles[name])
                told.add(self.titles[name])
            elif name not in told and self.number_of(name) != here and element not in dense:
                told.add(name)
                element.set("class", "page" if element in tables or name.startswith("eq-") else "ref")
                number = self.number_of(name)
                element.set("data-number", number if "." in number else "chapter " + number)


def index(manual):
    """All words of the help's index that a reader would look for, with their pages."""
    lines = {}
    for topic in manual.topics:
        for word, anchor in topic.keywords:
            if not NO_WORDS.match(word) and not anchor.startswith("msg-"):
                lines.setdefault(word, {})[anchor or topic.name] = None
    rows = []
    for word in sorted(lines, key=lambda word: (word.lower(), word)):
        pages = ", ".join(f'<a href="#{html.escape(name)}"></a>' for name in lines[word])
        rows.append(f"<p>{html.escape(word)} <span>{pages}</span></p>")
    return ('<section class="index"><h1 id="index-of-words" data-title="Index" data-bookmark="Index">'
            "Index</h1>\n<div>" + "\n".join(rows) + "</div></section>")
