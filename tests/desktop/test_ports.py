"""The machine's serial adapters as ports of a Wine prefix, on a made-up machine and an empty prefix."""

import pytest

from harness import desktop
import ports


class Prefix:
    """What the mapping needs of a prefix; registry files are only kept."""

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
