# SPDX-License-Identifier: MIT
"""profile and doctor."""

import json
import os
import pty
import struct

import pytest
from streams import Limit, Receiver, environment, port_of, read_some, run, start

Changes = ("static-navigation enabled=on", "elevation-mask tracking=10.0", "power-mask navigation=33",
           "dop-mask hdop=20", "dgps-source source=none", "dgps-mode mode=never", "mode-control altitude=-500",
           "trickle-power on-time=300", "low-power max-off-time=1234", "sbas prn=124",
           "advanced-power time-between-fixes=60")


def ctl(receiver, *arguments, **options):
    return run("-p", receiver.port, "-b", 57600, *arguments, **options)


def sirf_receiver(*options):
    return Receiver("--protocol", "sirf", "--rate", 57600, *options)


def test_everything_comes_back_after_a_factory_reset(tmp_path):
    file = tmp_path / "profile"
    with sirf_receiver() as receiver:
        for change in Changes:
            ctl(receiver, "set", *change.split(), check=0)
        ctl(receiver, "profile", "save", file, check=0)
        saved = ctl(receiver, "get", "all", check=0).stdout
        assert file.read_bytes().endswith(saved) and b"# firmware: GSW3.1.1-SW 1.00\n" in file.read_bytes()
        ctl(receiver, "profile", "diff", file, check=0)
        ctl(receiver, "restart", "factory", "-y", check=0)

        different = ctl(receiver, "profile", "diff", file, check=8)
        assert b"-power-mask navigation=28\n+power-mask navigation=33\n" in different.stdout
        assert different.stderr == b""
        done = json.loads(ctl(receiver, "--json", "profile", "apply", file, check=0).stdout)
        assert done["command"] == "profile apply" and done["failed"] == done["unchanged"] == []
        assert len(done["applied"]) == len(Changes)
        assert ctl(receiver, "get", "all", check=0).stdout == saved
        again = ctl(receiver, "-v", "profile", "apply", file, check=0)
        sent = [line for line in again.stderr.decode().splitlines() if line.startswith("> ")]
        assert len(sent) == len(Changes)
        assert all(line[14:16] in ("A8", "98") for line in sent), sent  # polls alone


def test_apply_goes_on_after_a_failure(tmp_path):
    file = tmp_path / "profile"
    file.write_text("sbas prn=120 mode=testing timeout=user\npower-mask tracking=30 navigation=30\n")
    with sirf_receiver("--refuse", "170") as receiver:
        done = json.loads(ctl(receiver, "--json", "profile", "apply", file, check=7).stdout)
        assert (done["applied"], done["failed"]) == (["power-mask"], ["sbas"])


@pytest.mark.parametrize("text", ["nix a=1\n", "sbas\n", "sbas prn=1\n", "", "# empty\n",
                                  "power-mask tracking=1\npower-mask tracking=2\n"])
def test_broken_profiles_are_refused(tmp_path, text):
    file = tmp_path / "profile"
    file.write_text(text)
    run("profile", "show", file, check=2)
    run("-p", "/nowhere", "profile", "apply", file, check=2)


def test_show_needs_no_receiver(tmp_path):
    file = tmp_path / "profile"
    file.write_text("# head\n\nelevation-mask  navigation=9 \n")
    assert run("profile", "show", file, check=0).stdout == b"elevation-mask navigation=9.0\n"
    assert json.loads(run("--json", "profile", "show", file, check=0).stdout)["settings"] == {
        "elevation-mask": {"navigation": 9.0}}
    run("profile", "show", tmp_path / "nix", check=2)


def test_save_to_standard_output_and_to_what_cannot_be_written():
    with sirf_receiver() as receiver:
        assert ctl(receiver, "profile", "save", "-", check=0).stdout.count(b"\n") == 4 + len(Changes)
        ctl(receiver, "--json", "profile", "save", "-", check=2)
        ctl(receiver, "profile", "save", "/nowhere/file", check=1)
        ctl(receiver, "profile", "save", "/dev/full", check=1)


def test_saving_leaves_other_files_and_permissions(tmp_path):
    file, link = tmp_path / "pp", tmp_path / "link"
    for name in ("pp.new", "pp.part"):
        (tmp_path / name).write_text("mine")
    file.touch()
    file.chmod(0o600)
    link.symlink_to("pp")
    with sirf_receiver() as receiver:
        ctl(receiver, "profile", "save", file, check=0)
        assert file.stat().st_size > 0 and file.stat().st_mode & 0o777 == 0o600
        ctl(receiver, "profile", "save", link, check=0)
    assert (tmp_path / "pp.new").read_text() == (tmp_path / "pp.part").read_text() == "mine"
    assert link.is_symlink() and file.stat().st_mode & 0o777 == 0o600
    assert file.read_text().startswith("# settings of a receiver")
    assert len(list(tmp_path.iterdir())) == 4


def test_values_that_cannot_be_sent_back_are_comments(tmp_path):
    file = tmp_path / "profile"
    with sirf_receiver("--fault", "alter=140:1:60") as receiver:
        ctl(receiver, "set", "power-mask", "tracking=30", check=8)
        done = ctl(receiver, "profile", "save", file, check=0)
        assert done.stderr == b"1 of 11 settings not saved: power-mask (cannot be sent back)\n"
        assert "\n# power-mask tracking=60 navigation=28: cannot be sent back\n" in file.read_text()
        assert len(run("profile", "show", file, check=0).stdout.splitlines()) == 10
        ctl(receiver, "profile", "apply", file, check=0)


def test_settings_without_an_answer_are_named(tmp_path):
    file = tmp_path / "profile"
    with sirf_receiver("--refuse", 170, "--fault", "mute=139", "--fault", "mute=137") as receiver:
        note = b"3 of 11 settings not saved: elevation-mask (no answer), dop-mask (no answer), sbas (refused)\n"
        assert ctl(receiver, "-t", 0.3, "profile", "save", file, check=0).stderr == note
        assert "\n# elevation-mask: no answer\n" in file.read_text() and "\n# sbas: refused\n" in file.read_text()
        assert ctl(receiver, "-t", 0.3, "-q", "profile", "save", "-", check=0).stderr == b""
        assert ctl(receiver, "-t", 0.3, "profile", "save", file, check=0).stderr == note
        # An older profile has what this one lacks.
        file.write_text("sbas prn=120\ndop-mask gdop=9\n")
        done = ctl(receiver, "-t", 0.3, "profile", "save", file, check=9)
        assert done.stderr.decode() == (f"toravanectl: dop-mask: no answer in time; {file} has values for that, and "
                                        "stays as it was\n")
        assert file.read_text() == "sbas prn=120\ndop-mask gdop=9\n"
    with sirf_receiver("--refuse", 170) as receiver:  # which it will never report
        assert ctl(receiver, "profile", "save", file, check=0).stderr == b"1 of 11 settings not saved: sbas (refused)\n"
        assert file.read_text().startswith("# settings of a receiver")


def test_apply_goes_on_without_its_output(tmp_path):
    file = tmp_path / "profile"
    file.write_text("static-navigation enabled=on\nelevation-mask tracking=10.0\npower-mask navigation=33\n")
    with sirf_receiver() as receiver:
        reading, writing = os.pipe()
        os.close(reading)
        process = start("-p", receiver.port, "-b", 57600, "profile", "apply", file, stdout=writing)
        os.close(writing)
        _, error = process.communicate(timeout=Limit)
        assert process.returncode == 1 and error.startswith(b"toravanectl: standard output: "), error
        ctl(receiver, "profile", "diff", file, check=0)


def test_encodings_of_windows(tmp_path):
    file, setting = tmp_path / "profile", "power-mask navigation=33\r\n"
    file.write_text(setting, encoding="utf-8-sig", newline="")
    assert run("profile", "show", file, check=0).stdout == b"power-mask navigation=33\n"
    for encoding in ("utf-16-le", "utf-16-be"):
        file.write_bytes(("\ufeff" + setting).encode(encoding))
        assert run("profile", "show", file, check=2).stderr.endswith(b"is UTF-16: save it as UTF-8\n")


@pytest.mark.parametrize("variables, coloured", [({}, True), ({"NO_COLOR": "1"}, False), ({"TERM": "dumb"}, False)])
def test_colours_on_a_terminal(variables, coloured):
    master, slave = pty.openpty()
    variables = environment() | {"NO_COLOR": "", "TERM": "xterm"} | variables
    process = start("-p", "/dev/nix", "doctor", stdout=slave, env=variables)
    os.close(slave)
    shown = read_some(master, lambda data: data.count(b"\n") == 10).decode()
    assert process.wait(Limit) == 1
    process.stderr.close()
    os.close(master)
    states = [line.split(": ")[1] for line in shown.splitlines()]
    assert states == (["\x1b[31mproblem\x1b[0m"] + ["\x1b[33munknown\x1b[0m"] * 9 if coloured else
                      ["problem"] + ["unknown"] * 9)


def test_doctor_names_what_is_wrong():
    def states(done):
        return {check["check"]: check["state"] for check in json.loads(done.stdout)["checks"]}
    with Receiver("--start", "hot", "--date", "now") as receiver:
        healthy = states(run("-p", receiver.port, "--json", "doctor", check=0))
        assert set(healthy.values()) == {"ok"}, healthy
    with Receiver("--date", "2008-06-21T10:00:00") as receiver:
        ill = states(run("-p", receiver.port, "--json", "doctor", check=1))
        assert ill["fix"] == "problem" and ill["rate"] == "ok"
    master, slave = pty.openpty()
    silent = json.loads(run("-p", port_of(os.ttyname(slave)), "-b", 9600, "--json", "doctor", check=1).stdout)
    assert silent["checks"][3]["message"].startswith("no byte at 9600 baud: ")
    os.close(master)
    os.close(slave)
    missing = states(run("-p", "/dev/nix", "--json", "doctor", check=1))
    assert missing["port"] == "problem" and missing["bytes"] == "unknown"


def test_doctor_names_a_program_that_takes_bytes_away():
    with Receiver() as receiver, open(receiver.terminal, "rb", buffering=0) as taken:
        own = f"{open('/proc/self/comm').read().strip()} ({os.getpid()})"
        done = json.loads(run("-p", receiver.port, "-b", 4800, "--json", "doctor", check=1).stdout)
        assert done["checks"][2] == {"check": "holder", "state": "problem", "message":
                                     f"open in {own}, too, which takes bytes away: end that program first"}
        taken.close()
    master, slave = pty.openpty()
    done = run("-p", port_of(os.ttyname(slave)), "-b", 4800, "probe", check=6)
    assert f"{own} has the port open, too".encode() in done.stderr
    os.close(master)
    os.close(slave)


def test_doctor_without_a_port_makes_a_report():
    done = run("--json", "doctor")  # the machine may have one
    assert done.returncode in (0, 1) and len(json.loads(done.stdout)["checks"]) == 10


def test_doctor_takes_a_fix_from_any_message(tmp_path):
    def frame(payload):
        length, checksum = struct.pack(">H", len(payload)), struct.pack(">H", sum(payload) & 0x7FFF)
        return b"\xA0\xA2" + length + payload + checksum + b"\xB0\xB3"
    navigation = bytes([2]) + bytes(18) + bytes([4]) + bytes(21)  # mode 4: three dimensions
    geodetic = bytes([41]) + bytes(90)  # fix type 0
    log = tmp_path / "log"
    log.write_bytes((frame(navigation) + frame(geodetic)) * 20)
    with Receiver("--play", log, "--repeat", "--rate", 9600) as receiver:
        checks = json.loads(run("-p", receiver.port, "-b", 9600, "--json", "doctor").stdout)["checks"]
    assert checks[7] == {"check": "fix", "state": "ok", "message": "the receiver has one"}
