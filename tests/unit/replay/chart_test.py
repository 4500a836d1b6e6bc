"""toravane-replay --chart: options, and a picture whose every pixel is known. Usage: chart_test.py REPLAY"""
import pathlib
import struct
import subprocess
import sys
import tempfile
import zlib

REPLAY = sys.argv[1]
WHITE, GREY = (255, 255, 255), (0xC0, 0xC0, 0xC0)


def sentence(body):
    checksum = 0
    for character in body:
        checksum ^= ord(character)
    return f"${body}*{checksum:02X}\r\n"


def replay(*arguments, log=b""):
    return subprocess.run([REPLAY, *arguments], input=log, capture_output=True, check=False)


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
    for size in ("", "240", "0x5", "5x0", "-3x5", "20000x5", "5x5x5", "5x5 ", "axb"):
        refused("--chart", file, "--size", size)
    refused("--chart")
    refused("--size")
    refused("--chart", pathlib.Path(folder) / "none" / "chart.png")

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
print("passed")
