# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes a manual as PDF: title page, contents with page numbers, chapters, index.

Pages are set once, for the width of A4 and the height of Letter, and written on both papers: a page
has the same number on either.
"""

import copy
import functools
import html
import os
import xml.etree.ElementTree as ElementTree

import references
from book import HEADINGS, plain
from faults import DocsError
from figures import date_of_making, time_of_making

PAGE = """<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"/><title>{title}</title>
<meta name="author" content="TELVO"/><meta name="description" content="{subtitle}"/>
<meta name="keywords" content="{keywords}"/>
<meta name="dcterms.created" content="{time}"/><meta name="dcterms.modified" content="{time}"/>
<style>@page {{ @bottom-center {{ content: "Version {version}, {date}" }} }}
@page title {{ @bottom-center {{ content: none }} }}</style></head>
<body class="{kind}">
{cover}
{contents}
{chapters}
{index}
</body></html>
"""
COVER = """<section class="title"><p class="program">TELVO</p><p class="name">{name}</p>
<p class="subtitle">{subtitle}</p><p class="version">Version {version}, {date}</p>
<div class="legal">{legal}</div></section>"""
LICENSE = ("TELVO and this document are free: you may use, copy and change them under the GNU General "
           "Public License, version 3 or (at your option) any later version.")
KEYWORDS = "coal, pillar design, retreat mining"
POINTS = 72 / 25.4
PAPERS = (("", 210, 297), ("-Letter", 215.9, 279.4))  # behind the name, mm
SET_FOR = (210, 279.4)
FEW_FIGURES = 5
LONG_LISTING = 20  # lines; a longer one may go over the end of a page
SHORT_TABLE = 9    # rows; a shorter one stays on a page


class Edition:
    """What is alike in all documents of one making."""

    def __init__(self, version, sources, stylesheet, titles, disclaimer):
        self.version = version
        self.sources = sources        # folder of formulas/ and pictures/
        self.stylesheet = stylesheet
        self.titles = titles          # id -> title of the manual that it lies in
        self.disclaimer = disclaimer  # paragraphs


def file_names(name):
    """The documents that are made of a manual, one for each paper."""
    base, extension = os.path.splitext(name)
    return [base + more + extension for more, _, _ in PAPERS]


def write(manual, edition, folder):
    from weasyprint import CSS, HTML
    page = document(manual, edition)
    pages = HTML(string=page, base_url=edition.sources + os.sep).render(
        stylesheets=[CSS(edition.stylesheet)])
    if manual.settings.getboolean("sheet", False) and len(pages.pages) != 1:
        raise DocsError(f"{manual.folder}: has {len(pages.pages)} pages instead of one")
    for name, (_, width, height) in zip(file_names(manual.settings["file"]), PAPERS):
        pages.write_pdf(os.path.join(folder, name),
                        finisher=functools.partial(put_on_paper, width=width, height=height))


def put_on_paper(_, pdf, width, height):
    """Pages get the size of the paper, what is on them stays in the middle; viewers open the
    bookmarks."""
    aside, above = (width - SET_FOR[0]) / 2 * POINTS, (height - SET_FOR[1]) / 2 * POINTS
    for item in pdf.objects:
        if isinstance(item, dict) and item.get("Type") == "/Page":
            left, bottom, right, top = item["MediaBox"]
            item["MediaBox"][:] = [left - aside, bottom - above, right + aside, top + above]
    pdf.catalog["PageMode"] = "/UseOutlines"


def document(manual, edition):
    """The whole manual as one page of HTML."""
    settings = manual.settings
    sheet = settings.getboolean("sheet", False)
    short = sheet or settings.getboolean("short", False)
    places = references.Places(manual, edition.titles)
    contents, captions, chapters = [], [], []
    for number, chapter in enumerate(manual.chapters):
        section = ElementTree.Element("section", {"class": "chapter"})
        section.extend(copy.deepcopy(element) for element in chapter)
        for order, element in enumerate(list(section.iter())):
            level = HEADINGS.get(element.tag)
            if level:
                element.set("id", element.get("id") or f"section-{number}-{order}")
                numbered(element, level, "" if sheet else places.number_of(element.get("id")))
                if level <= 2 or "topic" in element.get("class", ""):
                    contents.append(contents_line(element, level))
            elif element.tag == "img":
                find_picture(element, manual, edition.sources)
        name_tables(section)
        places.mark_links(section)
        figures(section)
        captions += caption_lines(section, number + 1)
        keep_together(section)
        chapters.append(ElementTree.tostring(section, encoding="unicode", method="html"))
    lists = [] if short else [navigation("Contents", contents)]
    if len(captions) > FEW_FIGURES and not short:
        lists.append(navigation("Figures and tables", captions))
    index = references.index(manual) if settings.getboolean("index", False) else ""
    legal = "".join(f"<p>{html.escape(text)}</p>" for text in [LICENSE, *edition.disclaimer])
    about = {"name": html.escape(settings["title"]),
             "subtitle": html.escape(settings.get("subtitle", "")),
             "version": edition.version, "date": date_of_making()}
    kinds = [manual.name] + ["short"] * short + ["sheet"] * sheet
    return PAGE.format(kind=" ".join(kinds), title="TELVO: " + about["name"],
                       keywords=html.escape(settings.get("keywords", KEYWORDS)),
                       time=time_of_making(), cover="" if sheet else COVER.format(legal=legal, **about),
                       contents="\n".join(lists), chapters="\n".join(chapters), index=index, **about)


def navigation(title, lines):
    name = title.lower().replace(" ", "-")
    return (f'<nav class="{name}"><h1 class="contents" data-title="{title}" data-bookmark="{title}">'
            f'{title}</h1>\n' + "\n".join(lines) + "\n</nav>")


def numbered(element, level, number):
    """Chapters and sections are numbered: 2, 2.1."""
    title = plain(element)
    element.set("data-title", title)
    element.set("data-bookmark", title if level > 2 else f"{number}  {title}".strip())
    if level > 2 or not number:
        return
    mark = ElementTree.Element("span", {"class": "number"})
    mark.text, mark.tail, element.text = number, element.text, None
    element.insert(0, mark)


def contents_line(element, level):
    number = element.find("span[@class='number']")
    mark = "" if number is None else f'<span class="number">{number.text}</span>'
    return line_of_list(f"level{level}", element.get("id"),
                        mark + html.escape(element.get("data-title")))


def line_of_list(kind, target, text):
    return f'<p class="{kind}"><a href="#{target}">{text}</a></p>'


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
    """A sentence that leads to a table, a listing or a picture stays on its page, and so do the first
    and the last rows of a table."""
    for element, following in zip(section, list(section)[1:]):
        leads = plain(element).endswith(":") or "check" in following.get("class", "")
        if element.tag == "p" and leads:
            element.set("class", "leading")
    for listing in section.iter("pre"):
        if plain_lines(listing) > LONG_LISTING:
            listing.set("class", "long")
    for table in section.iter("table"):
        if len(list(table.iter("tr"))) < SHORT_TABLE and "check" not in table.get("class", ""):
            table.set("class", (table.get("class", "") + " short").strip())


def name_tables(section):
    """Two kinds of tables have a look of their own, known by their heads."""
    for table in section.iter("table"):
        heads = [plain(head) for head in table.iter("th")]
        for first, name in (("Line", "specimen"), ("Symbol", "inputs")):
            if heads[:1] == [first] and (name == "specimen" or heads[-1] == "Measured"):
                table.set("class", name)


def plain_lines(element):
    return "".join(element.itertext()).strip("\n").count("\n") + 1


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


def caption_lines(section, chapter):
    """Numbers the figures and the tables that have a caption: Figure 4.1. Returned: their list."""
    lines, counts = [], {"Figure": 0, "Table": 0}
    for element in section.iter():
        kind = "Figure" if element.tag == "figcaption" else \
            "Table" if element.get("class") == "table-caption" else None
        if not kind:
            continue
        counts[kind] += 1
        number = f"{kind} {chapter}.{counts[kind]}"
        name = number.lower().replace(" ", "-").replace(".", "-")
        element.set("id", element.get("id") or name)
        title = plain(element)
        mark = ElementTree.Element("b")
        mark.text, mark.tail, element.text = number, "  " + (element.text or ""), None
        element.insert(0, mark)
        short = title if len(title) < 80 else title.split(". ")[0].rstrip(".")
        lines.append(line_of_list("level2", element.get("id"),
                                  f'<span class="number">{number}</span>{html.escape(short)}'))
    return lines
