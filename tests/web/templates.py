# SPDX-License-Identifier: MIT
"""The program's dialog templates and menu from the resource compiler, for comparison with the page."""

import struct
import subprocess
import tempfile
from pathlib import Path

from resource_ids import Id

Root = Path(__file__).resolve().parents[2]
Classes = {0x80: "Button", 0x81: "Edit", 0x82: "Static", 0x83: "ListBox", 0x84: "ScrollBar", 0x85: "ComboBox"}
Menu, Dialog = 4, 5


class Reader:
    def __init__(self, data, at=0):
        self.data, self.at = data, at

    def take(self, layout):
        values = struct.unpack_from("<" + layout, self.data, self.at)
        self.at += struct.calcsize("<" + layout)
        return values

    def align(self):
        self.at = (self.at + 3) & ~3

    def name(self):
        """A number, or a text that ends in 0."""
        if self.data[self.at:self.at + 2] == b"\xff\xff":
            return self.take("HH")[1]
        end = self.at
        while self.data[end:end + 2] != b"\0\0":
            end += 2
        text = self.data[self.at:end].decode("utf-16-le")
        self.at = end + 2
        return text


def compiled():
    """All resources, as {(type, number): bytes}."""
    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder) / "program.res"
        subprocess.run(["x86_64-w64-mingw32-windres", "-O", "res", "-I", Root / "resources", "-o", file,
                        Root / "resources" / "toravane.rc"], check=True)
        data = file.read_bytes()
    found, reader = {}, Reader(data)
    while reader.at < len(data):
        start = reader.at
        size, header = reader.take("II")
        kind, number = reader.name(), reader.name()
        found[kind, number] = data[start + header:start + header + size]
        reader.at = (start + header + size + 3) & ~3
    return found


def dialog(data):
    """Caption, size in dialog units, and the controls: class, number, caption, style, place in dialog units."""
    reader = Reader(data)
    style, _, count, _, _, width, height = reader.take("IIHhhhh")
    reader.name(), reader.name()
    caption = reader.name()
    if style & 0x40:  # a font
        reader.take("H"), reader.name()
    controls = []
    for _ in range(count):
        reader.align()
        style, _, x, y, w, h, number = reader.take("IIhhhhH")
        kind, text = reader.name(), reader.name()
        extra, = reader.take("H")
        reader.at += extra
        controls.append({"class": Classes.get(kind, kind), "id": number, "text": text, "style": style,
                         "place": (x, y, w, h)})
    return {"caption": caption, "size": (width, height), "controls": controls}


def menu(data):
    """[(depth, command, caption)]; command 0 opens the deeper ones that follow."""
    reader = Reader(data)
    reader.take("HH")
    items = []

    def level(depth):
        while True:
            flags, = reader.take("H")
            command = 0 if flags & 0x10 else reader.take("H")[0]
            items.append((depth, command, reader.name()))
            if flags & 0x10:
                level(depth + 1)
            if flags & 0x80:
                return
    level(0)
    return items


def dialogs():
    """{number: template} of the layout for touch screens and desktops."""
    return {number: dialog(data) for (kind, number), data in compiled().items()
            if kind == Dialog and number < Id.MENU_MAIN + Id.KEYPAD_LAYOUT}


def main_menu():
    return menu(compiled()[Menu, Id.MENU_MAIN])
