#!/usr/bin/env -S /usr/bin/python3 -B
"""Prints one table of figures: what the program costs, in instructions, time, space and memory.

figures.py [--no-desktop] [SECONDS]: seconds that each share of a processor is measured for, 10 by default. Builds
what it needs. Instructions are the same in every run; times are those of this machine at this moment.
"""
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
NATIVE = pathlib.Path(os.environ.get("TORAVANE_TOOLS", ROOT / "build" / "native"))
DESKTOP = ROOT / "build" / "desktop" / "toravane.exe"
DEVICE = ROOT / "build" / "device" / "toravane.exe"
LOGS = (("NMEA", "tests/data/walk-south-west.txt"), ("SiRF", "tests/data/walk-south-west.srf"))
WIDTHS = (240, 640, 1920, 4096)


def output(*command):
    return subprocess.run([str(word) for word in command], cwd=ROOT, check=True, text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE).stdout


def build(*words):
    subprocess.run([ROOT / "tools" / "build.sh", *words], check=True, stdout=subprocess.DEVNULL)


def reception():
    """Speed of the replay tool, and instructions a byte."""
    for protocol, log in LOGS:
        line = output("tests/bench/reception.sh", log)
        speed, instructions = re.search(r"(\d+) MB/s, (\d+) instructions", line).groups()
        yield f"instructions a byte, {protocol}", instructions
        yield f"replay, {protocol}", f"{speed} MB/s"


def instructions(*command):
    done = subprocess.run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *map(str, command)],
                          check=True, text=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    return int(re.search(r"Collected : (\d+)", done.stderr)[1])


def chart():
    """Cost of a sample against the chart's width, and of a repaint."""
    bench = NATIVE / "bench_chart"
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


def sizes():
    for name, file in (("desktop", DESKTOP), ("device", DEVICE)):
        if file.is_file():
            yield f"program size, {name}", f"{file.stat().st_size:,} bytes"


def desktop(seconds):
    sys.path.insert(0, str(ROOT / "tests" / "desktop"))
    import importlib.util
    found = importlib.util.spec_from_file_location("desktop_figures", ROOT / "tests" / "desktop" / "figures.py")
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    yield from module.figures(seconds)


def memory():
    """Peak of the replay tool over a log."""
    log = ROOT / LOGS[0][1]
    process = subprocess.Popen([NATIVE / "toravane-replay", "--stats", log], stdout=subprocess.DEVNULL)
    _, _, usage = os.wait4(process.pid, 0)
    yield "peak memory, replay", f"{usage.ru_maxrss / 1024:.1f} MB"


def main(arguments):
    with_desktop = "--no-desktop" not in arguments
    seconds = next((float(word) for word in arguments if not word.startswith("-")), 10)
    build("native", "toravane-replay", "bench_chart")
    parts = [reception(), chart(), memory()]
    if with_desktop:
        build("desktop")
        parts.append(desktop(seconds))
    parts.append(sizes())
    print("| figure | value |\n|---|---|")
    for part in parts:
        for name, value in part:
            print(f"| {name} | {value} |", flush=True)


if __name__ == "__main__":
    main(sys.argv[1:])
