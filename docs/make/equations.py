# SPDX-License-Identifier: GPL-3.0-or-later
"""Numbers the equations of the manuals and lists what their symbols mean.

    $$W_p = C_1 + C_2$$ {#eq-panel-width}

is an equation with a number; [](#eq-panel-width) becomes "Eq. (2.1)", a link, and in another manual
"Eq. (2.1) of the Theory Manual". In a manual with "equations = yes" every displayed formula has a name.

    {{where}}
    {{where E: extent of a gob | ft, m; x: distance from the rib | ft, m}}

lists the symbols of the equations since the last such list. What they mean stands in the list of symbols
of the theory manual, or here. A symbol that nobody explains, or an equation whose symbols are not
listed before the next heading, stops the making.
"""

import configparser
import glob
import html
import os
import re

from faults import DocsError

NAMED = re.compile(r"^# |^\$\$(?P<tex>.+?)\$\$(?:[ \t]*\{#(?P<name>eq-[\w-]+)\})?$",
                   re.DOTALL | re.MULTILINE)
PARTS = re.compile(r"^\$\$(?P<tex>.+?)\$\$(?:[ \t]*\{#(?P<name>eq-[\w-]+)\})?$"
                   r"|^\{\{where(?P<own>[^{}]*)\}\}$|^(?P<heading>#+ [^\n]*)$", re.DOTALL | re.MULTILINE)
REFERENCE = re.compile(r"\[\]\(#(eq-[\w-]+)\)")
CODE = re.compile(r"(^```.*?^```$)", re.DOTALL | re.MULTILINE)
# What of a formula is no symbol: words, functions, spaces and signs.
NO_SYMBOL = re.compile(r"\\mathrm\{[^{}]*\}|\\(?!Gamma|Theta|beta|sigma)[A-Za-z]+|\\[,;: ]")
SYMBOL = re.compile(r"(?:SF|dR|\\(?:Gamma|Theta|beta|sigma)|[A-Za-z])(?:_(?:\{([^{}]*)\}|(\w)))?")
ROW = re.compile(r"^\| `(?P<plain>\w+)` \| \$(?P<tex>[^$]+)\$ \| [^|]* \| (?P<unit>[^|]*) \| "
                 r"(?P<meaning>[^|]*) \|$", re.MULTILINE)


def plain_symbol(tex):
    """W_b as Show Working writes it: Wb."""
    return re.sub(r"[\\{}_]", "", tex)


def symbols_of(tex):
    """The symbols of a formula as they stand in it, each once, in their order."""
    found = {}
    bare = NO_SYMBOL.sub(" ", tex)
    for match in SYMBOL.finditer(bare):
        found.setdefault(match.group(0).strip(), None)
    return list(found)


class Equations:
    def __init__(self, docs):
        self.numbers = {}   # name -> (manual, title of the manual, "2.1")
        self.strict = set()  # manuals in which every formula has a name
        self.list_of = {}    # plain symbol -> (tex, unit, meaning)
        for path in sorted(glob.glob(os.path.join(docs, "*", "manual.ini"))):
            self._number(os.path.dirname(path))
        with open(os.path.join(docs, "theory", "11-symbols.md"), encoding="utf-8") as file:
            for row in ROW.finditer(file.read()):
                self.list_of[row["plain"]] = (row["tex"], row["unit"].strip(), row["meaning"])

    def _number(self, folder):
        given = configparser.ConfigParser()
        given.read(os.path.join(folder, "manual.ini"), encoding="utf-8")
        settings = given["manual"]
        manual = os.path.basename(folder)
        if settings.getboolean("equations", fallback=False):
            self.strict.add(manual)
        chapter = equation = 0
        for path in sorted(glob.glob(os.path.join(folder, "*.md"))):
            with open(path, encoding="utf-8") as file:
                text = CODE.sub("", file.read())
            for match in NAMED.finditer(text):
                if match["tex"] is None:
                    chapter, equation = chapter + 1, 0
                elif match["name"]:
                    if match["name"] in self.numbers:
                        raise DocsError(f"{path}: the name {match['name']} is there twice")
                    equation += 1
                    self.numbers[match["name"]] = manual, settings["title"], f"{chapter}.{equation}"
                elif manual in self.strict:
                    raise DocsError(f"{path}: a formula has no name: {match['tex']}")

    def fill(self, text, path):
        """Text with references and lists of symbols; the formulas themselves stay."""
        manual = os.path.basename(os.path.dirname(path))
        waiting = []  # formulas whose symbols are not listed yet

        def part(match):
            if match["tex"] is not None:
                if match["name"]:
                    waiting.append(match["tex"])
                return match.group(0)
            if match["heading"]:
                if waiting and manual in self.strict:
                    raise DocsError(f"before {match['heading']}: the symbols of {waiting} are not listed")
                return match.group(0)
            listed = self._where(waiting, match["own"])
            waiting.clear()
            return listed
        pieces = CODE.split(text)
        for i in range(0, len(pieces), 2):
            pieces[i] = REFERENCE.sub(lambda m: self.reference(m.group(1), manual),
                                      PARTS.sub(part, pieces[i]))
        if waiting and manual in self.strict:
            raise DocsError(f"at the end: the symbols of {waiting} are not listed")
        return "".join(pieces)

    def number(self, name):
        if name not in self.numbers:
            raise DocsError(f"no equation is called {name}")
        return self.numbers[name][2]

    def reference(self, name, manual):
        number = self.number(name)
        home, title, _ = self.numbers[name]
        return f"[Eq. ({number})](#{name})" if home == manual else f"Eq. ({number}) of the {title}"

    def _where(self, formulas, own):
        local = {}
        for entry in filter(None, map(str.strip, own.split(";"))):
            symbol, _, rest = entry.partition(":")
            meaning, _, unit = rest.partition("|")
            local[symbol.strip()] = meaning.strip(), unit.strip() or "–"
        rows = {}
        for tex in formulas:
            for symbol in symbols_of(tex):
                found, entry = self._meaning(symbol, local)
                rows.setdefault(found, entry)
        for symbol, entry in local.items():  # an index, say
            if symbol not in map(plain_symbol, rows):
                rows[symbol] = entry
        cells = [f"<td>${tex}$</td><td>{html.escape(meaning)}{self._unit(unit)}</td>"
                 for tex, (meaning, unit) in rows.items()]
        half = (len(cells) + 1) // 2
        empty = "<td></td><td></td>"
        lines = [f"<tr>{left}{right}</tr>" for left, right in
                 zip(cells, cells[half:] + [empty] * (2 * half - len(cells)))]
        return ('<table class="where"><tbody>' + "".join(lines) + "</tbody></table>\n")

    @staticmethod
    def _unit(unit):
        return "" if unit in ("–", "") else f" ({unit})"

    def _meaning(self, symbol, local):
        """The symbol as the list has it: C_{n-1} is a C, K_i a K."""
        tries = [symbol, re.sub(r"_(?:\{[^{}]*\}|\w)$", "", symbol)]
        inner = re.fullmatch(r"(.*)_\{(\w+?)([1-9ik])\}", symbol)
        if inner:
            base, letters = inner.group(1), inner.group(2)
            tries.insert(1, f"{base}_{letters}" if len(letters) == 1 else f"{base}_{{{letters}}}")
        for one in tries:
            plain = plain_symbol(one)
            if plain in local:
                return one, local[plain]
            if plain in self.list_of:
                tex, unit, meaning = self.list_of[plain]
                return tex, (meaning, unit)
        raise DocsError(f"nobody explains the symbol {symbol}")
