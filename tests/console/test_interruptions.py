# SPDX-License-Identifier: MIT
"""Signals, and devices that disappear, in the middle of each command."""

import fcntl
import json
import os
import pty
import signal
import time
from pathlib import Path

import pytest
import streams
from streams import Limit, Receiver, read_some, run, start, wait_until
from switches import WatchedReceiver

Rate = 57600


def read_errors_until(process, text):
    """The lines of standard error up to one that begins with a text."""
    lines = []
    while not lines or not lines[-1].startswith(text):
        line = process.stderr.readline().decode()
        assert line, lines  # it ended before
        lines.append(line)
    return lines


def finish(process):
    """The rest of the output, and the time until the end."""
    begin = time.monotonic()
    out, error = process.communicate(timeout=Limit)
    print(f"ended after {time.monotonic() - begin:.2f} s")
    return out, error.decode()


# ---- Signals within --through-sirf: the way back is gone first ----------------------------------------

WayThere = "> $PSRF100,0,"
Poll = "> A0 A2 00 02 A8 8B "


@pytest.mark.parametrize("rate, moment, number", [
    ("", WayThere, signal.SIGINT),
    ("", Poll, signal.SIGINT),
    ("=57600", WayThere, signal.SIGTERM),
    ("=57600", Poll, signal.SIGINT),
    ("", Poll, signal.SIGHUP),
])
def test_an_interruption_leaves_the_receiver_as_it_was(rate, moment, number):
    receiver = WatchedReceiver("--fault", "mute=139")  # it never answers, so the poll's wait is interrupted
    # A machine may run the tests with SIGHUP ignored.
    process = start("-v", "--json", "-t", 20, "-p", streams.port_of(receiver.port), "-b", 4800, "get", "elevation-mask",
                    "--through-sirf" + rate, preexec_fn=lambda: signal.signal(number, signal.SIG_DFL))
    read_errors_until(process, moment)
    process.send_signal(number)
    out, error = finish(process)
    assert process.returncode == 130, error
    assert json.loads(out)["error"]["kind"] == "interrupted"
    back = error[error.index("> A0 A2 00 18 81 "):]  # the change to NMEA
    assert "< $GPGGA" in back and "< $GPRMC" in back
    time.sleep(1.2)  # its next report
    assert receiver.state() == {"protocol": "nmea", "rate": 4800}


def test_a_second_interruption_does_not_cut_the_way_back():
    receiver = WatchedReceiver("--fault", "mute=139")
    process = start("-v", "-t", 20, "-p", streams.port_of(receiver.port), "-b", 4800, "get", "elevation-mask",
                    "--through-sirf")
    read_errors_until(process, Poll)
    process.send_signal(signal.SIGINT)
    read_errors_until(process, "> A0 A2 00 18 81 ")
    process.send_signal(signal.SIGINT)
    finish(process)
    assert process.returncode == 130
    time.sleep(1.2)
    assert receiver.state() == {"protocol": "nmea", "rate": 4800}


def test_an_interruption_before_the_way_there_sends_nothing():
    receiver = WatchedReceiver()
    process = start("-v", "-p", streams.port_of(receiver.port), "-b", 4800, "get", "elevation-mask", "--through-sirf")
    read_errors_until(process, "noting the sentences' rates")
    process.send_signal(signal.SIGINT)
    _, error = finish(process)
    assert process.returncode == 130
    assert "\n> " not in error
    time.sleep(1.2)
    assert receiver.state() == {"protocol": "nmea", "rate": 4800}


def test_an_interruption_while_nobody_reads_the_output():
    with Receiver("--rate", Rate) as receiver:
        process = start("log", "-", "-p", receiver.port, "-b", Rate)
        fcntl.fcntl(process.stdout, fcntl.F_SETPIPE_SZ, 4096)
        state = Path(f"/proc/{process.pid}/wchan")
        wait_until(lambda: "pipe" in state.read_text(), "a full pipe")
        process.send_signal(signal.SIGTERM)
        assert process.wait(Limit) == 130
        process.stdout.close()
        process.stderr.close()


def test_an_interruption_of_a_question():
    master, slave = pty.openpty()
    process = start("-p", "/nowhere", "--json", "restart", "factory", stdin=slave, stderr=slave)
    os.close(slave)
    read_some(master, lambda data: data.endswith(b"(y/n)? "))
    process.send_signal(signal.SIGTERM)
    assert json.loads(process.stdout.readline())["error"]["kind"] == "interrupted"
    assert process.wait(Limit) == 130
    process.stdout.close()
    os.close(master)


def test_a_program_that_nohup_started_goes_on(tmp_path):
    log = tmp_path / "log"
    with Receiver("--rate", Rate) as receiver:
        process = start("log", log, "-p", receiver.port, "-b", Rate, "--for", 3,
                        preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        wait_until(lambda: log.exists() and log.stat().st_size > 0, "bytes in the log")
        process.send_signal(signal.SIGHUP)
        finish(process)
    assert process.returncode == 0


# ---- Devices that vanish ------------------------------------------------------------------------------

# The command, the receiver's options, and the line of standard error after which the device disappears.
Vanishing = {
    "get": (["get", "elevation-mask"], ["--protocol", "sirf", "--fault", "mute=139"], Poll),
    "set": (["set", "elevation-mask", "tracking=10"], ["--protocol", "sirf", "--fault", "mute=139"], Poll),
    "set, unverified": (["set", "--no-verify", "elevation-mask", "tracking=10", "navigation=10"],
                        ["--protocol", "sirf", "--fault", "mute=139"], "> A0 A2 00 05 8B "),
    "version": (["version"], ["--protocol", "sirf", "--fault", "mute=132"], "> A0 A2 00 02 84 "),
    "switch": (["switch", "sirf", 38400], ["--fault", "freeze-after-switch=100"], WayThere),
    "switch, rate alone": (["switch", "nmea", 38400], ["--fault", "freeze-after-switch=100"], "> $PSRF100,1,"),
    "rates": (["rates", "GGA=20"], [], "> $PSRF103,0,0,20,1"),
    "restart": (["restart", "cold", "--wait"], [], "> $PSRF101"),
    "send": (["send", "nmea", "PSRF105,1"], [], "> $PSRF105,1"),
    "monitor": (["monitor", "--plain"], [], "< $GPGGA"),
    "monitor as JSON": (["monitor", "--json"], [], "< $GPGGA"),
    "date": (["date"], [], "< $GPGGA"),
}


@pytest.mark.parametrize("name", Vanishing)
def test_a_device_that_vanishes_is_named(name):
    command, options, moment = Vanishing[name]
    receiver = Receiver("--rate", Rate, *options)
    process = start("-v", "-t", 20, "-p", receiver.port, "-b", Rate, *command)
    read_errors_until(process, moment)
    receiver.process.kill()
    _, error = finish(process)
    receiver.process.wait(Limit)
    receiver.process.stdout.close()
    assert process.returncode == 1, error
    assert error.splitlines()[-1] == f"toravanectl: {receiver.port}: the device has vanished"


@pytest.mark.parametrize("command", [["log", "-"], ["relay", "--tcp", "0"]])
def test_a_device_that_vanishes_during_a_stream(command, tmp_path):
    if command[0] == "relay":
        import socket
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            command = ["relay", "--tcp", probe.getsockname()[1]]
    receiver = Receiver("--rate", Rate)
    process = start("-v", "-p", receiver.port, "-b", Rate, *command)
    read_errors_until(process, "< $GPGGA")
    receiver.process.kill()
    _, error = finish(process)
    receiver.process.wait(Limit)
    receiver.process.stdout.close()
    assert process.returncode == 1 and "the device has vanished" in error


def test_a_device_that_vanishes_during_a_profile(tmp_path):
    file = tmp_path / "profile"
    file.write_text("elevation-mask tracking=10.0 navigation=10.0\npower-mask tracking=30 navigation=30\n")
    receiver = Receiver("--protocol", "sirf", "--rate", Rate, "--fault", "mute=139")
    process = start("-v", "--json", "-t", 20, "-p", receiver.port, "-b", Rate, "profile", "apply", file)
    read_errors_until(process, Poll)
    receiver.process.kill()
    out, error = finish(process)
    receiver.process.wait(Limit)
    receiver.process.stdout.close()
    answer = json.loads(out)
    assert (process.returncode, answer["exit"], answer["error"]["kind"]) == (1, 1, "failed")
    assert "the device has vanished" in answer["error"]["message"]


# ---- Options before and after the command -------------------------------------------------------------

def test_common_options_stand_anywhere(tmp_path):
    words = ["set", "power-mask", "tracking=28", "navigation=30"]
    expected = run(*words, "--dry-run", check=0).stdout
    assert expected.count(b"> ") == 3
    for place in range(len(words) + 1):
        assert run(*words[:place], "-n", *words[place:], check=0).stdout == expected
        assert run(*words[:place], "-n", "--through-sirf=57600", *words[place:], check=0).stdout == expected
        assert run("-n", *words[:place], "--through-sirf", *words[place:], check=0).stdout == expected
    assert run("-n", "-p", "/nowhere", "-b", 9600, "-t", 1.5, "-y", "-q", *words, check=0).stdout == expected
    (tmp_path / "--through-sirf").write_text("power-mask tracking=28\n")
    assert run("profile", "show", "--", "--through-sirf", cwd=tmp_path, check=0).stdout == b"power-mask tracking=28\n"
    run("--through-sirf", "-n", "probe", check=2)  # a command that has no such option
    run("--through-sirf", "-p", "/nowhere", "monitor", check=2)


@pytest.mark.parametrize("words, missing", [
    (["rates", "--for", 5, "GGA=1"], "--for"),
    (["rates", "--no-verify"], "--no-verify"),
    (["restart", "hot", "--for", 5], "--wait"),
    (["switch", "sirf", "--rates", "GGA=1"], "--rates"),
    (["monitor", "--reference", "2026-11-21"], "--correct-dates"),
    (["relay", "--tcp", 2947, "--reference", "2026-11-21"], "--correct-dates"),
    (["convert", "/dev/null", "--to", "csv", "--reference", "2026-11-21"], "--correct-dates"),
])
def test_an_option_without_effect_is_refused(words, missing):
    done = run("-p", "/nowhere", *words, check=2)
    assert missing in done.stderr.decode() and not done.stdout


def test_through_sirf_before_the_command():
    with Receiver() as receiver:
        done = run("--through-sirf", "-p", receiver.port, "-b", 4800, "get", "power-mask", check=0)
        assert done.stdout == b"power-mask tracking=28 navigation=28\n"
