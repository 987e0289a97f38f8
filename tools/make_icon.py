#!/usr/bin/env python3
"""Draws res/Qorvenix.ico: a magnifier in the shape of a Q on a rounded tile.

    tools/make_icon.py [OUTPUT.ico] [--png FOLDER]

Every size is drawn for itself from the same shapes, with thicker strokes and edges on whole pixels
where there are few of them. 64 pixels and more are PNG inside the file (only systems that read
PNG ask for them), the smaller ones bitmaps as every Windows reads them.
"""
import argparse
import math
import os
import struct
import zlib

SIZES = (16, 20, 24, 32, 48, 64, 128, 256)
TOP, BOTTOM = (38, 196, 178), (20, 92, 190)  # teal to blue, from the upper left to the lower right
WHITE = (255, 255, 255)


def rounded_box(x, y, half, radius):
    """Distance to a square around (0, 0), negative inside."""
    qx, qy = abs(x) - half + radius, abs(y) - half + radius
    return math.hypot(max(qx, 0), max(qy, 0)) + min(max(qx, qy), 0) - radius


def segment(x, y, x0, y0, x1, y1):
    """Distance to a line with round ends of no width."""
    dx, dy = x1 - x0, y1 - y0
    t = max(0, min(1, ((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy)))
    return math.hypot(x - x0 - t * dx, y - y0 - t * dy)


def drawing(size):
    """Shapes in pixels of this size: tile, ring, tail."""
    margin = 0 if size <= 24 else size / 32
    stroke = max(2.0, round(size * 0.115 * 2) / 2)
    radius = size * 0.265
    cx = cy = size * 0.47
    if size <= 24:
        radius, cx, cy = size * 0.29, size * 0.47, size * 0.47
    tail = (cx + radius * 0.30, cy + radius * 0.30, size * 0.80, size * 0.80)
    return margin, stroke, radius, cx, cy, tail


def pixel(size, x, y, shapes):
    margin, stroke, radius, cx, cy, tail = shapes
    box = rounded_box(x - size / 2, y - size / 2, size / 2 - margin, size * 0.22)
    if box > 0:
        return None
    ring = abs(math.hypot(x - cx, y - cy) - radius) - stroke / 2
    handle = segment(x, y, *tail) - stroke / 2
    if min(ring, handle) <= 0:
        return WHITE
    t = (x + y) / (2 * size)
    colour = [a + (b - a) * t for a, b in zip(TOP, BOTTOM)]
    if math.hypot(x - cx, y - cy) < radius:  # the glass is a little brighter
        colour = [c + (255 - c) * 0.14 for c in colour]
    return colour


def render(size):
    """Rows of (r, g, b, a), each pixel the mean of a grid of samples."""
    grid = 8 if size <= 64 else 4
    shapes = drawing(size)
    rows = []
    for py in range(size):
        row = []
        for px in range(size):
            total, hits = [0.0, 0.0, 0.0], 0
            for sy in range(grid):
                for sx in range(grid):
                    colour = pixel(size, px + (sx + 0.5) / grid, py + (sy + 0.5) / grid, shapes)
                    if colour:
                        hits += 1
                        for i in range(3):
                            total[i] += colour[i]
            rgb = [round(c / hits) for c in total] if hits else [0, 0, 0]
            row.append((*rgb, round(255 * hits / grid / grid)))
        rows.append(row)
    return rows


def png(rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    # Each row as its difference to the row above (filter 2), which compresses the gradient well.
    raw, above = b"", bytes(4 * len(rows))
    for row in rows:
        line = bytes(v for p in row for v in p)
        raw += b"\2" + bytes((a - b) & 255 for a, b in zip(line, above))
        above = line
    header = struct.pack(">IIBBBBB", len(rows), len(rows), 8, 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 9))
            + chunk(b"IEND", b""))


def bitmap(rows):
    """32 bits a pixel, bottom row first, then the mask for systems that know no transparency."""
    size = len(rows)
    colours = b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    mask = b""
    for row in reversed(rows):
        bits = "".join("1" if a < 128 else "0" for *_, a in row).ljust((size + 31) // 32 * 32, "0")
        mask += int(bits, 2).to_bytes(len(bits) // 8, "big")
    return struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0) + colours + mask


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("output", nargs="?", default="res/Qorvenix.ico")
    parser.add_argument("--png", help="also write every size as a PNG into this folder")
    arguments = parser.parse_args()
    directory, images = b"", b""
    for size in SIZES:
        rows = render(size)
        image = png(rows) if size >= 64 else bitmap(rows)
        offset = 6 + 16 * len(SIZES) + len(images)
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(image), offset)
        images += image
        if arguments.png:
            with open(os.path.join(arguments.png, f"{size}.png"), "wb") as file:
                file.write(png(rows))
    with open(arguments.output, "wb") as file:
        file.write(struct.pack("<HHH", 0, 1, len(SIZES)) + directory + images)


main()
