#!/usr/bin/env -S /usr/bin/python3 -B
"""Plays logs through toravane-replay and compares everything that it prints with the second decoder beside this file.

Usage: replay_test.py REPLAY            the logs of tests/data, the tool's options and its errors
       replay_test.py REPLAY FOLDER     the logs of a folder; exit code 77, skipped, when it is not there
"""
import json
import pathlib
import subprocess
import sys

from reference import HOT_START, Reference

DATA = pathlib.Path(__file__).resolve().parent.parent.parent / "data"
SKIPPED = 77


def run(replay, *arguments, stdin=b""):
    return subprocess.run([replay, *map(str, arguments)], input=stdin, capture_output=True, check=False)


def output(replay, *arguments, stdin=b""):
    result = run(replay, *arguments, stdin=stdin)
    assert result.returncode == 0, result
    assert not result.stderr, result
    return result.stdout.decode("utf-8")


def check_log(replay, log):
    data = log.read_bytes()
    expected = Reference()
    expected.feed(data)

    page = output(replay, log)
    assert page == "".join(line + "\n" for line in expected.lines), f"{log.name}: page\n{page}"
    stats = output(replay, "--stats", log)
    protocol = "NMEA" if expected.count else "-"
    assert stats == (f"Messages NMEA {expected.count} SiRF 0\nBaudrate NMEA {expected.reported}\n"
                     f"Bytes {len(data)}\nProtocol {protocol}\n"), f"{log.name}: statistics\n{stats}"
    samples = [json.loads(line) for line in output(replay, "--samples", log).splitlines()]
    assert samples == expected.samples, f"{log.name}: samples"
    assert output(replay, "--messages", log) == expected.text.replace("\r", ""), f"{log.name}: receiver text"
    commands = output(replay, "--commands", log)
    assert commands == (HOT_START + "\n" if expected.count else ""), f"{log.name}: commands\n{commands}"
    print(f"{log.name}: {len(data)} bytes, {expected.count} sentences, {len(samples)} samples")


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
    logs = sorted(folder.glob("*.txt"))
    if not logs:
        print(f"skipped: no logs in {folder}")
        return SKIPPED
    for log in logs:
        check_log(replay, log)
    if folder == DATA:
        check_options(replay)
    return 0


sys.exit(main())
