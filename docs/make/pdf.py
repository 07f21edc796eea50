# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes a manual as one PDF: title page, contents with page numbers, chapters."""

import copy
import html
import os
import xml.etree.ElementTree as ElementTree

from book import HEADINGS, plain
from faults import DocsError

PAGE = """<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"/><title>{title}</title>
<meta name="author" content="TELVO"/></head>
<body class="{kind}">
<section class="title"><p class="program">TELVO</p><p class="name">{name}</p>
<p class="subtitle">{subtitle}</p><p class="version">Version {version}</p></section>
<nav><h1 class="contents">Contents</h1>
{contents}
</nav>
{chapters}
</body></html>
"""


def write(manual, others, target, version, stylesheet, sources):
    """`others` are the ids that live in other manuals; links to them become plain text."""
    from weasyprint import CSS, HTML
    page = document(manual, others, version, sources)
    HTML(string=page, base_url=sources + os.sep).write_pdf(target, stylesheets=[CSS(stylesheet)])


def document(manual, others, version, sources):
    """The whole manual as one page of HTML."""
    contents, chapters = [], []
    counts = [0, 0]
    for number, chapter in enumerate(manual.chapters):
        section = ElementTree.Element("section", {"class": "chapter"})
        section.extend(copy.deepcopy(element) for element in chapter)
        for order, element in enumerate(list(section.iter())):
            level = HEADINGS.get(element.tag)
            if level:
                element.set("id", element.get("id") or f"section-{number}-{order}")
                numbered(element, level, counts)
                if level <= 2 or "topic" in element.get("class", ""):
                    contents.append(contents_line(element, level))
            elif element.tag == "a" and element.get("href", "").startswith("#"):
                relink(element, manual, others)
            elif element.tag == "img":
                find_picture(element, manual, sources)
        figures(section)
        keep_together(section)
        chapters.append(ElementTree.tostring(section, encoding="unicode", method="html"))
    settings = manual.settings
    return PAGE.format(kind=manual.name, title=html.escape("TELVO: " + settings["title"]),
                       name=html.escape(settings["title"]),
                       subtitle=html.escape(settings.get("subtitle", "")),
                       version=version, contents="\n".join(contents),
                       chapters="\n".join(chapters))


def numbered(element, level, counts):
    """Chapters and sections are numbered: 2, 2.1."""
    if level == 1:
        counts[:] = [counts[0] + 1, 0]
        number = f"{counts[0]}"
    elif level == 2:
        counts[1] += 1
        number = f"{counts[0]}.{counts[1]}"
    element.set("data-title", plain(element))
    if level > 2:
        return
    mark = ElementTree.Element("span", {"class": "number"})
    mark.text, mark.tail, element.text = number, element.text, None
    element.insert(0, mark)


def contents_line(element, level):
    number = element.find("span[@class='number']")
    mark = "" if number is None else f'<span class="number">{number.text}</span>'
    return (f'<p class="level{level}"><a href="#{element.get("id")}">'
            f'{mark}{html.escape(element.get("data-title"))}</a></p>')


def relink(element, manual, others):
    name = element.get("href")[1:]
    if name in manual.ids:
        return
    if name not in others:
        raise DocsError(f"{manual.folder}: link to #{name}, which is nowhere")
    del element.attrib["href"]


def find_picture(element, manual, sources):
    """Drawings are printed as curves where there are some."""
    base = os.path.splitext(element.get("src"))[0]
    for extension in (".svg", ".png"):
        if os.path.exists(os.path.join(sources, base + extension)):
            element.set("src", base + extension)
            if extension == ".png":
                window_size(element, os.path.join(sources, base + extension))
            return
    raise DocsError(f"{manual.folder}: there is no picture {base}")


def window_size(element, path):
    """Windows are printed at one scale, so that their letters are alike: 0.56 points to a pixel of a
    screen, and pictures have two pixels for one."""
    from PIL import Image
    with Image.open(path) as picture:
        element.set("style", f"width:{picture.width / 2 * 0.56:.0f}pt")


def keep_together(section):
    """A sentence that leads to a table, a listing or a picture stays on its page."""
    for element, following in zip(section, list(section)[1:]):
        leads = plain(element).endswith(":") or "check" in following.get("class", "")
        if element.tag == "p" and leads:
            element.set("class", "leading")


def figures(section):
    """A paragraph that holds a picture alone gets the picture's text below it."""
    for paragraph in section.iter("p"):
        if len(paragraph) == 1 and paragraph[0].tag == "img" and \
                not (paragraph.text or "").strip() and not (paragraph[0].tail or "").strip():
            image = paragraph[0]
            if "formula" in image.get("class", ""):
                paragraph.set("class", "formula")
                continue
            paragraph.tag = "figure"
            ElementTree.SubElement(paragraph, "figcaption").text = image.get("alt")
