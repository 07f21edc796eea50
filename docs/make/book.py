# SPDX-License-Identifier: GPL-3.0-or-later
"""Reads the Markdown chapters of one manual.

A heading with the class .topic begins a page of the help; its id is the name of that page without
".htm". Further attributes of a heading: controls="form/control ..." for the controls whose F1 leads
here ("_" at the end stands for all with a number after it), keywords="a; b" for the index. Terms of definition lists
with an id stand in the index too.
"""

import configparser
import glob
import os
import re
import xml.etree.ElementTree as ElementTree

import markdown

from faults import DocsError

EXTENSIONS = ["attr_list", "def_list", "tables", "fenced_code", "sane_lists"]
HEADINGS = {f"h{level}": level for level in range(1, 7)}


class Topic:
    """One page of the help, and one section of a manual."""

    def __init__(self, name, title, level, chapter):
        self.name = name
        self.title = title
        self.level = level
        self.chapter = chapter  # number of the chapter's file
        self.body = []          # elements, the heading first
        self.keywords = []      # (text, anchor or "")
        self.controls = []      # (control, anchor or "")


def settings_of(folder):
    settings = configparser.ConfigParser()
    settings.read(os.path.join(folder, "manual.ini"), encoding="utf-8")
    return settings["manual"]


def in_help(folder):
    return settings_of(folder).getboolean("help", False)


class Manual:
    """A folder docs/<name> with manual.ini and its chapters; `prepared` is applied to their texts and
    paths."""

    def __init__(self, folder, prepared):
        self.folder = folder
        self.name = os.path.basename(folder)
        self.settings = settings_of(folder)
        self.topics = []
        self.chapters = []  # root elements
        self.ids = {}       # id -> name of the topic it lies on
        for number, path in enumerate(sorted(glob.glob(os.path.join(folder, "*.md")))):
            self._read(path, number, prepared)

    def _read(self, path, number, prepared):
        with open(path, encoding="utf-8") as file:
            text = file.read()
        try:
            text = prepared(text, path)
        except DocsError as error:
            raise DocsError(f"{path}: {error}") from error
        converter = markdown.Markdown(extensions=EXTENSIONS, output_format="xhtml")
        fragment = converter.convert(text)
        try:
            root = ElementTree.fromstring(f"<div>{html_entities(fragment)}</div>")
        except ElementTree.ParseError as error:
            raise DocsError(f"{path}: {error}") from error
        caption_tables(root)
        topic = None
        for element in root:
            classes = element.get("class", "").split()
            if element.tag in HEADINGS and "topic" in classes:
                if not element.get("id"):
                    raise DocsError(f"{path}: topic without a name: {plain(element)}")
                topic = Topic(element.get("id"), plain(element), HEADINGS[element.tag], number)
                self.topics.append(topic)
            if topic is None:
                raise DocsError(f"{path}: text before the first topic")
            unread = re.search(r"\{#[\w-]+", plain(element))
            if unread and element.tag != "pre":
                raise DocsError(f"{path}: {unread.group(0)}... is not read as a name; a sign such as * "
                                "breaks it")
            topic.body.append(element)
            self._note(topic, element, path)
        self.chapters.append(root)

    def _note(self, topic, element, path):
        """Collects the ids, keywords and controls of an element."""
        for node in element.iter():
            name = node.get("id")
            if name:
                if name in self.ids:
                    raise DocsError(f"{path}: the name {name} is there twice")
                self.ids[name] = topic.name
            anchor = "" if name == topic.name else name or ""
            for control in (node.attrib.pop("controls", "")).split():
                every = "*" if control.endswith("_") else ""
                topic.controls.append((control + every, anchor))
            for word in filter(None, map(str.strip, node.attrib.pop("keywords", "").split(";"))):
                topic.keywords.append((word, anchor))
            if name and (node.tag == "dt" or node.tag in HEADINGS):
                topic.keywords.append((plain(node), anchor))


def caption_tables(root):
    """A paragraph "Table: ..." before a table is its caption."""
    for element, following in zip(root, list(root)[1:]):
        if element.tag == "p" and following.tag == "table" and (element.text or "").startswith("Table: "):
            element.text = element.text.removeprefix("Table: ")
            element.set("class", "table-caption")


def plain(element):
    """The text of an element without its tags."""
    return re.sub(r"\s+", " ", "".join(element.itertext())).strip()


def html_entities(fragment):
    """XML knows five entities only; the others become characters."""
    import html
    kept = {"amp", "lt", "gt", "quot", "apos"}
    return re.sub(r"&(\w+);",
                  lambda m: m.group(0) if m.group(1) in kept else html.unescape(m.group(0)),
                  fragment)
