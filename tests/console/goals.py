#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Usage: goals.py [NAME]...

Measures the goals of the console program, and prints each figure beside its goal; ends with 1 if one is missed. Without
a name, measures everything except `switch`, which takes half an hour. To be run on an idle machine: times are the
program's own.
"""

import itertools
import json
import os
import pty
import re
import select
import subprocess
import sys
import tempfile
import threading
import time
import tty
from pathlib import Path

import streams
from streams import Receiver, Root, run

UsualRates = (4800, 9600, 38400, 57600)
AllRates = (1200, 2400, *UsualRates, 19200, 115200)
Settings = ("static-navigation enabled=on", "elevation-mask tracking=10.0", "power-mask navigation=33",
            "dop-mask hdop=20", "dgps-source source=none", "dgps-mode mode=never", "mode-control altitude=-500",
            "trickle-power on-time=300", "low-power max-off-time=1234", "sbas prn=124",
            "advanced-power time-between-fixes=60")
Failed = []


def report(name, what, figure, goal, met):
    if not met:
        Failed.append(name)
    print(f"{name:8} {what:58} {figure:>20}   goal: {goal}{'' if met else '   MISSED'}", flush=True)


def probe_times(rates):
    """Seconds that a probe takes from nothing, by protocol and rate, and how many bytes the receivers heard."""
    times, heard = {}, 0
    for protocol, rate in itertools.product(("nmea", "sirf"), rates):
        with tempfile.TemporaryDirectory() as folder:
            record = Path(folder) / "heard"
            with Receiver("--protocol", protocol, "--rate", rate, "--record", record) as receiver:
                start = time.monotonic()
                found = json.loads(run("--json", "-p", receiver.port, "probe", check=0).stdout)
                times[protocol, rate] = time.monotonic() - start
            assert (found["protocol"], found["rate"]) == (protocol, rate), found
            heard += record.stat().st_size
    return times, heard


def probe():
    for what, rates, goal in (("usual rates", UsualRates, 6), ("all rates", AllRates, 14)):
        times, heard = probe_times(rates)
        slowest = max(times, key=times.get)
        report("probe", f"{what}, slowest ({slowest[0]} at {slowest[1]})", f"{times[slowest]:.1f} s", f"within {goal} s",
               times[slowest] <= goal)
        report("probe", f"{what}, sent", f"{heard} bytes", "0 bytes", heard == 0)
    # Nobody answers: the program listens at every rate for the longest time.
    master, slave = pty.openpty()
    start = time.monotonic()
    run("-p", os.ttyname(slave), "probe", check=6)
    worst = time.monotonic() - start
    report("probe", "worst: a line that is silent at every rate", f"{worst:.1f} s", "within 14 s", worst <= 14)
    os.close(master)
    os.close(slave)


def get():
    worst = 0
    for rate in (4800, 57600):
        with Receiver("--protocol", "sirf", "--rate", rate) as receiver:
            for setting in Settings:
                start = time.monotonic()
                run("-p", receiver.port, "-b", rate, "get", setting.split()[0], check=0)
                worst = max(worst, time.monotonic() - start)
    report("get", "one setting at a given rate, slowest of all settings", f"{worst:.2f} s", "within 1.5 s", worst <= 1.5)


def switch():
    text = ""
    with subprocess.Popen([Root / "tests/console/switches.sh", "1000"], stdout=subprocess.PIPE, text=True) as process:
        for line in process.stdout:
            text = line
            if line.startswith("seed"):
                print(line, end="", flush=True)
    count = re.match(r"(\d+) of 1000", text)
    report("switch", "ended at a state that is named and true", f"{count[1] if count else 0} of 1000", "1000 of 1000",
           process.returncode == 0)


def profile():
    with Receiver("--protocol", "sirf", "--rate", 57600) as receiver, tempfile.TemporaryDirectory() as folder:
        def ctl(*arguments):
            return run("-p", receiver.port, "-b", 57600, *arguments, check=0)
        file = Path(folder) / "profile"
        for setting in Settings:
            ctl("set", *setting.split())
        ctl("profile", "save", file)
        wanted = ctl("get", "all").stdout.splitlines()
        ctl("restart", "factory", "--yes")
        changed = sum(line not in wanted for line in ctl("get", "all").stdout.splitlines())
        ctl("profile", "apply", file)
        restored = sum(line in wanted for line in ctl("get", "all").stdout.splitlines())
        again = ctl("-v", "profile", "apply", file).stderr.decode().splitlines()
        sent = [line.split()[5] for line in again if line.startswith("> ")]
    report("profile", f"apply after a factory reset (changed {changed}), restored", f"{restored} of {len(Settings)}", "all",
           restored == len(wanted) == len(Settings) == changed)
    report("profile", "the second apply sends other than polls", f"{sum(one not in ('A8', '98') for one in sent)}",
           "0", bool(sent) and all(one in ("A8", "98") for one in sent))


def size():
    for file in (streams.Program, streams.windows.Program):
        if not file.exists():
            report("size", file.name, "not built", "under 3 MB", False)
            continue
        megabytes = file.stat().st_size / 1e6
        report("size", file.name, f"{megabytes:.2f} MB", "under 3 MB", megabytes < 3)
    needed = subprocess.run(["objdump", "-p", streams.Program], capture_output=True, text=True, check=True).stdout
    libraries = set(re.findall(r"NEEDED +(\S+)", needed))
    beside = libraries - {"libc.so.6", "libm.so.6", "ld-linux-x86-64.so.2"}
    report("size", "libraries beside the C library", " ".join(sorted(beside)) or "none", "none", not beside)


class FullLine:
    """A line on which bytes arrive without a pause, as fast as it can carry them."""

    def __init__(self, data, rate):
        self.master, self.slave = pty.openpty()
        tty.setraw(self.slave)
        os.set_blocking(self.master, False)
        self.port = os.ttyname(self.slave)
        self.open = True
        self.thread = threading.Thread(target=self.send, args=(data, rate // 10))
        self.thread.start()

    def send(self, data, bytes_per_second):
        start, sent = time.monotonic(), 0
        while self.open:
            due = int((time.monotonic() - start) * bytes_per_second)
            part = bytes(data[i % len(data)] for i in range(sent, due))
            if part and select.select([], [self.master], [], 0)[1]:
                try:
                    os.write(self.master, part)
                except BlockingIOError:
                    pass  # nobody reads: a line drops bytes that are not read
            sent = due
            time.sleep(0.005)

    def close(self):
        self.open = False
        self.thread.join()
        os.close(self.slave)
        os.close(self.master)


def load():
    seconds = 30
    logs = {"NMEA": b"", "SiRF binary": b""}
    for file in sorted((Root / "tests/data").iterdir()):
        data = file.read_bytes()
        if file.suffix in (".nmea", ".log", ".txt") and b"$GPGGA" in data:
            logs["NMEA"] = logs["NMEA"] or data
        if b"\xA0\xA2" in data:
            logs["SiRF binary"] = logs["SiRF binary"] or data
    for (protocol, data), arguments in itertools.product(
            logs.items(), (["log", "-"], ["monitor", "--json"], ["monitor", "--plain"], ["relay", "--tcp", "47113"])):
        line = FullLine(data, 115200)
        try:
            process = subprocess.Popen(streams.command(*arguments, "-p", line.port, "-b", 115200), env=streams.environment(),
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(seconds)
            process.terminate()
            _, _, usage = os.wait4(process.pid, 0)
        finally:
            line.close()
        share = 100 * (usage.ru_utime + usage.ru_stime) / seconds
        report("load", f"{' '.join(arguments)}, {protocol} at 115200 without a pause", f"{share:.2f} % of a core",
               "under 1 %", share < 1)


def vanish():
    with tempfile.TemporaryDirectory() as folder:
        script = Path(folder) / "script"
        script.write_text("5 vanish 100\n")
        with Receiver("--rate", 57600, "--script", script) as receiver:
            process = streams.start("log", Path(folder) / "log", "-p", receiver.port, "-b", 57600)
            while os.path.exists(receiver.port):
                time.sleep(0.01)
            start = time.monotonic()
            status = process.wait(streams.Limit)
            passed = time.monotonic() - start
            process.communicate()
    report("vanish", f"a device that vanishes, exit {status} after", f"{passed:.2f} s", "within 1 s",
           status == 1 and passed <= 1)


Goals = {"probe": probe, "get": get, "switch": switch, "profile": profile, "size": size, "load": load, "vanish": vanish}


def main():
    names = sys.argv[1:] or [name for name in Goals if name != "switch"]
    unknown = [name for name in names if name not in Goals]
    if unknown:
        sys.exit(f"no goal {' '.join(unknown)}; there are {' '.join(Goals)}")
    for name in names:
        Goals[name]()
    sys.exit(1 if Failed else 0)


if __name__ == "__main__":
    main()
