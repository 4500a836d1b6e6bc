# SPDX-License-Identifier: MIT
"""The machine's serial adapters as ports of a Wine prefix, on a simulated machine with an empty prefix; and the
messages about a device that cannot be used."""

import errno
import grp
import os
import pty

import pytest

from harness import desktop
import ports


class Prefix:
    """The part of a prefix that the mapping needs; registry files are only stored."""

    map_port = desktop.Wine.map_port

    def __init__(self, folder):
        self.prefix = folder
        (folder / "dosdevices").mkdir(parents=True)
        self.ran = []

    def run(self, *command):
        self.ran.append(command)

    def mapped(self):
        return {link.name: link.resolve().name for link in (self.prefix / "dosdevices").iterdir()}


@pytest.fixture
def machine(tmp_path, monkeypatch):
    """A machine with a USB adapter that has a name, a Bluetooth port that has none, and a built-in port."""
    devices, classes = tmp_path / "dev", tmp_path / "class"
    devices.mkdir()
    for name in ("ttyUSB0", "rfcomm0", "ttyS0", "null"):
        (devices / name).touch()
    usb = tmp_path / "usb1" / "1-1"
    (usb / "1-1:1.0" / "ttyUSB0").mkdir(parents=True)
    (usb / "product").write_text('USB "Serial" Controller of a very long name\n')
    (classes / "ttyUSB0").mkdir(parents=True)
    (classes / "ttyUSB0" / "device").symlink_to(usb / "1-1:1.0" / "ttyUSB0")
    monkeypatch.setattr(ports.adapters, "__defaults__", (devices,))
    monkeypatch.setattr(ports.friendly_name, "__defaults__", (classes,))
    return devices


def test_adapters_get_free_ports(machine, tmp_path):
    prefix = Prefix(tmp_path / "prefix")
    prefix.map_port(1, machine / "ttyS0")
    prefix.map_port(2, machine / "gone")
    prefix.map_port(3, machine / "null")
    names = ports.map_adapters(prefix, {3: "Software receiver"})
    assert prefix.mapped() == {"com1": "ttyS0", "com2": "rfcomm0", "com3": "null", "com4": "ttyUSB0"}
    assert names == {2: "rfcomm0", 3: "Software receiver", 4: 'USB "Serial" Control (ttyUSB0)'}
    assert len(names[4]) <= ports.LongestName


def test_adapters_keep_their_ports(machine, tmp_path):
    prefix = Prefix(tmp_path / "prefix")
    first = ports.map_adapters(prefix, {})
    assert ports.map_adapters(prefix, {}) == first
    (machine / "ttyUSB0").unlink()
    assert ports.map_adapters(prefix, {}) == {1: "rfcomm0"}
    assert prefix.mapped() == {"com1": "rfcomm0"}


def test_more_adapters_than_ports(machine, tmp_path):
    for number in range(1, 20):
        (machine / f"ttyACM{number}").touch()
    prefix = Prefix(tmp_path / "prefix")
    assert sorted(ports.map_adapters(prefix, {})) == list(ports.Positions)


def test_registry_file():
    assert ports.driver_keys({4: 'a "b" \\c'}).split("\n") == [
        "REGEDIT4", "", r"[-HKEY_LOCAL_MACHINE\Drivers\BuiltIn]", "",
        r"[HKEY_LOCAL_MACHINE\Drivers\BuiltIn\Port4]", '"Prefix"="COM"', '"Index"=dword:00000004',
        r'"FriendlyName"="a \"b\" \\c"', ""]


def test_device_gets_a_place_once(machine, tmp_path):
    prefix = Prefix(tmp_path / "prefix")
    prefix.map_port(1, machine / "ttyS0")
    prefix.map_port(9, machine / "null")
    assert ports.place(prefix, machine / "ttyS0") == 1
    assert ports.place(prefix, machine / "ttyUSB0") == 8
    assert ports.place(prefix, machine / "ttyUSB0") == 8
    for number in ports.Positions:
        prefix.map_port(number, machine / "null")
    assert ports.place(prefix, machine / "ttyUSB0") == 9


# ---- Devices that cannot be used ----------------------------------------------------------------------

@pytest.fixture
def terminal():
    """A serial port for the system: the near end of a pseudo-terminal."""
    far, near = pty.openpty()
    device = os.ttyname(near)
    os.close(near)
    yield device
    os.close(far)


def group(monkeypatch, name, members):
    monkeypatch.setattr(os, "access", lambda *_: False)
    monkeypatch.setattr(ports.getpass, "getuser", lambda: "anna")
    monkeypatch.setattr(grp, "getgrgid", lambda number: grp.struct_group((name, "x", 54321, members)))


def test_no_device(tmp_path):
    assert ports.problem_with("/dev/ttyUSB99") == "/dev/ttyUSB99: no such device; is the receiver plugged in?"
    file = tmp_path / "file"
    file.touch()
    assert ports.problem_with(file) == f"{file}: not a serial port"
    assert ports.problem_with("/dev/null") == "/dev/null: not a serial port"


def test_permission(monkeypatch, terminal):
    os.chmod(terminal, 0o660)
    group(monkeypatch, "dialout", ["bert"])
    assert ports.problem_with(terminal) == (
        f"{terminal}: permission denied; it is for members of group dialout. Join it with\n"
        "    sudo adduser anna dialout\n"
        "then log out and in again")
    group(monkeypatch, "dialout", ["anna"])
    assert ports.problem_with(terminal) == (
        f"{terminal}: permission denied; you have joined group dialout, but this session does not know it yet: "
        "log out and in again")
    group(monkeypatch, "root", [])
    assert "only root may use it" in ports.problem_with(terminal)
    group(monkeypatch, "dialout", ["anna"])
    os.chmod(terminal, 0o600)
    assert "only root may use it" in ports.problem_with(terminal)


def test_holder_is_named(terminal):
    assert ports.use_problem(terminal) is None
    handle = os.open(terminal, os.O_RDWR | os.O_NOCTTY)
    assert ports.use_problem(terminal) == (
        f"{terminal}: in use by {ports.process_name('self')} (process {os.getpid()}); end that first")
    os.close(handle)
    assert ports.use_problem(terminal) is None


def test_holder_is_known_by_its_lock_file(terminal, tmp_path):
    lock = tmp_path / ("LCK.." + terminal.rsplit("/", 1)[1])
    lock.write_text(f"{os.getppid():10}\n")
    assert ports.holders(terminal, tmp_path) == [
        f"{ports.process_name(str(os.getppid()))} (process {os.getppid()})"]
    lock.write_text(" 99999999\n")  # left by a program that has crashed
    assert ports.holders(terminal, tmp_path) == []
    lock.write_text("")
    assert ports.holders(terminal, tmp_path) == []


def test_holder_that_cannot_be_seen(monkeypatch, terminal):
    def busy(*_):
        raise OSError(errno.EBUSY, "Device or resource busy")
    monkeypatch.setattr(os, "open", busy)
    assert ports.use_problem(terminal) == (
        f"{terminal}: in use by another program; this tells by which:\n    sudo fuser --verbose {terminal}")
