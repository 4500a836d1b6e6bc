# SPDX-License-Identifier: MIT
"""Shared by the tests of the streaming commands: the program, and the receiver in software on a pseudo-terminal."""

import functools
import json
import os
import pathlib
import select
import signal
import subprocess
import tempfile
import time

import windows

Root = pathlib.Path(__file__).resolve().parents[2]
Build = pathlib.Path(os.environ.get("TORAVANE_BUILD", Root / "build/native"))
Program = Build / "toravanectl"
Limit = 30  # s, for each expected event
UnderWine = False  # true: the tests run the Windows program
States = tempfile.TemporaryDirectory(prefix="toravane-state-")  # where the program remembers rates, removed at the end


@functools.cache
def machine():
    """The Wine prefix, made at its first use."""
    return windows.Machine()


def command(*arguments):
    """The command line of the program with these arguments, for subprocess."""
    program = ["wine", windows.Program] if UnderWine else [Program]
    return [*program, *map(str, arguments)]


def port_of(terminal):
    """The program's name for a terminal."""
    return machine().port(terminal) if UnderWine else terminal


def environment():
    """An environment without the user's own settings and without remembered data."""
    kept = machine().wine.environment if UnderWine else os.environ
    kept = {name: value for name, value in kept.items() if not name.startswith("TORAVANE_")}
    return kept | {"XDG_STATE_HOME": tempfile.mkdtemp(dir=States.name), "TZ": "UTC"}


def run(*arguments, check=None, **options):
    """Runs the program until it ends; `check` is the required exit status."""
    options = {"stdin": subprocess.DEVNULL} | options if "input" not in options else options
    # --through-sirf listens for eleven seconds before its work, and until all sentences have come after it.
    done = subprocess.run(command(*arguments), capture_output=True, timeout=2 * Limit, env=environment(), **options)
    if check is not None:
        assert done.returncode == check, (arguments, done.returncode, done.stdout, done.stderr)
    return done


def start(*arguments, **options):
    options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "env": environment()} | options
    return subprocess.Popen(command(*arguments), **options)


def end(process, number=None):
    """Sends a signal, SIGTERM if the system has it, and returns exit status, standard output and standard error."""
    process.send_signal(number or (signal.SIGINT if UnderWine else signal.SIGTERM))
    out, error = process.communicate(timeout=Limit)
    return process.returncode, out, error


def wait_until(condition, what="condition"):
    limit = time.monotonic() + Limit
    while not condition():
        assert time.monotonic() < limit, f"waited in vain for {what}"
        time.sleep(0.02)


class Receiver:
    """The software receiver; `terminal` is its pseudo-terminal, `port` the program's name for it."""

    def __init__(self, *options):
        self.process = subprocess.Popen([Build / "toravane-receiver", *map(str, options)], stdout=subprocess.PIPE,
                                        text=True)
        self.terminal = self.process.stdout.readline().strip()
        self.port = port_of(self.terminal)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(Limit)
        self.process.stdout.close()


def read_some(file, enough):
    """Reads a descriptor until `enough` is true for the bytes."""
    data = b""
    limit = time.monotonic() + Limit
    while not enough(data):
        assert time.monotonic() < limit, data[-200:]
        if select.select([file], [], [], 0.1)[0]:
            try:
                part = os.read(file, 65536)
            except BlockingIOError:
                continue
            if not part:
                break
            data += part
    return data


def sentence(body):
    checksum = 0
    for byte in body.encode():
        checksum ^= byte
    return f"${body}*{checksum:02X}\r\n".encode()


def valid_sentences(data):
    """The sentences of a stream, and how many of them have a wrong checksum."""
    good, bad = [], 0
    for line in data.split(b"\r\n")[:-1]:
        if not line.startswith(b"$"):
            continue
        if sentence(line[1:].split(b"*")[0].decode()) == line + b"\r\n":
            good.append(line.decode())
        else:
            bad += 1
    return good, bad


def lines_of_json(text):
    return [json.loads(line) for line in text.splitlines()]
