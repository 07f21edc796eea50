# SPDX-License-Identifier: GPL-3.0-or-later
"""Arithmetic as it is written down in the verification manual, evaluated here and not by TELVO."""

import ast
import html
import math
import re
import struct

from faults import DocsError

# Names of the hand calculation besides the symbols that it carries over.
FUNCTIONS = {
    "sin": math.sin, "cos": math.cos, "tan": math.tan, "sqrt": math.sqrt, "ln": math.log,
    "min": min, "max": max,
    "deg": 0.017453292519943278,  # the factor by which TELVO is to turn degrees into radians
    "single": lambda value: struct.unpack("f", struct.pack("f", value))[0],
    "half_even": lambda value, digits=0: round(value * 10**digits) / 10**digits,
    "cut": lambda value, digits=0: math.trunc(value * 10**digits) / 10**digits,
}
SIGNS = [(r"\s*\*\*\s*(\d)", r"<sup>\1</sup>"), (r"\*", "×"), (r"-", "−"), (r"\bsqrt\(", "√("),
         (r"\bhalf_even\(", "round("), (r"\b(\d+(?:\.\d+)?) × deg\b", r"\1°"),
         (r"^\{(.*)\}$", r"\1"), (r"&lt;=", "≤"), (r"&gt;=", "≥"), (r"==", "=")]
LITERALS = {"True": "always", "False": "never", "()": "none"}


def evaluate(expression, symbols):
    try:
        return eval(compile(ast.parse(expression, mode="eval"), expression, "eval"),  # noqa: S307
                    {"__builtins__": {}}, {**FUNCTIONS, **symbols})
    except (ArithmeticError, NameError, SyntaxError, TypeError, ValueError) as error:
        raise DocsError(f"cannot work out {expression}: {error}") from error


def written(expression):
    """The expression as a reader writes it, as HTML."""
    if expression in LITERALS:
        return LITERALS[expression]
    text = html.escape(expression)
    for pattern, sign in SIGNS:
        text = re.sub(pattern, sign, text)
    return text


def shown(value):
    """A value with ten digits at most."""
    if isinstance(value, bool):
        return "yes" if value else "no"
    if isinstance(value, (set, tuple, list)):
        return ", ".join(map(str, value)) or "none"
    value = float(value)
    if value == 0 or 1e-4 <= abs(value) < 1e7:
        return f"{value:.10g}"
    mantissa, exponent = f"{value:.9e}".split("e")
    return f"{mantissa.rstrip('0').rstrip('.')} × 10<sup>{int(exponent)}</sup>".replace("-", "−")
