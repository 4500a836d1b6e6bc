"""Prints figures of the program under Wine: how long it takes to show its window, and its share of a processor
on a silent line and at a stream of 115200 baud.

Outside the default test run:  /usr/bin/python3 tests/desktop/figures.py [SECONDS]
"""

import os
import sys
import time
from pathlib import Path

from harness import User, wait_for
from test_start import Page, Record


def processor_seconds(pid):
    """User and system time of a process so far."""
    fields = Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def server_pid(user):
    """Wine's server of the tests' prefix, which does part of the program's work."""
    prefix = f"WINEPREFIX={user.wine.prefix}\0".encode()
    for process in Path("/proc").iterdir():
        try:
            if (process / "comm").read_text().startswith("wineserver") and \
                    prefix in (process / "environ").read_bytes():
                return int(process.name)
        except OSError:
            pass
    raise RuntimeError("no wineserver")


def measure(user, program, seconds):
    """Shares of one processor that the program and Wine's server use, in per cent."""
    pids = program.process.pid, server_pid(user)
    start = time.monotonic()
    before = [processor_seconds(pid) for pid in pids]
    time.sleep(seconds)
    elapsed = time.monotonic() - start
    return [100 * (processor_seconds(pid) - b) / elapsed for pid, b in zip(pids, before)]


def time_to_window(user):
    """Seconds from the start to the window on the screen, with Wine already running."""
    start = time.monotonic()
    user.start()
    user.main_window()
    return time.monotonic() - start


def main(seconds):
    user = User()
    try:
        user.tidy()
        print(f"window after {time_to_window(user):.2f} s")
        user.tidy()
        program, line = user.start_connected(115200)
        idle = measure(user, program, seconds)
        line.stream(Record, 115200)
        wait_for("the page comes", lambda: user.page()[18] == Page[18])
        sent = line.sent
        stream = measure(user, program, seconds)
        rate = (line.sent - sent) / seconds
        for name, (own, server) in (("silent line", idle), (f"{rate:.0f} bytes/s", stream)):
            print(f"{name}: program {own:.1f} %, Wine's server {server:.1f} % of one processor")
    finally:
        user.tidy()
        user.leave()


if __name__ == "__main__":
    main(float(sys.argv[1]) if len(sys.argv) > 1 else 10)
