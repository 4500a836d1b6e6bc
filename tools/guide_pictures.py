# SPDX-License-Identifier: MIT
"""The sources of each picture in the guide, and the record of the last complete set.

A picture is out of date when the code or the template that it shows has changed. File dates are not kept in a clone;
therefore the record contains a checksum of those sources, and the size of each picture. Comments and blanks do not
count."""

import hashlib
import re
import struct
from pathlib import Path

Root = Path(__file__).resolve().parents[1]
Images = Root / "docs" / "images"
Record = Images / "record.txt"

# The sources of every dialog, and the further sources of each picture.
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
    """A source without its comments and blanks; any other file unchanged."""
    data = (Root / file).read_bytes()
    if file.endswith((".cpp", ".rc")):
        data = re.sub(rb'("(?:\\.|[^"\\\n])*")|//[^\n]*|\s+', lambda match: match[1] or b"", data)
    return data


def checksum(name):
    """Checksum of all sources of a picture."""
    digest = hashlib.sha256()
    for file in Sources[name]:
        digest.update(file.encode() + b"\0" + significant(file) + b"\0")
    return digest.hexdigest()[:16]


def size(name):
    """Width and height, from the picture itself."""
    header = (Images / f"{name}.png").read_bytes()[:24]
    width, height = struct.unpack(">II", header[16:24])
    return f"{width}x{height}"


def write_record():
    """Writes the record after a whole set has been made."""
    Record.write_text("".join(f"{name} {size(name)} {checksum(name)}\n" for name in sorted(Sources)))


def pages():
    """All pages with pictures."""
    return "".join(page.read_text() for page in [Root / "README.md", *sorted((Root / "docs").glob("*.md"))])


def faults(text):
    """The faults of a text's pictures, one line each."""
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
