#!/usr/bin/env -S /usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Prints one table of figures: the program's cost in instructions, time, space and memory.

figures.py [--no-desktop] [--no-build] [--logs FOLDER] [--before CHECKOUT] [SECONDS]

SECONDS: how long each share of a processor is measured, 10 by default. --logs: a folder of receivers' logs (.txt NMEA,
.srf SiRF binary) that is measured like our own. --before: a checkout of another state of the repository, already
built; its figures get a column of their own. Instructions are the same in every run; times are those of this machine
at this moment.
"""
import argparse
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
OWN = ROOT / "tests" / "data"
PROTOCOLS = (("NMEA", ".txt"), ("SiRF", ".srf"))
WIDTHS = (240, 640, 1920, 4096)


class Programs:
    """The built programs of a checkout."""

    def __init__(self, checkout, native=None):
        self.native = pathlib.Path(native or checkout / "build" / "native")
        self.replay, self.console = self.native / "toravane-replay", self.native / "toravanectl"
        self.emulated, self.bench = self.native / "scenarios_emulated", self.native / "bench_chart"
        self.desktop, self.device = (checkout / "build" / preset / "toravane.exe" for preset in ("desktop", "device"))


def output(*command):
    return subprocess.run([str(word) for word in command], cwd=ROOT, check=True, text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE).stdout


def build(*words):
    subprocess.run([ROOT / "tools" / "build.sh", *words], check=True, stdout=subprocess.DEVNULL)


def user_seconds(*command):
    process = subprocess.Popen([str(word) for word in command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return os.wait4(process.pid, 0)[2].ru_utime


def streams(logs):
    """Our own logs and those of a folder: name and bytes of all logs of a protocol, one after the other."""
    own = {"walk-south-west.txt", "cold-start.txt", "walk-south-west.srf", "cold-start.srf"}
    for name, folder in (("our own logs", OWN), ("the folder's logs", logs)):
        for protocol, suffix in PROTOCOLS:
            files = sorted(folder.glob("*" + suffix)) if folder else []
            yield f"{protocol}, {name}", b"".join(file.read_bytes() for file in files
                                                  if folder != OWN or file.name in own)


def reception(replay, logs):
    """Instructions a byte: the difference between two runs of unequal length, so that the start of the process does
    not count. Speed of the replay tool over 50 MB, by its user time."""
    with tempfile.TemporaryDirectory() as folder:
        log = pathlib.Path(folder) / "log"
        for name, stream in streams(logs):
            if not stream:
                continue
            stream *= -(-100_000 // len(stream))
            counts = []
            for times in (1, 2):
                log.write_bytes(stream * times)
                counts.append(instructions(replay, "--stats", log))
            yield f"instructions a byte, {name}", str(round((counts[1] - counts[0]) / len(stream)))
            log.write_bytes(stream * (50_000_000 // len(stream)))
            for option in ("--stats", "--samples"):
                speed = log.stat().st_size / 1e6 / user_seconds(replay, option, log)
                yield f"replay {option}, {name}", f"{speed:.0f} MB/s of user time"


def device(programs):
    """Instructions a received byte of the device's program, on the emulated processor."""
    image, symbols = programs.device, programs.device.with_suffix(".elf")
    if not (image.is_file() and symbols.is_file()):
        return
    for protocol, suffix in PROTOCOLS:
        done = subprocess.run([programs.emulated, "--image", image, "--symbols", symbols, "--logs", OWN, "--core", "926",
                               "--figures", "yes", f"stream walk-south-west{suffix} on the page"],
                              check=True, text=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        yield (f"ARM instructions a byte, {protocol}",
               re.search(r"(\d+ instructions a byte.*)", done.stderr)[1].replace(" instructions a byte", ""))


def instructions(*command):
    done = subprocess.run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *map(str, command)],
                          check=True, text=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    return int(re.search(r"Collected : (\d+)", done.stderr)[1])


def chart(bench):
    """Cost of a sample against the chart's width, and of a repaint."""
    for width in WIDTHS:
        few, many = (instructions(bench, "--samples", width, count) for count in (2000, 4000))
        yield f"instructions a sample, width {width}", str(round((many - few) / 2000))
    done = json.loads(output(bench, "--benchmark_format=json"))
    times = {row["name"]: row["cpu_time"] for row in done["benchmarks"]}
    for width in WIDTHS:
        yield f"sample, width {width}", f"{times[f'BM_Sample/{width}']:.0f} ns"
    for width in (240, 1920):
        yield f"repaint of the chart, width {width}, headless", f"{times[f'BM_PaintChart/{width}'] / 1000:.1f} µs"
    yield "page copied for a repaint", f"{times['BM_CopyPage'] / 1000:.1f} µs"


def sizes(programs):
    for name, file in (("desktop", programs.desktop), ("device", programs.device), ("console", programs.console)):
        if file.is_file():
            yield f"program size, {name}", f"{file.stat().st_size:,} bytes"


def desktop(program, seconds):
    sys.path.insert(0, str(ROOT / "tests" / "desktop"))
    import importlib.util
    found = importlib.util.spec_from_file_location("desktop_figures", ROOT / "tests" / "desktop" / "figures.py")
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    yield from module.figures(seconds, program)


def memory(replay):
    """Peak of the replay tool over a log."""
    log = OWN / "walk-south-west.txt"
    process = subprocess.Popen([replay, "--stats", log], stdout=subprocess.DEVNULL)
    _, _, usage = os.wait4(process.pid, 0)
    yield "peak memory, replay", f"{usage.ru_maxrss / 1024:.1f} MB"


def figures(programs, options):
    """Names and values."""
    yield from reception(programs.replay, options.logs)
    yield from device(programs)
    yield from chart(programs.bench)
    yield from memory(programs.replay)
    if not options.no_desktop:
        yield from desktop(programs.desktop, options.seconds)
    yield from sizes(programs)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--no-desktop", action="store_true")
    parser.add_argument("--no-build", action="store_true")
    parser.add_argument("--logs", type=pathlib.Path, metavar="FOLDER")
    parser.add_argument("--before", type=pathlib.Path, metavar="CHECKOUT")
    parser.add_argument("seconds", type=float, nargs="?", default=10)
    options = parser.parse_args()
    if not options.no_build:
        build("native", "toravane-replay", "toravanectl", "bench_chart", "scenarios_emulated")
        build("device")
        if not options.no_desktop:
            build("desktop", "toravane")
    now = figures(Programs(ROOT, os.environ.get("TORAVANE_TOOLS")), options)
    if options.before:
        before = dict(figures(Programs(options.before), options))
        print("| figure | before | now |\n|---|---|---|")
        for name, value in now:
            print(f"| {name} | {before.get(name, '-')} | {value} |", flush=True)
    else:
        print("| figure | value |\n|---|---|")
        for name, value in now:
            print(f"| {name} | {value} |", flush=True)


if __name__ == "__main__":
    main()
