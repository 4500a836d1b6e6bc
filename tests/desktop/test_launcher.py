# SPDX-License-Identifier: MIT
"""The launcher of the package: the settings that it stores before the start, and the actions without a user."""

import importlib.util
import os
import shutil
import subprocess
import sys
from argparse import Namespace

import pytest

from harness import Output, desktop, wait_for

Off = "StaticNavigationOff"


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    """The launcher with its modules, the program and a version beside it, as the package installs it."""
    place = tmp_path_factory.mktemp("package")
    for file in ("packaging/launcher.py", "tools/desktop/ports.py", "tools/desktop/prefix.py"):
        shutil.copy(desktop.Root / file, place)
    (place / "toravane.exe").symlink_to(desktop.Program)
    (place / "version").write_text("2.20\n")
    return place


@pytest.fixture(scope="module")
def launcher():
    place = importlib.util.spec_from_file_location("launcher", desktop.Root / "packaging" / "launcher.py")
    module = importlib.util.module_from_spec(place)
    place.loader.exec_module(module)
    return module


class Prefix:
    """The part of a prefix that the launcher needs."""

    def __init__(self, folder, **stored):
        self.prefix = folder
        self.numbers = stored
        (folder / "dosdevices").mkdir()

    def stored(self):
        return self.numbers


def chosen(launcher, prefix, number=None, rate=None, action=None):
    return launcher.choose_settings(prefix, Namespace(rate=rate, action=[action] if action else []), number)


def test_named_port_keeps_the_stored_rate(launcher, tmp_path):
    prefix = Prefix(tmp_path, CommPortIdx=5, BaudrateIdx=6)
    assert chosen(launcher, prefix, 3) == {"CommPortIdx": 3}
    assert chosen(launcher, prefix, 3, 9600) == {"CommPortIdx": 3, "BaudrateIdx": 3}
    assert chosen(launcher, prefix) == {}


def test_first_start_has_the_usual_rate(launcher, tmp_path):
    prefix = Prefix(tmp_path)
    assert chosen(launcher, prefix) == {}
    assert chosen(launcher, prefix, 3) == {"CommPortIdx": 3, "BaudrateIdx": 2}
    prefix.numbers["BaudrateIdx"] = 0xFFFFFFFF
    assert chosen(launcher, prefix, 3) == {"CommPortIdx": 3, "BaudrateIdx": 2}


def test_action_learns_the_rates_that_it_lacks(launcher, tmp_path):
    prefix = Prefix(tmp_path)
    assert chosen(launcher, prefix, 3, 57600, Off) == {
        "CommPortIdx": 3, "BaudrateIdx": 6, "SirfBaudrateIdx": 6, "NmeaBaudrateIdx": 6}
    prefix.numbers.update(SirfBaudrateIdx=7, NmeaBaudrateIdx=8, BaudrateIdx=3)
    assert chosen(launcher, prefix, 3, None, Off) == {"CommPortIdx": 3, "NmeaBaudrateIdx": 3}


def test_action_without_a_port_that_can_be_used_ends(launcher, tmp_path, capsys):
    prefix = Prefix(tmp_path, BaudrateIdx=2)
    for number, device, sentence in ((None, None, "which port has the receiver? Name it once: "),
                                     (3, None, "COM3, the port that worked last, is not there; "),
                                     (3, "/dev/null", "/dev/null: not a serial port")):
        if number:
            prefix.numbers["CommPortIdx"] = number
        if device:
            (tmp_path / "dosdevices" / f"com{number}").symlink_to(device)
        with pytest.raises(SystemExit) as end:
            chosen(launcher, prefix, action=Off)
        assert end.value.code == 1
        assert capsys.readouterr().err.startswith("toravane: " + sentence)


def test_action_on_a_new_installation_without_a_display(folder, tmp_path):
    """One command, on a machine on which the program never ran, switches the receiver there and back."""
    record = Output / "sent-by-the-launcher"
    record.unlink(missing_ok=True)
    receiver, terminal = desktop.start_software_receiver("--rate", 4800, "--record", record)
    environment = {**{name: value for name, value in os.environ.items() if name != "DISPLAY"},
                   "XDG_DATA_HOME": str(tmp_path), "HOME": str(tmp_path)}
    try:
        done = subprocess.run([sys.executable, "-B", folder / "launcher.py", Off, terminal, "4800"], env=environment,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=180, check=False)
        assert (done.returncode, done.stderr) == (0, "")
        sent = wait_for("the receiver has recorded", record.read_bytes)
        assert b"$PSRF100,0,4800,8,1,0*" in sent
        assert b"\xA0\xA2\x00\x02\x8F\x00" in sent
        assert b"\xA0\xA2\x00\x18\x81" in sent
    finally:
        desktop.stop(receiver)
