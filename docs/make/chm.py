# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the project of a compiled help for Windows, and compiles it where chmcmd is at hand."""

import html
import os
import re
import shutil
import subprocess

PROJECT = """[OPTIONS]
Compatibility=1.1 or later
Compiled file={target}
Contents file=telvo.hhc
Index file=telvo.hhk
Default topic={first}
Default Window=main
Full-text search=Yes
Language=0x409 English (United States)
Title=TELVO Help

[WINDOWS]
main="TELVO Help","telvo.hhc","telvo.hhk","{first}","{first}",,,,,0x63520,250,0x387e,[80,60,1000,760],,,,,,,0

[FILES]
{files}
"""
HEAD = ('<!DOCTYPE HTML PUBLIC "-//IETF//DTD HTML//EN">\n<html><head>'
        '<meta name="GENERATOR" content="TELVO"></head><body>\n')


def entry(title, target):
    return (f'<li><object type="text/sitemap"><param name="Name" value="{html.escape(title)}">'
            f'<param name="Local" value="{html.escape(target)}"></object>\n')


def contents(topics):
    lines, depth = [HEAD], 0
    for _, topic in topics:
        while depth < topic.level:
            lines.append("<ul>\n")
            depth += 1
        while depth > topic.level:
            lines.append("</ul>\n")
            depth -= 1
        lines.append(entry(topic.title, topic.name + ".htm"))
    return "".join(lines) + "</ul>\n" * depth + "</body></html>\n"


def index(topics):
    from help import address
    rows = sorted({(word, address(topic, anchor)) for _, topic in topics
                   for word, anchor in topic.keywords}, key=lambda row: row[0].lower())
    return HEAD + "<ul>\n" + "".join(entry(*row) for row in rows) + "</ul>\n</body></html>\n"


def flatten(source, folder):
    """All files in one folder: readers of a CHM do not agree on folders within it."""
    for place, _, names in os.walk(source):
        for name in names:
            if name.endswith(".htm"):
                with open(os.path.join(place, name), encoding="utf-8") as file:
                    text = re.sub(r'src="(formulas|pictures)/', 'src="', file.read())
                with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                    file.write(text)
            elif not name.endswith(".txt"):
                shutil.copy(os.path.join(place, name), folder)


def write(pages, folder, name):
    """`pages` are a Help that was written; its pages are taken over."""
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    flatten(pages.folder, folder)
    files = sorted(os.listdir(folder))
    texts = {"telvo.hhp": PROJECT.format(target=name, first=pages.topics[0][1].name + ".htm",
                                         files="\n".join(files)),
             "telvo.hhc": contents(pages.topics), "telvo.hhk": index(pages.topics)}
    for file, text in texts.items():
        with open(os.path.join(folder, file), "w", encoding="cp1252", errors="xmlcharrefreplace",
                  newline="\r\n") as out:
            out.write(text)
    compiler = shutil.which("chmcmd")
    if compiler is None:
        print("docs: chmcmd is not installed; the project of the CHM is in", folder)
        return
    subprocess.run([compiler, "--no-html-scan", "telvo.hhp"], cwd=folder, check=True,
                   stdout=subprocess.DEVNULL)
