# SPDX-License-Identifier: MIT
"""toravane-replay --chart: options, and a picture with known pixels. Usage: chart_test.py REPLAY"""
import os
import pathlib
import stat
import struct
import subprocess
import sys
import tempfile
import zlib

REPLAY = sys.argv[1]
WALK = pathlib.Path(__file__).resolve().parents[2] / "data" / "walk-south-west.txt"
NOTHING_VALID = 1
WHITE, GREY = (255, 255, 255), (0xC0, 0xC0, 0xC0)


def sentence(body):
    checksum = 0
    for character in body:
        checksum ^= ord(character)
    return f"${body}*{checksum:02X}\r\n"


def replay(*arguments, log=b""):
    return subprocess.run([REPLAY, *map(str, arguments)], input=log, capture_output=True, check=False)


def read_png(path):
    """Rows of (red, green, blue)."""
    data = path.read_bytes()
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    position, packed = 8, b""
    while position < len(data):
        length, kind = struct.unpack(">I4s", data[position:position + 8])
        body = data[position + 8:position + 8 + length]
        if kind == b"IHDR":
            width, height, depth, color = struct.unpack(">IIBB", body[:10])
            assert (depth, color) == (8, 2)
        if kind == b"IDAT":
            packed += body
        position += 12 + length
    raw, rows, before = zlib.decompress(packed), [], bytes(width * 3)
    for y in range(height):
        method, line = raw[y * (width * 3 + 1)], bytearray(raw[y * (width * 3 + 1) + 1:(y + 1) * (width * 3 + 1)])
        for i, value in enumerate(line):
            left = line[i - 3] if i >= 3 else 0
            corner = before[i - 3] if i >= 3 else 0
            paeth = min((left, before[i], corner), key=lambda p, a=left, b=before[i], c=corner: abs(a + b - c - p))
            line[i] = (value + (0, left, before[i], (left + before[i]) // 2, paeth)[method]) & 255
        rows.append([tuple(line[i:i + 3]) for i in range(0, width * 3, 3)])
        before = bytes(line)
    return rows


def refused(*arguments):
    result = replay(*arguments, "-")
    assert result.returncode == 2 and result.stderr.count(b"\n") == 1, (arguments, result)


with tempfile.TemporaryDirectory() as folder:
    file = pathlib.Path(folder) / "chart.png"
    for size in ("", "240", "0x5", "5x0", "-3x5", "20000x5", "5x5x5", "5x5 ", " 5x5", "+5x5", "5x+5", "5 x5", "axb"):
        refused("--chart", file, "--size", size)
    refused("--chart")
    refused("--chart", "")
    refused("--size")
    refused("--chart", pathlib.Path(folder) / "none" / "chart.png")
    refused("--chart", folder)

    # If a picture cannot be written, nothing is removed: no device, and no existing file.
    refused("--chart", "/dev/full")
    assert stat.S_ISCHR(os.stat("/dev/full").st_mode)
    pipe = pathlib.Path(folder) / "pipe"
    os.mkfifo(pipe)
    with subprocess.Popen(["cat", pipe], stdout=subprocess.PIPE) as reader:
        assert replay("--chart", pipe, "-").returncode == NOTHING_VALID
        assert reader.communicate()[0].startswith(b"\x89PNG")
    assert stat.S_ISFIFO(os.stat(pipe).st_mode)
    file.write_bytes(b"older")
    link = pathlib.Path(folder) / "link.png"
    link.symlink_to(file)
    limited = subprocess.run(["sh", "-c", 'trap "" XFSZ; ulimit -f 1; "$0" --chart "$1" --size 900x900 "$2"', REPLAY, link,
                              WALK], capture_output=True, check=False)
    assert limited.returncode == 2 and limited.stderr.endswith(b"File too large\n"), limited
    assert file.read_bytes() == b"older" and link.is_symlink()
    assert sorted(path.name for path in pathlib.Path(folder).iterdir()) == ["chart.png", "link.png", "pipe"]
    assert replay("--chart", link, "--size", "900x900", WALK).returncode == 0
    assert file.read_bytes().startswith(b"\x89PNG") and link.is_symlink()

    # The largest, in both directions.
    assert replay("--chart", file, "--size=16384x1", "-").returncode == NOTHING_VALID
    assert len(read_png(file)[0]) == 16384
    assert replay("--chart", file, "--size=1x16384", "-").returncode == NOTHING_VALID
    assert len(read_png(file)) == 16384

    assert replay("--chart", file, "-").stdout == b""  # the picture alone
    picture = read_png(file)
    assert (len(picture[0]), len(picture)) == (240, 268)
    assert all(pixel == WHITE for row in picture for pixel in row)

    # A fix in column 1 of five, which the window shows leftmost: edges of the bands in every column, and each
    # channel's dot at its lower limit, but for seven satellites: 7 of 0 to 12 in 255 to 267 is 262.
    fix = sentence("GPGGA,000001,0000.0000,N,00000.0000,E,1,07,0.0,20.0,M,0,M,,")
    assert replay("--chart", file, "--size", "5x268", "-", log=fix.encode()).returncode == 0
    picture = read_png(file)
    dots = {262: (0, 255, 255), 235: (0, 0xC0, 0xC0), 215: (255, 0, 255), 175: (0xC0, 0, 0xC0), 135: (0, 0, 255),
            115: (0, 0, 0xC0), 90: (0, 255, 0), 40: (0, 0xC0, 0), 20: (255, 0, 0), 0: (0xC0, 0, 0)}
    edges = (0, 20, 40, 90, 115, 135, 175, 215, 235, 255, 267)
    for height in range(268):
        line = GREY if height in edges else WHITE
        assert picture[267 - height] == [dots.get(height, line)] + [line] * 4, height

    # Counted from the first sample, its place lies in the middle of its bands: northing, easting and altitude.
    fix = sentence("GPGGA,000001,4530.0000,N,00730.0000,E,1,07,0.0,120.0,M,0,M,,")
    assert replay("--chart", file, "--size", "5x268", "--zero", "-", log=fix.encode()).returncode == 0
    picture = read_png(file)
    dots.pop(175), dots.pop(135), dots.pop(40)
    dots |= {195: (0xC0, 0, 0xC0), 155: (0, 0, 255), 65: (0, 0xC0, 0)}
    for height in range(268):
        line = GREY if height in edges else WHITE
        assert picture[267 - height] == [dots.get(height, line)] + [line] * 4, height
print("passed")
