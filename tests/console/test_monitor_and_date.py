# SPDX-License-Identifier: MIT
"""monitor and date: reports as text, page and JSON; dates that are 1024 weeks too early."""

import json
import os
import pty
import re
import signal
import socket

import pytest
from streams import Receiver, end, lines_of_json, read_some, run, start

Old = ["--date", "2026-11-21T10:00:00", "--pivot-week", 1290, "--start", "hot", "--rate", 57600]


@pytest.fixture(scope="module")
def old():
    """A receiver whose firmware reports dates that are 1024 weeks too early."""
    with Receiver(*Old) as receiver:
        yield ["-p", receiver.port, "-b", 57600]


@pytest.fixture(scope="module")
def sirf():
    with Receiver("--protocol", "sirf", "--start", "hot", "--rate", 57600) as receiver:
        yield ["-p", receiver.port, "-b", 57600]


def test_a_line_for_each_fix(old):
    lines = run("monitor", *old, "--for", 4, check=0).stdout.decode().splitlines()
    assert len(lines) >= 2
    for line in lines[1:]:
        assert re.fullmatch(r"2007-04-07T10:\d\d:\d\dZ 47\.37\d+ 8\.54\d+ \d+(\.\d)? m, [\d.]+ m/s, [\d.]+ deg, 3D, "
                            r"\d+ satellites, HDOP [\d.]+", line), line


def test_json_lines_of_nmea(old):
    lines = lines_of_json(run("monitor", *old, "--for", 7, "--json", check=0).stdout)
    assert {line["class"] for line in lines} == {"TPV", "SKY"}
    fixes = [line for line in lines if line["class"] == "TPV"]
    assert {"time", "mode", "lat", "lon", "altMSL", "altHAE", "geoidSep", "speed", "track", "hdop"} <= set(fixes[-1])
    assert "rawTime" not in fixes[-1]
    sky = [line for line in lines if line["class"] == "SKY"][-1]["satellites"]
    assert len(sky) > 3 and set(sky[0]) == {"PRN", "ss", "el", "az"}


def test_json_lines_of_sirf_binary(sirf):
    fixes = [line for line in lines_of_json(run("monitor", *sirf, "--for", 5, "--json", check=0).stdout)
             if line["class"] == "TPV"]
    assert fixes[-1]["time"].startswith("2008-06-21T10:")
    assert {"eph", "epv", "altMSL", "altHAE"} <= set(fixes[-1])


def test_dates_are_corrected_only_on_request(old):
    arguments = [*old, "--for", 3, "--json", "--correct-dates", "--reference", "2026-12-31"]
    fix = [line for line in lines_of_json(run("monitor", *arguments, check=0).stdout) if line["class"] == "TPV"][-1]
    assert fix["time"][:10] == "2026-11-21" and fix["rawTime"][:10] == "2007-04-07"
    assert fix["time"][10:] == fix["rawTime"][10:]


def test_corrections_are_reported_with_their_reason(old):
    def notes(*arguments):
        return run("monitor", *old, "--for", 3, "--correct-dates", *arguments, check=0).stderr.decode()
    assert notes("--reference", "2026-12-31") == (
        "dates: plus 1024 weeks it lies within 26 weeks of the reference, 2026-12-31\n")
    assert notes("--reference", "2020-01-01", "--json") == (
        "dates: no number of 1024 weeks brings the date within 26 weeks of the reference, 2020-01-01\n")
    assert notes("--reference", "2026-12-31", "-q") == ""


def test_the_relay_reports_its_corrections(old):
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        port = probe.getsockname()[1]
    relay = start("relay", *old, "--tcp", port, "--correct-dates", "--reference", "2026-12-31")
    try:
        notes = read_some(relay.stderr.fileno(), lambda data: data.count(b"\n") == 2).decode().splitlines()
    finally:
        end(relay, signal.SIGINT)
    assert notes[0].startswith("relaying ")
    assert notes[1] == "dates: plus 1024 weeks it lies within 26 weeks of the reference, 2026-12-31"


def test_the_page_has_the_reason(old):
    master, slave = pty.openpty()
    process = start("monitor", *old, "--correct-dates", "--reference", "2026-12-31", stdout=slave, stderr=slave)
    os.close(slave)
    reason = rb" Corrected: 2026-11-21T10:\d\d:\d\dZ, plus 1024 weeks it lies within 26 weeks of the reference, "
    page = read_some(master, lambda data: re.search(reason, data))
    assert end(process, signal.SIGINT)[0] == 130
    assert b"dates:" not in page + read_some_of_ended(master).encode()


def test_the_search_does_not_count():
    """At 57600 baud the receiver is found after three other rates, in more than these three seconds."""
    with Receiver("--rate", 57600, "--start", "hot") as receiver:
        assert run("monitor", "-p", receiver.port, "--for", 3, check=0).stdout.count(b"\n") >= 2


def test_the_page_is_renewed_in_place(sirf):
    master, slave = pty.openpty()
    process = start("monitor", *sirf, stdout=slave)
    os.close(slave)
    page = read_some(master, lambda data: data.rfind(b"\x1b[H") > data.find(b"Fix: 3D Kalman Filter") > 0 and
                     data.count(b"\x1b[H") >= 4).decode()
    status, _, _ = end(process, signal.SIGINT)
    rest = read_some_of_ended(master)
    assert status == 130
    assert page.startswith("\x1b[?25l")
    assert rest.endswith("\x1b[?7h\x1b[?25h")
    last = page.split("\x1b[H")[-2]
    assert re.search(r"UTC: 2008-06-21 10:", last) and "Fix: 3D Kalman Filter" in last


def read_some_of_ended(master):
    text = b""
    try:
        while part := os.read(master, 65536):
            text += part
    except OSError:  # the other side is closed
        pass
    os.close(master)
    return text.decode()


def test_plain_lines_on_a_terminal_too(sirf):
    master, slave = pty.openpty()
    process = start("monitor", *sirf, "--plain", "--for", 4, stdout=slave)
    os.close(slave)
    shown = read_some(master, lambda data: data.count(b"\n") >= 2)
    assert process.wait(30) == 0
    process.stderr.close()
    os.close(master)
    assert b"\x1b" not in shown


def test_a_full_or_closed_output_ends_it(sirf):
    with open("/dev/full", "wb") as full:
        process = start("monitor", *sirf, "--plain", stdout=full)
        assert process.wait(30) == 1
        process.stderr.close()
    process = start("monitor", *sirf, "--json")
    process.stdout.readline()
    process.stdout.close()
    assert process.wait(30) == 1
    process.stderr.close()


def test_date_is_corrected_with_the_reason(old):
    done = run("date", *old, "--reference", "2026-12-01", check=0)
    assert done.stdout.decode() == ("2007-04-07 -> 2026-11-21 (plus 1024 weeks it lies within 26 weeks of the "
                                    "reference, 2026-12-01)\n")
    assert json.loads(run("date", *old, "--reference", "2026-12-01", "--json", check=0).stdout) == {
        "command": "date", "exit": 0, "raw": "2007-04-07", "corrected": "2026-11-21", "epochs": 1,
        "reference": "2026-12-01",
        "reason": "plus 1024 weeks it lies within 26 weeks of the reference, 2026-12-01"}


def test_date_is_never_guessed(old):
    answer = json.loads(run("date", *old, "--reference", "2020-01-01", "--json", check=0).stdout)
    assert (answer["raw"], answer["corrected"], answer["epochs"]) == ("2007-04-07", "2007-04-07", 0)
    assert "no number of 1024 weeks" in answer["reason"]


def test_no_date_in_time():
    with Receiver("--protocol", "sirf", "--rate", 57600) as cold:  # after a cold start there is no date for about 20 s
        done = run("date", "-p", cold.port, "-b", 57600, "-t", 1, "--json")
        assert done.returncode == 9 and json.loads(done.stdout)["error"]["kind"] == "no-answer"


def test_wrong_usage():
    run("date", "--reference", "21.11.2026", "-p", "/dev/null", check=2)
    run("monitor", "--correct-dates", "--reference", "x", "-p", "/dev/null", check=2)
    run("monitor", "--for", "0", "-p", "/dev/null", check=2)
    assert run("monitor", "-n", "-p", "/dev/null", check=0).stdout == b""
