# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the pages of the help, the list of its contents and the texts for its search."""

import copy
import html
import os
import shutil
import xml.etree.ElementTree as ElementTree

from book import HEADINGS, DocsError, plain

WIDEST = 640  # logical pixels of a picture
WIDE_ROW = 80  # characters
MOST_SEE_ALSO = 6
PAGE = """<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"/><title>{title}</title>
<link rel="stylesheet" type="text/css" href="help.css"/></head>
<body>
{body}
</body></html>
"""


class Help:
    """The help of one or more manuals in a folder."""

    def __init__(self, manuals, folder, sources):
        self.manuals = manuals
        self.folder = folder
        self.sources = sources  # folder of formulas/ and pictures/
        self.topics = [(manual, topic) for manual in manuals for topic in manual.topics]
        self.ids = {}
        self.fitting = {}  # pictures: when changed, the fitting one, its size
        for manual in manuals:
            for name, topic in manual.ids.items():
                if name in self.ids:
                    raise DocsError(f"{manual.folder}: the name {name} is there twice")
                self.ids[name] = topic
        self.targets = {topic.name: {(node.get("href") or "").removeprefix("#")
                                     for element in topic.body for node in element.iter("a")}
                        for _, topic in self.topics}

    def write(self, stylesheet):
        shutil.rmtree(self.folder, ignore_errors=True)
        os.makedirs(self.folder)
        shutil.copy(stylesheet, os.path.join(self.folder, "help.css"))
        contents, texts = [], []
        for index, (_, topic) in enumerate(self.topics):
            elements = [self._element(element, topic) for element in topic.body]
            elements += self._children(index) + self._ways_on(index)
            body = "\n".join(ElementTree.tostring(e, encoding="unicode", method="html").strip()
                             for e in elements)
            self._store(topic.name + ".htm",
                        PAGE.format(title=html.escape(topic.title), body=body))
            contents.append(f"T\t{topic.level}\t{topic.name}.htm\t{topic.title}")
            for letter, rows in (("K", topic.keywords), ("C", topic.controls)):
                contents += [f"{letter}\t{text}\t{address(topic, anchor)}" for text, anchor in rows]
            words = " ".join(plain(e) for e in topic.body[1:])
            texts.append(f"{topic.name}.htm\t{words}")
        self._store("index.htm", PAGE.format(title="TELVO Help", body=self._entry_page()))
        self._store("contents.txt", "\n".join(contents) + "\n")
        self._store("search.txt", "\n".join(texts) + "\n")

    def _entry_page(self):
        """All pages, for a browser that opens the folder; the help window has them in its contents."""
        lines = ["<h1>TELVO Help</h1>"]
        for _, topic in self.topics:
            lines.append(f'<p style="margin: 2px 0 2px {(topic.level - 1) * 24}px">'
                         f'<a href="{topic.name}.htm">{html.escape(topic.title)}</a></p>')
        return "\n".join(lines)

    def _above(self, index):
        level = self.topics[index][1].level
        return next((topic for _, topic in reversed(self.topics[:index]) if topic.level < level), None)

    def _linked_from(self, topic):
        """Topics that lead to one, besides those that stand on its page anyway."""
        return [other for _, other in self.topics
                if other is not topic and other.name not in self.targets[topic.name]
                and topic.name in {self.ids.get(name) for name in self.targets[other.name]}]

    def _ways_on(self, index):
        """Links to kindred pages, and up, back and on."""
        _, topic = self.topics[index]
        above = self._above(index)
        box = ElementTree.Element("div", {"class": "ways"})
        ElementTree.SubElement(box, "hr")
        kindred = [other for other in self._linked_from(topic) if other is not above]
        if kindred:
            links(ElementTree.SubElement(box, "p"), "See also: ",
                  [(other.title, other) for other in kindred[:MOST_SEE_ALSO]], ", ")
        ways = [("Up: " + above.title, above)] if above else []
        ways += [(word + self.topics[at][1].title, self.topics[at][1])
                 for word, at in (("Previous: ", index - 1), ("Next: ", index + 1))
                 if 0 <= at < len(self.topics)]
        links(ElementTree.SubElement(box, "p"), "", ways, " | ")
        return [box]

    def _children(self, index):
        """Links to the pages below a page."""
        level = self.topics[index][1].level
        below = []
        for _, topic in self.topics[index + 1:]:
            if topic.level <= level:
                break
            if topic.level == level + 1:
                below.append(topic)
        if not below:
            return []
        box = ElementTree.Element("div", {"class": "below"})
        for topic in below:
            line = ElementTree.SubElement(box, "p")
            ElementTree.SubElement(line, "a", href=topic.name + ".htm").text = topic.title
        return [box]

    def _element(self, element, topic):
        element = copy.deepcopy(element)
        for parent in list(element.iter()):
            if parent.tag in HEADINGS:  # every page begins with a heading of the first order
                parent.tag = f"h{max(1, HEADINGS[parent.tag] - topic.level + 1)}"
            if parent.tag == "table":
                parent.attrib.update(border="1", cellspacing="0", cellpadding="4")
                if any(len(plain(row)) > WIDE_ROW for row in parent.iter("tr")):
                    parent.set("width", "97%")  # left to itself it sticks out a little
            if parent.tag == "a" and parent.get("href"):
                parent.set("href", self._target(parent.get("href"), topic))
            if parent.tag == "img":
                self._picture(parent, topic)
            name = parent.attrib.pop("id", None)
            if name:  # the oldest way to name a place is understood everywhere
                anchor = ElementTree.Element("a", name=name)
                anchor.tail, parent.text = parent.text, None
                parent.insert(0, anchor)
        return element

    def _target(self, link, topic):
        if link.startswith(("http://", "https://")):
            return link
        name = link.removeprefix("#")
        if name == link or name not in self.ids:
            raise DocsError(f"{topic.name}: link to {link}, which is nowhere")
        page = self.ids[name]
        return page + ".htm" + ("" if page == name else "#" + name)

    def _picture(self, image, topic):
        image.attrib.pop("style", None)
        if "inline" in image.get("class", ""):
            image.set("style", "vertical-align: middle")
        source = os.path.splitext(image.get("src"))[0] + ".png"
        image.set("src", source)
        path = os.path.join(self.sources, source)
        if not os.path.exists(path):
            raise DocsError(f"{topic.name}: there is no picture {source}")
        target = os.path.join(self.folder, source)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        fitting, width, height = self._fitting(path)
        if not os.path.exists(target):
            shutil.copy(fitting, target)
        image.set("width", str(round(width / 2)))
        image.set("height", str(round(height / 2)))

    def _fitting(self, path):
        """A picture that is not too wide, with its size. Narrowing one takes long, and the help is
        written twice: it is kept until the picture changes."""
        from PIL import Image
        changed = os.path.getmtime(path)
        if self.fitting.get(path, (0,))[0] != changed:
            with Image.open(path) as picture:
                size, narrow = picture.size, path
                if picture.width > 2 * WIDEST:
                    size = (2 * WIDEST, round(picture.height * 2 * WIDEST / picture.width))
                    narrow = os.path.splitext(path)[0] + ".narrow.png"
                    picture.convert("RGB").resize(size, Image.LANCZOS).save(narrow)
            self.fitting[path] = (changed, narrow, *size)
        return self.fitting[path][1:]

    def _store(self, name, text):
        with open(os.path.join(self.folder, name), "w", encoding="utf-8", newline="\n") as file:
            file.write(text)


def links(line, lead, wanted, between):
    """Puts links into a paragraph."""
    line.text = lead
    for number, (text, topic) in enumerate(wanted):
        link = ElementTree.SubElement(line, "a", href=topic.name + ".htm")
        link.text = text
        link.tail = between if number + 1 < len(wanted) else ""


def address(topic, anchor):
    return f"{topic.name}.htm" + (f"#{anchor}" if anchor else "")
