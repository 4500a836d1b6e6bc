#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""The command toravane-web: opens the installed page in a browser."""

import sys
from pathlib import Path

from serve_page import main

sys.exit(main("toravane-web", Path(__file__).resolve().parent / "page"))
