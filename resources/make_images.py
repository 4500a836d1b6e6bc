#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws the program's icon, in all colours and in sixteen for devices, and the 6 x 8 cell bitmap; run it again after a
change and commit the files."""
import math
import pathlib
import struct

HERE = pathlib.Path(__file__).parent


def pixels_of_icon(size, shades=None):
    """A globe with an orbit and a satellite; rows from the bottom, BGRA. `shades`: of its shading, if limited."""
    centre, radius = (size - 1) / 2, size * 0.33
    rows = []
    for row in range(size):
        y = size - 1 - row
        line = bytearray()
        for x in range(size):
            dx, dy = x - centre, y - centre
            distance = math.hypot(dx, dy)
            blue, green, red, alpha = 0, 0, 0, 0
            if distance <= radius:
                shade = 1 - 0.5 * (distance / radius if not shades else int(distance / radius * (shades - 1)) / (shades - 1))
                meridian = abs(abs(dx) - radius * 0.5 * math.sqrt(max(0, 1 - (dy / radius) ** 2))) < size / 40
                parallel = abs(dy) < size / 40
                if meridian or parallel:
                    blue, green, red, alpha = 255, 230, 200, 255
                else:
                    blue, green, red, alpha = int(230 * shade), int(130 * shade), int(40 * shade), 255
            u, v = (dx + dy) / math.sqrt(2), (dx - dy) / math.sqrt(2)
            ellipse = math.hypot(u / (size * 0.47), v / (size * 0.2))
            if abs(ellipse - 1) < 0.09 and (distance > radius or v > 0):
                blue, green, red, alpha = 60, 60, 220, 255
            if math.hypot(dx - size * 0.30, dy + size * 0.30) < size * 0.09:
                blue, green, red, alpha = 40, 190, 250, 255
            line += bytes((blue, green, red, alpha))
        rows.append(bytes(line))
    return b"".join(rows)


def icon_image(size):
    mask_stride = (size + 31) // 32 * 4
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    return header + pixels_of_icon(size) + bytes(mask_stride * size)


def icon_image_of_16_colours(size):
    """Two pixels per byte, and one bit per pixel for transparency; early devices know no other icons."""
    bgra = pixels_of_icon(size, shades=10)
    pixels = [bgra[i:i + 4] for i in range(0, len(bgra), 4)]
    colours = sorted({bytes(3)} | {pixel[:3] for pixel in pixels if pixel[3]})  # black first: the transparent pixels
    assert len(colours) <= 16
    numbers = [colours.index(pixel[:3]) if pixel[3] else 0 for pixel in pixels]
    mask_stride = (size + 31) // 32 * 4
    mask = bytearray(mask_stride * size)
    for i, pixel in enumerate(pixels):
        if not pixel[3]:
            mask[i // size * mask_stride + i % size // 8] |= 0x80 >> i % 8
    palette = b"".join(colour + b"\0" for colour in colours).ljust(64, b"\0")
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 4, 0, 0, 0, 0, 0, 0)
    return header + palette + bytes(a << 4 | b for a, b in zip(numbers[::2], numbers[1::2])) + bytes(mask)


def write_icon(path, sizes, colour_count, bits, image_of):
    images = [image_of(size) for size in sizes]
    offset = 6 + 16 * len(sizes)
    out = struct.pack("<HHH", 0, 1, len(sizes))
    for size, image in zip(sizes, images):
        out += struct.pack("<BBBBHHII", size, size, colour_count, 0, 1, bits, len(image), offset)
        offset += len(image)
    path.write_bytes(out + b"".join(images))


def write_cell(path):
    """One character cell with a frame, one bit a pixel."""
    rows = [0b11111100] + [0b10000100] * 6 + [0b11111100]
    bits = b"".join(struct.pack("BBBB", row, 0, 0, 0) for row in reversed(rows))
    header = struct.pack("<IiiHHIIiiII", 40, 6, 8, 1, 1, 0, len(bits), 0, 0, 2, 0)
    palette = b"\xff\xff\xff\x00\x00\x00\x00\x00"
    offset = 14 + len(header) + len(palette)
    path.write_bytes(struct.pack("<2sIHHI", b"BM", offset + len(bits), 0, 0, offset) + header + palette + bits)


write_icon(HERE / "toravane.ico", (16, 32), 0, 32, icon_image)
write_icon(HERE.parent / "platform/device/toravane.ico", (16, 32), 16, 4, icon_image_of_16_colours)
write_cell(HERE / "6x8.bmp")
