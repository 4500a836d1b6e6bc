# SPDX-License-Identifier: MIT
"""Prints figures of the program under Wine: the times until its window and its first page, its share of a processor on
a silent line and at a stream of 115200 baud, the cost of a full repaint and its memory.

Outside the default test run:  /usr/bin/python3 tests/desktop/figures.py [SECONDS]
"""

import os
import re
import sys
import time
from pathlib import Path

from harness import Port, User, VK_RIGHT, desktop, wait_for
from test_start import Page, Record

WM_KEYDOWN = 0x0100


def processor_seconds(pid):
    """User and system time of a process until now."""
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


def times_to_paint(user):
    """Seconds from the start to the window, and to its first page on the screen, with Wine already running."""
    user.store(CommPortIdx=Port)  # a port without a rate: nothing is opened, and no About box is shown
    start = time.monotonic()
    user.start()
    user.main_window()
    shown = time.monotonic() - start
    wait_for("the first page", lambda: user.page()[0].strip())
    return shown, time.monotonic() - start


def repaint_milliseconds(user, program, times=100):
    """Processor time of program and server for a page that is erased and painted again."""
    window = user.main_window()["window"]
    pids = program.process.pid, server_pid(user)
    before = sum(processor_seconds(pid) for pid in pids)
    for _ in range(times):
        user.driver.post(window, WM_KEYDOWN, VK_RIGHT)  # the chart, shown with the next fix
        user.driver.post(window, WM_KEYDOWN, VK_RIGHT)  # back to the page, at once
        time.sleep(0.03)
    return 1000 * (sum(processor_seconds(pid) for pid in pids) - before) / times


def peak_megabytes(program):
    status = Path(f"/proc/{program.process.pid}/status").read_text()
    return int(re.search(r"VmHWM:\s*(\d+) kB", status)[1]) / 1024


def figures(seconds, file=desktop.Program):
    """Names and values."""
    user = User(file)
    try:
        user.tidy()
        shown, painted = times_to_paint(user)
        yield "start to window, Wine", f"{shown:.2f} s"
        yield "start to first paint, Wine", f"{painted:.2f} s (with the reading of the screen)"
        user.tidy()
        program, line = user.start_connected(115200)
        own, server = measure(user, program, seconds)
        yield "processor share, silent line", f"program {own:.1f} %, Wine's server {server:.1f} %"
        repaint = repaint_milliseconds(user, program)
        yield "full repaint of the page, Wine", f"{repaint:.1f} ms of processor time"
        line.stream(Record, 115200)
        wait_for("the page comes", lambda: user.page()[18] == Page[18])
        sent = line.sent
        own, server = measure(user, program, seconds)
        rate = (line.sent - sent) / seconds
        yield ("processor share, 115200 baud without a pause",
               f"program {own:.1f} %, Wine's server {server:.1f} % ({rate:.0f} bytes/s)")
        yield "peak memory, Wine", f"{peak_megabytes(program):.1f} MB, Wine's libraries included"
    finally:
        user.tidy()
        user.leave()


def main(seconds):
    for name, value in figures(seconds):
        print(f"{name}: {value}")


if __name__ == "__main__":
    main(float(sys.argv[1]) if len(sys.argv) > 1 else 10)
