# SPDX-License-Identifier: MIT
"""Each failing system call gives the documented exit status, a message, and no file that looks complete."""

import errno
import os
import pathlib
import signal
import socket
import subprocess

import pytest
import streams
from streams import Build, Limit, Receiver, environment, wait_until

Rate = 57600


@pytest.fixture(scope="module")
def receiver():
    with Receiver("--rate", Rate, "--start", "hot") as one:
        yield one


def fail(call, error, nth, path):
    """Environment in which the n-th call on the file, and each later one, fails."""
    return environment() | {"LD_PRELOAD": str(Build / "failing_calls.so"),
                            "TORAVANE_FAULT": f"{call} {error} {nth} {path}"}


def outcome(faults, *arguments):
    done = subprocess.run([streams.Program, *map(str, arguments)], capture_output=True, timeout=Limit, env=faults)
    assert done.stderr.count(b"\n") == 1 and done.stderr.startswith(b"toravanectl: "), done.stderr
    return done.returncode, done.stderr.decode()


@pytest.mark.parametrize("error, text", [(errno.ENOENT, "missing"), (errno.EACCES, "permission"), (errno.EBUSY, "busy"),
                                         (errno.EIO, "Input/output error"), (errno.EMFILE, "Too many open files")])
def test_the_port_cannot_be_opened(receiver, error, text):
    status, message = outcome(fail("open", error, 1, receiver.port), "probe", "-p", receiver.port)
    assert status == 3 and text in message


@pytest.mark.parametrize("call", ["tcgetattr", "tcsetattr"])
def test_the_port_cannot_be_set_up(receiver, call):
    assert outcome(fail(call, errno.EIO, 1, receiver.port), "probe", "-p", receiver.port)[0] == 3


@pytest.mark.parametrize("error, text", [(errno.EIO, "the device has vanished"),
                                         (errno.EINVAL, "cannot be set: Invalid argument")])
def test_the_rate_cannot_be_changed(receiver, error, text):
    """The receiver is at the fourth rate that is tried."""
    status, message = outcome(fail("tcsetattr", error, 3, receiver.port), "probe", "-p", receiver.port)
    assert status == 1 and message.rstrip().endswith(text)


@pytest.mark.parametrize("error", [errno.EIO, errno.ENODEV, errno.EBADF])
@pytest.mark.parametrize("nth", [1, 4])
def test_the_port_cannot_be_read(receiver, tmp_path, error, nth):
    log = tmp_path / "log"
    status, _ = outcome(fail("read", error, nth, receiver.port), "log", log, "-p", receiver.port, "-b", Rate, "-q")
    assert status == 1
    assert log.exists() == (nth > 1)  # without a byte there is no log


def test_the_port_cannot_be_written(receiver):
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        port = probe.getsockname()[1]
    process = streams.start("relay", "-q", "-p", receiver.port, "-b", Rate, "--tcp", port, "--write",
                            env=fail("write", errno.EIO, 1, receiver.port))

    def write():
        try:
            with socket.create_connection(("127.0.0.1", port)) as reader:
                reader.sendall(b"$PSRF105,1*3E\r\n")
                reader.recv(1000)
        except OSError:
            pass
        return process.poll() is not None

    wait_until(write, "the end")
    _, message = process.communicate(timeout=Limit)
    assert process.returncode == 1 and b"vanished" in message


@pytest.mark.parametrize("call, error", [("fopen", errno.EACCES), ("fopen", errno.ENOSPC), ("fwrite", errno.ENOSPC),
                                         ("fwrite", errno.EIO)])
def test_the_log_cannot_be_written(receiver, tmp_path, call, error):
    log = tmp_path / "log"
    status, message = outcome(fail(call, error, 1, log), "log", log, "-p", receiver.port, "-b", Rate, "-q", "--for", 20)
    assert status == 1 and "log" in message


def test_the_log_cannot_be_closed(receiver, tmp_path):
    log = tmp_path / "log"
    assert outcome(fail("fclose", errno.ENOSPC, 1, log), "log", log, "-p", receiver.port, "-b", Rate, "-q", "--for",
                   2)[0] == 1


@pytest.mark.parametrize("call", ["fopen", "fwrite", "fclose"])
def test_the_track_cannot_be_written(tmp_path, call):
    source, track = tmp_path / "log", tmp_path / "track.gpx"
    source.write_bytes(streams.sentence("GPGGA,100035.000,4722.6140,N,00832.5020,E,1,09,1.1,459.5,M,48.2,M,,0000"))
    assert outcome(fail(call, errno.ENOSPC, 1, track), "convert", source, "--to", "gpx", "-o", track)[0] == 1
    assert [entry.name for entry in tmp_path.iterdir()] == ["log"]


def test_the_log_to_convert_cannot_be_opened(tmp_path):
    source = tmp_path / "log"
    source.write_bytes(b"x")
    assert outcome(fail("fopen", errno.EACCES, 1, source), "convert", source, "--to", "gpx")[0] == 1


def test_the_link_cannot_be_made(receiver, tmp_path):
    link = tmp_path / "gps"
    assert outcome(fail("symlink", errno.ENOSPC, 1, link), "relay", "-p", receiver.port, "-b", Rate, "--pty",
                   link)[0] == 1


def test_no_pseudo_terminal_is_left(receiver, tmp_path):
    assert outcome(fail("open", errno.EMFILE, 1, "/dev/pts/"), "relay", "-p", "/dev/null", "-b", Rate, "--pty",
                   tmp_path / "gps")[0] == 3


def test_the_state_cannot_be_kept(receiver):
    """It is only a hint: the run continues."""
    state = environment()
    state["XDG_STATE_HOME"] = "/proc/none"
    done = subprocess.run([streams.Program, "probe", "-p", receiver.port, "-b", str(Rate)], capture_output=True,
                          timeout=Limit, env=state)
    assert done.returncode == 0, done.stderr


def test_an_interruption_during_the_search(receiver):
    process = streams.start("probe", "-p", receiver.port, "-b", "1200")
    files = pathlib.Path(f"/proc/{process.pid}/fd")
    wait_until(lambda: receiver.port in [os.readlink(file) for file in files.iterdir() if file.is_symlink()], "the port")
    assert streams.end(process, signal.SIGINT)[0] == 130
