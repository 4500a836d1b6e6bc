#!/usr/bin/env -S /usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Writes the pictures of an icon file to a folder of icon themes, each as a PNG of its size.

Usage: icons.py FILE.ico FOLDER
"""
import pathlib
import sys

from PIL import Image

icon = Image.open(sys.argv[1]).ico
for size in icon.sizes():
    file = pathlib.Path(sys.argv[2], "%dx%d" % size, "apps", "toravane.png")
    file.parent.mkdir(parents=True, exist_ok=True)
    icon.getimage(size).save(file)
