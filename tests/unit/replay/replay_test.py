#!/usr/bin/env -S /usr/bin/python3 -B
"""Plays logs through toravane-replay and compares everything that it prints with the second decoder beside this file.

Usage: replay_test.py REPLAY            the logs of tests/data, the tool's options and its errors
       replay_test.py REPLAY FOLDER     the logs of a folder; exit code 77, skipped, when it is not there
"""
import itertools
import json
import math
import pathlib
import subprocess
import sys

from reference import HOT_START, Reference, frames, sentences

DATA = pathlib.Path(__file__).resolve().parent.parent.parent / "data"
SKIPPED = 77


def run(replay, *arguments, stdin=b""):
    return subprocess.run([replay, *map(str, arguments)], input=stdin, capture_output=True, check=False)


def output(replay, *arguments, stdin=b""):
    result = run(replay, *arguments, stdin=stdin)
    assert result.returncode == 0, result
    assert not result.stderr, result
    return result.stdout.decode("utf-8")


def check_stream(replay, name, data):
    """Everything that the tool prints for a stream of bytes; they come in one piece on its standard input."""
    expected = Reference()
    expected.feed(data)

    page = output(replay, "-", stdin=data)
    assert page == "".join(line + "\n" for line in expected.lines), f"{name}: page\n{page}"
    stats = output(replay, "--stats", "-", stdin=data)
    assert stats == (f"Messages NMEA {expected.count} SiRF {expected.frame_count}\nBaudrate NMEA {expected.reported}\n"
                     f"Bytes {len(data)}\nProtocol {expected.protocol()}\n"), f"{name}: statistics\n{stats}"
    samples = [json.loads(line) for line in output(replay, "--samples", "-", stdin=data).splitlines()]
    assert len(samples) == len(expected.samples), f"{name}: {len(samples)} samples"
    for number, (sample, wanted) in enumerate(zip(samples, expected.samples)):
        same = sample["time"] == wanted["time"] and all(
            math.isclose(value, other, rel_tol=1e-14, abs_tol=1e-8)  # the two languages' sine and cosine
            for value, other in zip(sample["values"], wanted["values"]))
        assert same, f"{name}: sample {number}\n{sample}\n{wanted}"
    assert output(replay, "--messages", "-", stdin=data) == expected.text.replace("\r", ""), f"{name}: receiver text"
    commands = output(replay, "--commands", "-", stdin=data)
    assert commands == (HOT_START + "\n" if expected.count else ""), f"{name}: commands\n{commands}"
    print(f"{name}: {len(data)} bytes, {expected.count} sentences, {expected.frame_count} frames, {len(samples)} samples")


def interleave(nmea, sirf):
    """The messages of two logs in turn, as of a receiver that speaks both."""
    pieces, start = [[], []], [0, 0]
    for log, data, cut in ((0, nmea, sentences), (1, sirf, frames)):
        for end, _ in cut(data):
            pieces[log].append(data[start[log]:end])
            start[log] = end
    return b"".join(piece for pair in itertools.zip_longest(*pieces, fillvalue=b"") for piece in pair)


def check_options(replay):
    log = DATA / "walk-south-west.txt"
    parts = [output(replay, option, log) for option in ("--samples", "--page", "--stats", "--messages", "--commands")]
    together = output(replay, "--commands", "--stats", "--page", "--messages", "--samples", log)
    assert together == "".join(parts), "options together"
    assert output(replay, "-", stdin=log.read_bytes()) == output(replay, log), "standard input"

    data = log.read_bytes()
    first, second = pathlib.Path("first.part"), pathlib.Path("second.part")
    first.write_bytes(data[:1001])  # in the middle of a sentence
    second.write_bytes(data[1001:])
    assert output(replay, "--stats", first, second) == output(replay, "--stats", log), "files are one stream"
    first.unlink()
    second.unlink()

    assert output(replay, "--help").startswith("Usage: toravane-replay"), "help"
    assert output(replay, "--version").startswith("toravane-replay "), "version"
    for arguments in (["--colour", log], ["no-such-file.txt"], [], ["--stats"], [DATA], ["--", "--stats"]):
        result = run(replay, *arguments)
        lines = result.stderr.decode().splitlines()
        assert result.returncode == 2 and len(lines) == 1 and not result.stdout, f"{arguments}: {result}"


def main():
    replay = sys.argv[1]
    folder = pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else DATA
    logs = [sorted(folder.glob("*.txt")), sorted(folder.glob("*.srf"))]
    if not any(logs):
        print(f"skipped: no logs in {folder}")
        return SKIPPED
    for log in logs[0] + logs[1]:
        check_stream(replay, log.name, log.read_bytes())
    for nmea, sirf in zip(logs[0], logs[1]):
        check_stream(replay, f"{nmea.name} and {sirf.name}", interleave(nmea.read_bytes(), sirf.read_bytes()))
    if folder == DATA:
        check_options(replay)
    return 0


sys.exit(main())
