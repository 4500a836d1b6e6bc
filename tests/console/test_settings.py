# SPDX-License-Identifier: MIT
"""get, set, settings, version and the frames of --dry-run."""

import json

import pytest
from streams import Receiver, run

# From the description of the protocol, typed by hand.
Frames = {
    "elevation-mask tracking=5 navigation=7.5": "A0 A2 00 05 8B 00 32 00 4B 01 08 B0 B3",
    "elevation-mask tracking=-5.0 navigation=90": "A0 A2 00 05 8B FF CE 03 84 02 DF B0 B3",
    "power-mask tracking=28 navigation=30": "A0 A2 00 03 8C 1C 1E 00 C6 B0 B3",
    "static-navigation enabled=yes": "A0 A2 00 02 8F 01 00 90 B0 B3",
    "dop-mask selection=GDOP gdop=20 pdop=10 hdop=8": "A0 A2 00 05 89 03 14 0A 08 00 B2 B0 B3",
    "dgps-mode mode=never timeout=255": "A0 A2 00 03 8A 02 FF 01 8B B0 B3",
    "sbas prn=120 mode=integrity timeout=user": "A0 A2 00 06 AA 78 01 09 00 00 01 2C B0 B3",
    "sbas prn=auto mode=testing timeout=default": "A0 A2 00 06 AA 00 00 00 00 00 00 AA B0 B3",
}
Polls = {"elevation-mask": "A8 8B", "power-mask": "A8 8C", "static-navigation": "A8 8F", "dop-mask": "A8 89",
         "dgps-mode": "A8 8A", "sbas": "A8 AA"}

Factory = {
    "static-navigation": {"enabled": False},
    "elevation-mask": {"tracking": 5.0, "navigation": 7.5},
    "power-mask": {"tracking": 28, "navigation": 28},
}

# A change of one key of each setting, and the line that reports it.
Changes = [
    ("static-navigation", "enabled=on", "static-navigation enabled: off -> on"),
    ("elevation-mask", "navigation=-12.5", "elevation-mask navigation: 7.5 -> -12.5"),
    ("power-mask", "tracking=31", "power-mask tracking: 28 -> 31"),
    ("dop-mask", "selection=disabled", "dop-mask selection: auto -> disabled"),
    ("dgps-source", "source=external", "dgps-source source: sbas -> external"),
    ("dgps-mode", "timeout=60", "dgps-mode timeout: 30 -> 60"),
    ("mode-control", "altitude=-1000", "mode-control altitude: 0 -> -1000"),
    ("trickle-power", "duty-cycle=12.5", "trickle-power duty-cycle: 100.0 -> 12.5"),
    ("low-power", "adaptive=on", "low-power adaptive: off -> on"),
    ("sbas", "prn=138", "sbas prn: auto -> 138"),
    ("advanced-power", "duty-cycle=35", "advanced-power duty-cycle: 20 -> 35"),
]

Refused = [
    "elevation-mask tracking=12,5", "elevation-mask tracking=5x", "elevation-mask tracking=5.05",
    "elevation-mask tracking=-20.1", "elevation-mask tracking=90.1", "elevation-mask tracking=",
    "elevation-mask tracking", "elevation-mask nix=5", "nix tracking=5", "power-mask tracking=5.0",
    "power-mask tracking=51", "power-mask tracking=-1", "dop-mask selection=none", "dop-mask gdop=0",
    "dgps-source frequency=283499", "dgps-source frequency=325001", "dgps-source bit-rate=26",
    "sbas prn=119", "sbas prn=139", "advanced-power duty-cycle=7", "advanced-power duty-cycle=0",
    "static-navigation enabled=maybe", "static-navigation enabled=on enabled=off",
]


@pytest.fixture(scope="module")
def sirf():
    with Receiver("--protocol", "sirf", "--rate", 57600) as receiver:
        yield lambda *arguments, **options: run("-p", receiver.port, "-b", 57600, *arguments, **options)


@pytest.mark.parametrize("words", Frames)
def test_dry_run_prints_the_frames(words):
    lines = run("set", "--dry-run", *words.split(), check=0).stdout.decode().splitlines()
    poll = Polls[words.split()[0]]
    assert lines[1] == "> " + Frames[words]
    assert lines[0] == lines[2] and lines[0].startswith(f"> A0 A2 00 02 {poll} ")


@pytest.mark.parametrize("words", Refused)
def test_what_is_no_value_is_refused_before_anything_is_opened(words):
    done = run("-p", "/nowhere", "set", *words.split(), check=2)
    assert done.stdout == b"" and done.stderr.startswith(b"toravanectl: ")


def test_dry_run_needs_every_key_and_no_json():
    run("set", "-n", "elevation-mask", "tracking=5", check=2)
    run("set", "-n", "--json", "elevation-mask", "tracking=5", "navigation=5", check=2)
    run("-p", "/nowhere", "set", "--no-verify", "elevation-mask", "tracking=5", check=2)


def test_get_by_name_and_all(sirf):
    assert sirf("get", "elevation-mask", check=0).stdout == b"elevation-mask tracking=5.0 navigation=7.5\n"
    everything = json.loads(sirf("get", "all", "--json", check=0).stdout)
    assert everything["command"] == "get" and everything["exit"] == 0
    for name, keys in Factory.items():
        assert everything["settings"][name] == keys
    assert list(everything["settings"]) == [name for name, _, _ in Changes]


def test_set_takes_what_get_prints(sirf):
    for line in sirf("get", "all", check=0).stdout.decode().splitlines():
        done = json.loads(sirf("set", "--json", *line.split(), check=0).stdout)
        assert done["changed"] == [] and done["before"] == done["after"], line


def test_version(sirf):
    assert json.loads(sirf("version", "--json", check=0).stdout)["version"] == "GSW3.1.1-SW 1.00"


@pytest.mark.parametrize("name, change, line", Changes)
def test_a_change_is_seen(name, change, line):
    with Receiver("--protocol", "sirf", "--rate", 57600) as receiver:
        def ctl(*arguments):
            return run("-p", receiver.port, "-b", 57600, *arguments, check=0)
        assert ctl("set", name, change).stdout.decode() == line + "\n"
        again = ctl("set", name, change, "-v")
        assert again.stdout == b""
        assert sum(text.startswith("> ") for text in again.stderr.decode().splitlines()) == 1  # the poll alone
        assert change in ctl("get", name).stdout.decode()


def test_refusals_and_silence():
    with Receiver("--protocol", "sirf", "--rate", 57600, "--refuse", "170", "--fault", "mute=140") as receiver:
        def ctl(*arguments, **options):
            return run("-p", receiver.port, "-b", 57600, "-t", 1, *arguments, **options)
        ctl("get", "sbas", check=7)
        done = ctl("get", "--json", "power-mask", "dop-mask", check=9)
        assert json.loads(done.stdout)["settings"]["dop-mask"]["gdop"] == 8
        assert json.loads(done.stdout)["error"]["kind"] == "no-answer"
        text = ctl("get", "all", check=0).stdout.decode()
        assert "# sbas: refused\n" in text and "# power-mask: no answer\n" in text
        ctl("set", "sbas", "prn=120", check=7)
        ctl("set", "sbas", "prn=120", "mode=testing", "timeout=user", check=7)
        ctl("set", "power-mask", "tracking=30", check=9)
        unseen = json.loads(ctl("--json", "set", "power-mask", "tracking=30", "navigation=30", check=9).stdout)
        assert unseen["after"] is None


def test_a_setting_that_comes_back_changed():
    with Receiver("--protocol", "sirf", "--rate", 57600, "--fault", "alter=140:1:20") as receiver:
        done = run("-p", receiver.port, "-b", 57600, "--json", "set", "power-mask", "tracking=30", check=8)
        result = json.loads(done.stdout)
        assert result["error"]["kind"] == "differs"
        assert result["after"] == {"tracking": 20, "navigation": 28}
        assert result["changed"] == ["tracking"]


def test_commands_are_wrapped_for_a_receiver_that_wraps():
    with Receiver("--protocol", "sirf", "--rate", 57600, "--wrap") as receiver:
        done = run("-p", receiver.port, "-b", 57600, "-v", "get", "static-navigation", check=0)
        assert b"> A0 A2 00 03 EE A8 8F 02 25 B0 B3" in done.stderr


def test_a_receiver_that_speaks_nmea():
    with Receiver() as receiver:
        done = run("-p", receiver.port, "--json", "get", "sbas", check=11)
        error = json.loads(done.stdout)["error"]
        assert error["kind"] == "protocol"
        assert "switch sirf" in error["message"] and "switch nmea 4800" in error["message"]


def test_the_table():
    table = json.loads(run("settings", "--json", check=0).stdout)["settings"]
    mask = table["elevation-mask"]["tracking"]
    assert (mask["type"], mask["low"], mask["high"], mask["unit"]) == ("decimal", -20.0, 90.0, "degrees")
    assert table["dop-mask"]["selection"]["choices"] == ["auto", "pdop", "hdop", "gdop", "disabled"]
    assert table["dgps-source"]["bit-rate"]["choices"] == [0, 25, 50, 100, 200]
    assert table["advanced-power"]["duty-cycle"]["step"] == 5
    assert "-20.0 to 90.0" in run("settings", check=0).stdout.decode()
