#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Renews the pictures of README from those of the manuals: readme.py MADE-PICTURES docs/pictures

Pictures of windows have two pixels to one of a screen; README has one.
"""

import os
import sys

from PIL import Image

PICTURES = {"telvo.png": "frmMain.png", "parameters.png": "frmTELVOParm-1.png"}


def main():
    made, kept = sys.argv[1:3]
    for name, source in PICTURES.items():
        with Image.open(os.path.join(made, source)) as picture:
            half = picture.convert("RGB").resize((picture.width // 2, picture.height // 2), Image.LANCZOS)
            half.save(os.path.join(kept, name), optimize=True)


if __name__ == "__main__":
    main()
