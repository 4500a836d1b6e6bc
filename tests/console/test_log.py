# SPDX-License-Identifier: MIT
"""log: every byte is kept, and files are complete after any kind of end."""

import json
import os
import pty
import signal
import time

import pytest
from streams import Receiver, Root, end, port_of, read_some, run, start, wait_until

Recorded = Root / "tests/data/walk-south-west.srf"


def stream():
    """The part of a log that the player sends: all except the comment lines at its beginning."""
    data = Recorded.read_bytes()
    while data.startswith(b"#"):
        data = data.split(b"\n", 1)[1]
    return data


@pytest.fixture(scope="module")
def player():
    """Sends the same bytes to each new listener."""
    return lambda: Receiver("--play", Recorded, "--rate", 115200)


def test_every_byte_is_recorded(player, tmp_path):
    with player() as receiver:
        done = run("log", tmp_path / "log", "-p", receiver.port, "-b", 115200, "--for", 3, "--json", check=0)
    assert (tmp_path / "log").read_bytes() == stream()
    assert json.loads(done.stdout) == {"command": "log", "exit": 0, "bytes": len(stream())}


def test_standard_output_can_be_the_log(player):
    with player() as receiver:
        assert run("log", "-", "-p", receiver.port, "-b", 115200, "--for", 3, check=0).stdout == stream()
        assert run("log", "-", "-p", receiver.port, "--json").returncode == 2


def test_existing_files_are_kept_or_continued(player, tmp_path):
    log = tmp_path / "log"
    log.write_bytes(b"x" * 100000)
    with player() as receiver:
        arguments = ["log", log, "-p", receiver.port, "-b", 115200, "--for", 2.5]
        run(*arguments, check=2)
        run(*arguments, "--force", "--append", check=2)
        assert log.read_bytes() == b"x" * 100000
        run(*arguments, "--force", check=0)
    assert log.read_bytes() == stream()
    with player() as receiver:
        run("log", log, "-p", receiver.port, "-b", 115200, "--for", 2.5, "--append", check=0)
    assert log.read_bytes() == stream() * 2


def test_without_a_rate_it_finds_one(tmp_path):
    with Receiver("--rate", 9600, "--start", "hot") as receiver:
        run("log", tmp_path / "log", "-p", receiver.port, "--for", 5, check=0)
    log = (tmp_path / "log").read_bytes()
    assert log.count(b"$GPGGA,") >= 2 and set(log) <= set(range(32, 127)) | {10, 13}


def test_noise_is_recorded_too(tmp_path):
    noise = tmp_path / "noise"
    noise.write_bytes(bytes(range(1, 256)) * 40)
    with Receiver("--play", noise, "--rate", 115200) as receiver:
        run("log", tmp_path / "log", "-p", receiver.port, "-b", 115200, "--for", 2, check=0)
    assert (tmp_path / "log").read_bytes() == noise.read_bytes()


@pytest.fixture
def silent():
    """A port at which nothing ever comes."""
    master, slave = pty.openpty()
    yield port_of(os.ttyname(slave))
    os.close(master)
    os.close(slave)


def test_silence_is_no_log(silent, tmp_path):
    log, link, empty = tmp_path / "log", tmp_path / "link", tmp_path / "empty"
    arguments = ["-p", silent, "-b", 4800, "--for", 0.5]
    run("log", log, *arguments, check=6)
    assert not log.exists()
    link.symlink_to("log")
    run("log", link, *arguments, check=6)
    assert link.is_symlink() and not log.exists()
    empty.touch()
    run("log", empty, *arguments, "--append", check=6)
    assert empty.exists()  # this run has not made it


def test_silence_keeps_the_old_log(silent, tmp_path):
    log = tmp_path / "log"
    log.write_bytes(b"old")
    run("log", log, "-p", silent, "-b", 4800, "--for", 0.5, "--force", check=6)
    assert log.read_bytes() == b"old"


def test_a_file_that_cannot_be_written_is_noticed_before_the_search(silent, tmp_path):
    run("log", tmp_path / "missing/log", "-p", silent, check=1)
    run("log", tmp_path, "-p", silent, "--force", check=1)


def test_the_search_does_not_count(tmp_path):
    """At 57600 baud the receiver is found after three other rates, in more than the three seconds of the log."""
    with Receiver("--rate", 57600, "--start", "hot") as receiver:
        run("log", tmp_path / "log", "-p", receiver.port, "--for", 3, check=0)
    assert (tmp_path / "log").read_bytes().count(b"$GPGGA,") >= 2


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM])
def test_interrupted_the_file_is_whole(tmp_path, number):
    log = tmp_path / "log"
    with Receiver("--rate", 57600) as receiver:
        process = start("log", log, "-p", receiver.port, "-b", 57600, "--json")
        wait_until(lambda: log.exists() and log.stat().st_size > 500, "bytes in the log")
        status, out, _ = end(process, number)
        assert status == 130
        answer = json.loads(out)
        assert answer["exit"] == 130 and answer["error"]["kind"] == "interrupted"
        assert answer["bytes"] == log.stat().st_size
        run("probe", "-p", receiver.port, check=0)  # the port is free again


def test_a_device_that_vanishes_ends_it(tmp_path):
    log, script = tmp_path / "log", tmp_path / "script"
    script.write_text("4 vanish 100\n")
    with Receiver("--rate", 57600, "--script", script) as receiver:
        begin = time.monotonic()
        done = run("log", log, "-p", receiver.port, "-b", 57600)
        assert done.returncode == 1 and b"vanished" in done.stderr
        assert time.monotonic() - begin < 20
    assert log.read_bytes().endswith(b"\n")


def test_a_full_disk_ends_it():
    with Receiver("--rate", 57600) as receiver:
        run("log", "/dev/full", "-p", receiver.port, "-b", 57600, "--force", "--for", 20, check=1)
        with open("/dev/full", "wb") as full:
            process = start("log", "-", "-p", receiver.port, "-b", 57600, stdout=full)
            assert process.wait(30) == 1
            process.stderr.close()


def test_wrong_usage_makes_no_file(tmp_path):
    log = tmp_path / "log"
    run("log", log, "-p", "/dev/null", "--for", "x", check=2)
    run("log", check=2)
    assert run("log", log, "-p", tmp_path / "missing").returncode == 3
    run("log", log, "-p", "/dev/null", "--dry-run", check=0)
    assert not log.exists()


def test_progress_is_shown_on_a_terminal(tmp_path):
    master, slave = pty.openpty()
    with Receiver("--rate", 57600) as receiver:
        process = start("log", tmp_path / "log", "-p", receiver.port, "-b", 57600, "--for", 2, stderr=slave)
        os.close(slave)
        shown = read_some(master, lambda data: b"bytes in 1 s" in data)
        assert process.wait(30) == 0
        process.stdout.close()
    os.close(master)
    assert shown.startswith(b"\r")
