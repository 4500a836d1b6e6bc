# SPDX-License-Identifier: MIT
"""Which sources each picture of the guide shows, and the record of the last set that was made.

A picture is out of date as soon as the code or the template that it shows is another one. Dates do not survive a clone;
therefore the record keeps a checksum of those sources beside the size of each picture. Comments and blanks do not
count."""

import hashlib
import re
import struct
from pathlib import Path

Root = Path(__file__).resolve().parents[1]
Images = Root / "docs" / "images"
Record = Images / "record.txt"

# What every dialog has, and what each picture shows besides.
Dialog = ("ui/dialog_support.cpp", "resources/toravane.ico", "tools/desktop/screenshots.py")
Nmea = (*Dialog, "resources/nmea_dialogs.rc")
Sirf = (*Dialog, "resources/sirf_dialogs.rc")
Page = ("app/main_window.cpp", "resources/menus.rc", "ui/page_lines.cpp", "ui/fix_lines.cpp",
        "tools/desktop/screenshots.py")
Sources = {
    "about": (*Dialog, "resources/about.rc"),
    "box": (*Sirf, "ui/error_boxes.cpp"),
    "chart": (*Page, "graph/chart.cpp", "graph/background.cpp", "graph/channels.cpp", "graph/recorder.cpp"),
    "communication": (*Dialog, "resources/communication.rc"),
    "graph-options": (*Dialog, "resources/graph_options.rc", "graph/graph_options_dialog.cpp", "graph/channels.cpp"),
    "sbas": (*Sirf, "resources/sbas.rc", "sky/sky_plot.cpp"),
    "text-page": (*Page, "nmea/page_lines.cpp"),
    "text-page-sirf": (*Page, "sirf/page_lines.cpp"),
    **dict.fromkeys(("set-serial-port", "navigation-initialization", "nmea-set-message-rate", "development-data",
                     "select-datum"), Nmea),
    **dict.fromkeys(("advanced-power-management", "initialize-data-source", "switch-to-nmea-protocol", "dgps-source",
                     "mode-control", "dop-mask", "dgps-mode", "elevation-mask", "power-mask", "static-navigation",
                     "trickle-power", "sirf-set-message-rate", "low-power", "poll-software-version"), Sirf),
}


def significant(file):
    """A source without its comments and blanks; anything else as it is."""
    data = (Root / file).read_bytes()
    if file.endswith((".cpp", ".rc")):
        data = re.sub(rb'("(?:\\.|[^"\\\n])*")|//[^\n]*|\s+', lambda match: match[1] or b"", data)
    return data


def checksum(name):
    """Of all that a picture shows."""
    digest = hashlib.sha256()
    for file in Sources[name]:
        digest.update(file.encode() + b"\0" + significant(file) + b"\0")
    return digest.hexdigest()[:16]


def size(name):
    """Width and height, as the picture itself has them."""
    header = (Images / f"{name}.png").read_bytes()[:24]
    width, height = struct.unpack(">II", header[16:24])
    return f"{width}x{height}"


def write_record():
    """After a whole set has been made."""
    Record.write_text("".join(f"{name} {size(name)} {checksum(name)}\n" for name in sorted(Sources)))


def pages():
    """Everything that shows pictures."""
    return "".join(page.read_text() for page in [Root / "README.md", *sorted((Root / "docs").glob("*.md"))])


def faults(text):
    """What is wrong with the pictures of a text, a line for each."""
    shown = set(re.findall(r"images/([\w-]+)\.png", text))
    kept = {file.stem for file in Images.glob("*.png")}
    record = dict(line.split(" ", 1) for line in Record.read_text().splitlines()) if Record.exists() else {}
    for name in sorted(shown | kept | set(Sources)):
        if name not in kept:
            yield f"docs/images/{name}.png: missing"
        elif name not in Sources:
            yield f"docs/images/{name}.png: tools/guide_pictures.py does not know what it shows"
        elif name not in shown:
            yield f"docs/images/{name}.png: shown nowhere"
        elif record.get(name, "") != f"{size(name)} {checksum(name)}":
            yield f"docs/images/{name}.png: out of date, run tools/screenshots.sh"
