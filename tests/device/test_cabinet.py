# SPDX-License-Identifier: MIT
"""The install packages, unpacked by cabextract, and their control file, by the description of the format.

Needs the presets device and native to be built.
"""

import pathlib
import re
import struct
import subprocess

import pytest

Root = pathlib.Path(__file__).resolve().parents[2]
Build = Root / "build/device"
Folders = {"pocketpc": "\\Program Files", "smartphone": "\\Storage\\Program Files"}


def texts(data, offset, count):
    """Numbered texts: number, length with the terminator, the text."""
    found = {}
    for _ in range(count):
        number, length = struct.unpack_from("<HH", data, offset)
        text = data[offset + 4:offset + 4 + length]
        assert text.endswith(b"\0") and b"\0" not in text[:-1]
        found[number] = text[:-1].decode("ascii")
        offset += 4 + length
    return found, offset


def numbers(data, offset):
    """A list of numbers after its size in bytes, ended by 0."""
    size, = struct.unpack_from("<H", data, offset)
    found = struct.unpack_from(f"<{size // 2}H", data, offset + 2)
    assert found[-1] == 0 and 0 not in found[:-1]
    return list(found[:-1]), offset + 2 + size


class Control:
    def __init__(self, data):
        assert data[:4] == b"MSCE"
        _, length, _, one = struct.unpack_from("<4I", data, 4)
        assert length == len(data) and one == 1
        self.processor, *versions = struct.unpack_from("<7I", data, 20)
        self.oldest, self.newest, self.builds = versions[0:2], versions[2:4], versions[4:6]
        counts = struct.unpack_from("<6H", data, 48)
        offsets = struct.unpack_from("<6I", data, 60)
        name, name_length, maker, maker_length, excluded, excluded_length, *_ = struct.unpack_from("<8H", data, 84)
        assert name == 100 and maker == name + name_length and excluded == maker + maker_length == offsets[0]
        self.name = data[name:maker - 1].decode("ascii")
        self.maker = data[maker:excluded - 1].decode("ascii")
        self.excluded_length = excluded_length
        self.registry = counts[3:5]

        self.texts, end = texts(data, offsets[0], counts[0])
        assert end == offsets[1]
        self.folders = {}
        for _ in range(counts[1]):
            number, = struct.unpack_from("<H", data, end)
            levels, end = numbers(data, end + 2)
            self.folders[number] = "\\".join(self.texts[level] for level in levels)
        assert end == offsets[2]
        self.files = {}
        for _ in range(counts[2]):
            number, folder, again, flags, length = struct.unpack_from("<HHHIH", data, end)
            assert number == again and flags == 0
            self.files[number] = (self.folders[folder], data[end + 12:end + 11 + length].decode("ascii"))
            assert data[end + 11 + length] == 0
            end += 12 + length
        assert end == offsets[3] == offsets[4] == offsets[5]
        self.links = []
        for _ in range(counts[5]):
            _, _, base, target, kind = struct.unpack_from("<5H", data, end)
            levels, end = numbers(data, end + 10)
            assert kind == 1  # to a file
            self.links.append((base, self.files[target], "\\".join(self.texts[level] for level in levels)))
        assert end == len(data)


@pytest.fixture(params=sorted(Folders))
def package(request, tmp_path):
    path = Build / f"toravane-{request.param}.cab"
    subprocess.run(["cabextract", "-q", "-t", path], check=True)
    done = subprocess.run(["cabextract", "-q", "-d", tmp_path, path], check=True, capture_output=True, text=True)
    assert done.stderr == ""
    return request.param, path, tmp_path


def test_the_control_file_says_what_is_installed_and_where(package):
    _, _, folder = package
    control = Control((folder / "Toravane.000").read_bytes())
    assert (control.name, control.maker) == ("Toravane", "Quenmark")
    assert control.processor == 2577  # ARM
    assert (control.oldest, control.newest, control.builds) == ([3, 0], [5, 99], [0, 0])
    assert control.excluded_length == 0 and control.registry == (0, 0)
    assert control.files == {
        1: ("%CE1%\\Toravane", "toravane.exe"),
        2: ("%CE11%", "Static Navigation On.lnk"),
        3: ("%CE11%", "Static Navigation Off.lnk"),
    }
    assert control.links == [(11, ("%CE1%\\Toravane", "toravane.exe"), "Toravane.lnk")]


def test_the_files_are_unpacked_as_they_are(package):
    device, _, folder = package
    assert sorted(path.name for path in folder.iterdir()) == [
        "StaticNa.002", "StaticNa.003", "Toravane.000", "toravane.001"]
    assert (folder / "toravane.001").read_bytes() == (Build / "toravane.exe").read_bytes()
    for number, action in (("002", "StaticNavigationOn"), ("003", "StaticNavigationOff")):
        link = (folder / f"StaticNa.{number}").read_text("ascii")
        command = f'"{Folders[device]}\\Toravane\\toravane.exe" {action}'
        assert link == f"{len(command)}#{command}"
        assert f'L"{action}"' in (Root / "app/command_line.cpp").read_text()


def test_the_members_stand_in_the_order_of_the_installer(package):
    _, path, _ = package
    listing = subprocess.run(["cabextract", "-l", path], check=True, capture_output=True, text=True).stdout
    assert re.findall(r"\.(\d{3})$", listing, re.MULTILINE) == ["000", "003", "002", "001"]


def test_file_knows_the_format(package):
    _, path, _ = package
    kind = subprocess.run(["file", "--brief", path], check=True, capture_output=True, text=True).stdout
    assert "WinCE install" in kind
