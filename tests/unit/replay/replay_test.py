#!/usr/bin/env -S /usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Plays logs with toravane-replay and compares its whole output with the second decoder in this folder.

Usage: replay_test.py REPLAY            the logs of tests/data, the tool's options and its errors
       replay_test.py REPLAY FOLDER     the logs of a folder; exit code 77, skipped, when it is not there
"""
import csv
import itertools
import json
import math
import pathlib
import re
import struct
import subprocess
import sys

from reference import HOT_START, Reference, frames, sentences

DATA = pathlib.Path(__file__).resolve().parent.parent.parent / "data"
SKIPPED = 77


def run(replay, *arguments, stdin=b""):
    return subprocess.run([replay, *map(str, arguments)], input=stdin, capture_output=True, check=False)


def output(replay, *arguments, stdin=b"", valid=True):
    result = run(replay, *arguments, stdin=stdin)
    assert result.returncode == (0 if valid else 1), result
    assert bool(result.stderr) != valid, result
    return result.stdout.decode("utf-8")


def check_stream(replay, name, data):
    """The tool's output for a stream of bytes, which is one piece on its standard input."""
    expected = Reference()
    expected.feed(data)
    valid = expected.count + expected.frame_count > 0

    page = output(replay, "-", stdin=data, valid=valid)
    assert page == "".join(line + "\n" for line in expected.lines), f"{name}: page\n{page}"
    stats = output(replay, "--stats", "-", stdin=data, valid=valid)
    assert stats == (f"Messages NMEA {expected.count} SiRF {expected.frame_count}\nBaudrate NMEA {expected.reported}\n"
                     f"Bytes {len(data)}\nProtocol {expected.protocol()}\n"), f"{name}: statistics\n{stats}"
    samples = [json.loads(line) for line in output(replay, "--samples", "-", stdin=data, valid=valid).splitlines()]
    assert len(samples) == len(expected.samples), f"{name}: {len(samples)} samples"
    for number, (sample, wanted) in enumerate(zip(samples, expected.samples)):
        same = sample["time"] == wanted["time"] and all(
            math.isclose(value, other, rel_tol=1e-14, abs_tol=1e-8)  # the two languages' sine and cosine
            for value, other in zip(sample["values"], wanted["values"]))
        assert same, f"{name}: sample {number}\n{sample}\n{wanted}"
    assert output(replay, "--messages", "-", stdin=data, valid=valid) == expected.text.replace("\r", ""), f"{name}: receiver text"
    commands = output(replay, "--commands", "-", stdin=data, valid=valid)
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
    parts = [output(replay, option, log) for option in ("--samples", "--page", "--stats", "--messages", "--sky", "--commands")]
    together = output(replay, "--commands", "--stats", "--page", "--sky", "--messages", "--samples", log)
    assert together == "".join(parts), "options together"
    assert output(replay, "-", stdin=log.read_bytes()) == output(replay, log), "standard input"

    data = log.read_bytes()
    first, second = pathlib.Path("first.part"), pathlib.Path("second.part")
    first.write_bytes(data[:1001])  # in the middle of a sentence
    second.write_bytes(data[1001:])
    assert output(replay, "--stats", first, second) == output(replay, "--stats", log), "files are one stream"
    first.unlink()
    second.unlink()

    for option in ("-h", "--help"):
        assert "Usage: toravane-replay [OPTIONS] FILE..." in output(replay, option), "help"
    assert output(replay, "--version").startswith("toravane-replay "), "version"
    for arguments, reason in ((["--colour", log], "--colour"),
                              (["no-such-file.txt"], "no-such-file.txt: No such file or directory"),
                              ([], "FILE is required"), (["--stats"], "FILE is required"),
                              ([DATA], "Is a directory"), (["--", "--stats"], "--stats: No such file or directory")):
        result = run(replay, *arguments)
        lines = result.stderr.decode().splitlines()
        assert result.returncode == 2 and len(lines) == 1 and not result.stdout, f"{arguments}: {result}"
        assert reason in lines[0] and lines[0].startswith("toravane-replay: "), f"{arguments}: {result}"


def check_nothing_valid(replay):
    """A log without a valid message is shown, and ends with an error."""
    for data in (b"", b"nothing", b"$GPGGA,1*00\r\n"):
        result = run(replay, "--stats", "-", stdin=data)
        assert result.returncode == 1 and result.stdout.startswith(b"Messages NMEA 0 SiRF 0\n"), result
        assert result.stderr == b"toravane-replay: no valid message of NMEA or SiRF binary was received\n", result


def check_failing_output(replay):
    """Standard output that is full or closed is an error, also for --help."""
    log = DATA / "walk-south-west.txt"
    for arguments in (["--help"], ["--version"], [log], ["--samples", log]):
        for redirection, reason in (("/dev/full", "No space left on device"), ("&-", "Bad file descriptor")):
            result = subprocess.run(["sh", "-c", f'"$0" "$@" >{redirection}', replay, *map(str, arguments)],
                                    capture_output=True, text=True, check=False)
            assert result.returncode == 2, f"{arguments} {redirection}: {result}"
            assert result.stderr == f"toravane-replay: standard output: {reason}\n", f"{arguments}: {result}"


def check_follow(replay):
    """Data from a pipe is shown while the pipe is still open."""
    data = (DATA / "walk-south-west.txt").read_bytes()
    with subprocess.Popen([replay, "--follow", "--samples", "--page", "-"], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE, bufsize=0) as process:
        process.stdin.write(data)
        process.stdin.flush()
        shown = b""
        while b"Fix:" not in shown:
            line = process.stdout.readline()
            assert line, "ended without a page"
            shown += line
        shown += process.communicate()[0]
        assert process.returncode == 0
    assert shown.endswith(output(replay, log := DATA / "walk-south-west.txt").encode()), "the last page"
    samples = [line for line in shown.decode().splitlines() if line.startswith("{")]
    assert samples == output(replay, "--samples", log).splitlines(), "every sample"


SATELLITES = {120: -15.5, 122: -142, 124: 21.5, 126: 25, 127: 64, 128: 55, 129: 140, 134: 178, 135: -133, 137: 145,
              138: -107.3}


def satellite(at, latitude, longitude):
    """Elevation and azimuth of a geostationary satellite, from the two positions in space."""
    phi, delta = math.radians(latitude), math.radians(at - longitude)
    there = (1 / 0.1512 * math.cos(delta), 1 / 0.1512 * math.sin(delta), 0)
    up, north = (math.cos(phi), 0, math.sin(phi)), (-math.sin(phi), 0, math.cos(phi))
    u, n = (sum(a * (t - b) for a, t, b in zip(axis, there, up)) for axis in (up, north))
    return math.degrees(math.atan2(u, math.hypot(n, there[1]))), math.degrees(math.atan2(there[1], n)) % 360


def check_satellites(rows, lines, latitude, longitude):
    assert list(rows) == [100, 101, *SATELLITES], rows
    visible = [[], [], []]
    for number, at in SATELLITES.items():
        elevation, azimuth = satellite(at, latitude, longitude)
        assert abs(rows[number][0] - elevation) < 1e-4, f"{number}: {rows[number]}, not {elevation}"
        if elevation < 0:
            continue
        assert abs(rows[number][1] - azimuth) < 1e-4, f"{number}: {rows[number]}, not {azimuth}"
        for line, text in zip(visible, (f"{number} ", f"{azimuth:03.0f} ", f"{elevation: 4.0f} ")):
            line.append(text)
    assert lines == ["".join(line) for line in visible], lines


def sky(replay, log, stdin=b"", valid=True):
    lines = output(replay, "--sky", log, stdin=stdin, valid=valid).splitlines()
    assert len(lines) == 16, lines
    for line in lines[:13]:
        assert re.fullmatch(r"\d{3}( -?\d+\.\d{9}){2}", line), line
    rows = {int(line.split()[0]): tuple(map(float, line.split()[1:])) for line in lines[:13]}
    return rows, lines[13:]


def geodetic(year, month, day, hour, minute, second, latitude, longitude):
    """A frame with message id 41 that contains the receiver's position and time."""
    payload = struct.pack(">BHHHIHBBBBHIii", 41, 0, 4, 0, 0, year, month, day, hour, minute, second * 1000, 0,
                          round(latitude * 1e7), round(longitude * 1e7)).ljust(91, b"\0")
    return (b"\xa0\xa2" + struct.pack(">H", len(payload)) + payload +
            struct.pack(">H", sum(payload) & 0x7FFF) + b"\xb0\xb3")


def check_sky(replay):
    rows, lines = sky(replay, "-", b"nothing", valid=False)
    assert set(rows.values()) == {(-90.0, 0.0)} and lines == ["", "", ""], "no fix"

    rows, lines = sky(replay, DATA / "walk-south-west.txt")
    check_satellites(rows, lines, -(33 + 26.912 / 60), -(70 + 40.158 / 60))

    count = 0
    with open(DATA / "sky_reference.csv", newline="") as table:
        for row in csv.DictReader(table):
            when = tuple(int(row[part]) for part in ("year", "month", "day", "hour", "minute", "second"))
            latitude, longitude = float(row["latitude"]), float(row["longitude"])
            if when[:3] != (2026, 6, 21) or abs(latitude) > 89 or longitude > 180:
                continue
            rows, lines = sky(replay, "-", geodetic(2000, 1, 1, 0, 0, 0, 0, 0) + geodetic(*when, latitude, longitude))
            for body, name, within in ((100, "sun", 0.05), (101, "moon", 0.15)):
                elevation, azimuth = float(row[name + " elevation"]), float(row[name + " azimuth"])
                turn = (rows[body][1] - 0.5 - azimuth + 180) % 360 - 180
                assert abs(rows[body][0] - 0.5 - elevation) < within, f"{name}: {rows[body]}"
                assert abs(turn) * math.cos(math.radians(elevation)) < within, f"{name}: {rows[body]}"
            for sv in SATELLITES:
                assert abs(rows[sv][0] - float(row[f"{sv} elevation"])) < 0.01, f"{sv}: {rows[sv]}"
            count += 1
    assert count >= 5, count
    print(f"sky: {count} places")


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
        check_nothing_valid(replay)
        check_failing_output(replay)
        check_follow(replay)
        check_sky(replay)
    return 0


sys.exit(main())
