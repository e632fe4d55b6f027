#!/usr/bin/env python3
"""Draws the pictures that a program folder ships: Gif/Scansione.Gif and Icon/{Files,Folders,Drive}.ico.

    python3 tools/draw-pictures.py [--check] [FOLDER]

FOLDER is the data folder, by default the repository's own. The same script gives the same bytes on every
run. With --check nothing is written: the status is 1 if a picture differs from what the script draws.
Needs nothing but Python 3.
"""
import argparse
import math
import pathlib
import struct
import sys
from collections import Counter

# ---------------------------------------------------------------------------------------------------------
# Colours. Those of the windows come first, so that the animation melts into the window behind it.

CLEAR = 0
COLOURS = {
    "clear": (0, 0, 0),
    "window": (188, 230, 247),
    "base": (3, 58, 80),
    "orange": (240, 86, 53),
    "white": (255, 255, 255),
    "line": (138, 198, 222),
    "shadow": (160, 208, 229),
    "orangeLight": (250, 138, 96),
    "orangeDark": (201, 62, 33),
    "paperEdge": (92, 143, 168),
    "paperFold": (205, 228, 238),
    "steel": (44, 104, 132),
    "steelDark": (22, 78, 103),
    "steelLight": (122, 176, 200),
}
PAINTS = list(COLOURS)
GLASS = len(PAINTS)  # Paint p seen through the lens is paint p + GLASS.


def throughGlass(rgb, tint=(178, 226, 247), percent=26):
    return tuple((channel * (100 - percent) + glass * percent) // 100 for channel, glass in zip(rgb, tint))


PALETTE = list(COLOURS.values()) + [throughGlass(rgb) for rgb in COLOURS.values()]
THROUGH_GLASS = bytes((p + GLASS if p < GLASS else p) % 256 for p in range(256))


# ---------------------------------------------------------------------------------------------------------
# Shapes: lists of points. Positions are rounded, so that the last bit of a platform's sine does not matter.


def exact(value):
    return round(value * 1024) / 1024


def rounded(points, radius):
    """The polygon with each corner replaced by a curve that starts `radius` before it."""
    result = []
    for i, (x, y) in enumerate(points):
        ends = []
        for nx, ny in (points[i - 1], points[(i + 1) % len(points)]):
            length = math.sqrt((nx - x) ** 2 + (ny - y) ** 2)
            part = min(radius / length, 0.5) if length else 0
            ends.append((x + (nx - x) * part, y + (ny - y) * part))
        for step in range(7):
            t = step / 6
            result.append(tuple((1 - t) ** 2 * a + 2 * t * (1 - t) * c + t * t * b
                                for a, b, c in zip(ends[0], ends[1], (x, y))))
    return result


def box(left, top, right, bottom, radius=0.0):
    points = [(left, top), (right, top), (right, bottom), (left, bottom)]
    return rounded(points, radius) if radius else points


def ellipse(cx, cy, rx, ry, start=0, end=360):
    steps = 72
    angles = [math.radians(start + (end - start) * i / steps) for i in range(steps + 1)]
    return [(exact(cx + rx * math.cos(a)), exact(cy + ry * math.sin(a))) for a in angles]


def arc(cx, cy, radius, width, start, end):
    return ellipse(cx, cy, radius, radius, start, end) + \
        ellipse(cx, cy, radius - width, radius - width, end, start)


def bar(x1, y1, x2, y2, width, radius):
    """A straight stroke of the given width with rounded ends."""
    length = math.sqrt((x2 - x1) ** 2 + (y2 - y1) ** 2)
    dx, dy = (y2 - y1) / length * width / 2, (x1 - x2) / length * width / 2
    return rounded([(x1 + dx, y1 + dy), (x2 + dx, y2 + dy), (x2 - dx, y2 - dy), (x1 - dx, y1 - dy)], radius)


def turned(points, degrees, cx, cy):
    sine, cosine = math.sin(math.radians(degrees)), math.cos(math.radians(degrees))
    return [(exact(cx + (x - cx) * cosine - (y - cy) * sine), exact(cy + (x - cx) * sine + (y - cy) * cosine))
            for x, y in points]


class Canvas:
    """One paint a sample, scale x scale samples a pixel; averaging them gives the smooth edges."""

    def __init__(self, width, height, scale, paint="clear"):
        self.width, self.height, self.scale = width, height, scale
        self.rows = [bytearray([PAINTS.index(paint)]) * (width * scale) for _ in range(height * scale)]

    def spans(self, points):
        """Yields (row, first sample, end) of the polygon; a sample counts where its middle is inside."""
        points = [(x * self.scale - 0.5, y * self.scale - 0.5) for x, y in points]
        top = max(0, math.ceil(min(y for _, y in points)))
        bottom = min(len(self.rows) - 1, math.floor(max(y for _, y in points)))
        edges = list(zip(points, points[1:] + points[:1]))
        for row in range(top, bottom + 1):
            cuts = sorted(x1 + (row - y1) * (x2 - x1) / (y2 - y1)
                          for (x1, y1), (x2, y2) in edges if (y1 <= row) != (y2 <= row))
            for left, right in zip(cuts[::2], cuts[1::2]):
                first = max(0, math.ceil(left))
                end = min(self.width * self.scale, math.ceil(right))
                if first < end:
                    yield row, first, end

    def fill(self, points, paint):
        number = PAINTS.index(paint)
        for row, first, end in self.spans(points):
            self.rows[row][first:end] = bytes([number]) * (end - first)

    def magnify(self, cx, cy, radius, factor):
        """Shows what lies round (cx, cy) larger, through glass."""
        before = [bytes(row) for row in self.rows]
        mx, my = cx * self.scale, cy * self.scale
        for row, first, end in self.spans(ellipse(cx, cy, radius, radius)):
            source = before[int(my + (row - my) / factor)]
            seen = bytes(source[int(mx + (x - mx) / factor)] for x in range(first, end))
            self.rows[row][first:end] = seen.translate(THROUGH_GLASS)

    def pixels(self):
        """Rows of (red, green, blue, alpha), colours not multiplied by alpha."""
        tables = [bytes([rgb[c] for rgb in PALETTE] + [0] * (256 - len(PALETTE))) for c in range(3)]
        tables.append(bytes([0] + [1] * 255))
        return [self._pixelRow(self.rows[y * self.scale:(y + 1) * self.scale], tables)
                for y in range(self.height)]

    def _pixelRow(self, rows, tables):
        sums = []
        for table in tables:
            lines = [row.translate(table) for row in rows]
            sums.append([sum(sum(line[x:x + self.scale]) for line in lines)
                         for x in range(0, self.width * self.scale, self.scale)])
        area = self.scale ** 2
        return [(r // n, g // n, b // n, (n * 255 + area // 2) // area) if n else (0, 0, 0, 0)
                for r, g, b, n in zip(*sums)]


# ---------------------------------------------------------------------------------------------------------
# The animation: a magnifying glass passes over the sheets in a folder, and each sheet under it rises.

WIDTH, HEIGHT, FRAMES, DELAY = 96, 64, 24, 8  # Delay in hundredths of a second.
MAX_COLOURS = 64


def drawSheet(canvas, cx, top, tilt):
    def put(points, paint):
        canvas.fill(turned(points, tilt, cx, 64), paint)
    left, right, fold = cx - 9, cx + 9, 6
    outline = [(left, top), (right - fold, top), (right, top + fold), (right, top + 40), (left, top + 40)]
    put(rounded([(left - 0.8, top - 0.8), (right - fold + 0.4, top - 0.8), (right + 0.8, top + fold - 0.4),
                 (right + 0.8, top + 40), (left - 0.8, top + 40)], 1.2), "paperEdge")
    put(rounded(outline, 0.8), "white")
    put(rounded([(right - fold, top), (right, top + fold), (right - fold, top + fold)], 0.6), "line")
    put(box(left + 3, top + 4, left + 9, top + 6.2, 1), "orange")
    for row in range(4):
        put(box(left + 3, top + 9 + row * 4, right - 3 - (row % 2) * 3, top + 10.8 + row * 4, 0.9), "line")


def drawFolderBack(canvas):
    canvas.fill(ellipse(48, 59.5, 43, 3.2), "shadow")
    canvas.fill(rounded([(10, 14), (25, 14), (31, 21), (86, 21), (86, 58), (10, 58)], 3), "orangeDark")


def drawFolderFront(canvas):
    canvas.fill(box(9, 37, 87, 60, 4), "orange")
    canvas.fill(box(12, 37, 84, 38.5, 0.7), "orangeLight")


def drawLens(canvas, cx, cy):
    radius, slope = 13.5, math.sqrt(0.5)
    at = [(cx + slope * d, cy + slope * d) for d in (radius - 1, radius + 5, radius + 16)]
    canvas.fill(bar(*at[0], *at[1], 3.4, 0), "steel")
    canvas.fill(bar(*at[1], *at[2], 6, 2.6), "base")
    canvas.magnify(cx, cy, radius - 2, 1.4)
    canvas.fill(arc(cx, cy, radius, 2.6, 0, 360), "base")
    canvas.fill(arc(cx, cy, radius - 4.2, 1.5, 190, 250), "white")


def drawFrame(number):
    canvas = Canvas(WIDTH, HEIGHT, 6, "window")
    angle = 2 * math.pi * number / FRAMES
    cx, cy = exact(47 - 23 * math.cos(angle)), exact(24 + 3 * math.sin(2 * angle))
    drawFolderBack(canvas)
    for middle, tilt in ((34, -5), (70, 5), (52, 0)):
        near = max(0.0, 1 - abs(cx - middle) / 16)
        rise = near * near * (3 - 2 * near)
        drawSheet(canvas, middle, exact(12 - 5 * rise), tilt)
    drawFolderFront(canvas)
    drawLens(canvas, cx, cy)
    return [pixel[:3] for row in canvas.pixels() for pixel in row]


# ---------------------------------------------------------------------------------------------------------
# GIF


def distance(a, b):
    return 3 * (a[0] - b[0]) ** 2 + 6 * (a[1] - b[1]) ** 2 + (a[2] - b[2]) ** 2


def choosePalette(frames, size):
    """The plain colours, then again and again the colour that the palette so far serves worst."""
    counts = Counter(pixel for frame in frames for pixel in frame)
    palette = [rgb for rgb in PALETTE if counts[rgb] >= 24 * FRAMES]
    error = {rgb: min(distance(rgb, known) for known in palette) for rgb in sorted(counts)}
    while len(palette) < size:
        worst = max(error, key=lambda rgb: error[rgb] * min(counts[rgb], 50))
        palette.append(worst)
        error = {rgb: min(old, distance(rgb, worst)) for rgb, old in error.items()}
    return palette


def toIndices(frames, palette):
    nearest = {rgb: min(range(len(palette)), key=lambda i: distance(rgb, palette[i]))
               for rgb in sorted({pixel for frame in frames for pixel in frame})}
    return [bytes(nearest[pixel] for pixel in frame) for frame in frames]


class CodeWriter:
    """Packs codes of growing size into bytes, lowest bit first, and keeps step with the reader's table."""

    def __init__(self, bits):
        self.clear, self.firstSize = 1 << bits, bits + 1
        self.data, self.buffer, self.held = bytearray(), 0, 0
        self.size = self.firstSize
        self.reset()

    def reset(self):
        self.put(self.clear)
        self.size, self.next = self.firstSize, self.clear + 2

    def put(self, code):
        self.buffer |= code << self.held
        self.held += self.size
        while self.held >= 8:
            self.data.append(self.buffer & 255)
            self.buffer >>= 8
            self.held -= 8

    def putAndGrow(self, code):
        """Writes a code and gives the number of the table entry that comes with it."""
        self.put(code)
        entry = self.next
        if entry == 1 << self.size and self.size < 12:
            self.size += 1
        self.next += 1
        return entry

    def finish(self):
        self.put(self.clear + 1)
        if self.held:
            self.data.append(self.buffer & 255)
        return bytes(self.data)


def compress(indices, bits):
    """LZW. The table is emptied before it is full, because readers differ in what a full one means."""
    writer, table, prefix = CodeWriter(bits), {}, indices[0]
    for index in indices[1:]:
        known = table.get((prefix, index))
        if known is not None:
            prefix = known
            continue
        table[prefix, index] = writer.putAndGrow(prefix)
        prefix = index
        if writer.next == 4095:
            # The reader takes the first code after a clear as a plain pixel, and so does the new table.
            writer.reset()
            table = {}
    writer.putAndGrow(prefix)
    return writer.finish()


def subBlocks(data):
    parts = [data[i:i + 255] for i in range(0, len(data), 255)]
    return b"".join(bytes([len(part)]) + part for part in parts) + b"\0"


def imageBlock(indices, left, top, width, height, transparent):
    """One frame that stays on the screen; `transparent` is an index, or None for a frame without one."""
    bits = (MAX_COLOURS - 1).bit_length()
    flags = 1 << 2 | (transparent is not None)
    return (struct.pack("<3sBHBB", b"\x21\xf9\x04", flags, DELAY, transparent or 0, 0) +
            struct.pack("<BHHHHBB", 0x2C, left, top, width, height, 0, bits) +
            subBlocks(compress(indices, bits)))


def changedBox(before, after):
    places = [i for i, (a, b) in enumerate(zip(before, after)) if a != b]
    columns = [i % WIDTH for i in places]
    return min(columns), places[0] // WIDTH, max(columns) + 1, places[-1] // WIDTH + 1


def changeBlock(before, after, transparent):
    """What differs from the frame before; the rest of the box is transparent and shows what is there."""
    left, top, right, bottom = changedBox(before, after)
    places = [y * WIDTH + x for y in range(top, bottom) for x in range(left, right)]
    indices = [after[i] if after[i] != before[i] else transparent for i in places]
    return imageBlock(bytes(indices), left, top, right - left, bottom - top, transparent)


def animation():
    """Frames only add to the picture, without interlacing and local palettes: every viewer shows them alike.
    The first covers the whole screen without a transparent pixel, so the loop starts clean."""
    frames = [drawFrame(number) for number in range(FRAMES)]
    palette = choosePalette(frames, MAX_COLOURS - 1)
    transparent = len(palette)
    indexed = toIndices(frames, palette)
    colours = b"".join(bytes(rgb) for rgb in palette + [COLOURS["window"]])
    head = b"GIF89a" + struct.pack("<HHBBB", WIDTH, HEIGHT, 0xF0 | (MAX_COLOURS - 1).bit_length() - 1,
                                   palette.index(COLOURS["window"]), 0)
    forever = b"\x21\xff\x0bNETSCAPE2.0\x03\x01\x00\x00\x00"
    images = imageBlock(indexed[0], 0, 0, WIDTH, HEIGHT, None)
    images += b"".join(changeBlock(a, b, transparent) for a, b in zip(indexed, indexed[1:]))
    return head + colours + forever + images + b"\x3b"


# ---------------------------------------------------------------------------------------------------------
# Icons. Each is laid out on a grid of 48; edges go to whole pixels, so that small sizes stay crisp.


def grid(size):
    return lambda value: math.floor(value * size / 48 + 0.5)


def drawFiles(canvas, size):
    at, thin = grid(size), max(1, size // 24)
    left, top, right, bottom, fold = at(9), at(3), at(39), at(45), at(12)
    outer = [(left, top), (right - fold, top), (right, top + fold), (right, bottom), (left, bottom)]
    canvas.fill(rounded(outer, size / 20), "paperEdge")
    inner = [(left + thin, top + thin), (right - fold - thin * 0.4, top + thin),
             (right - thin, top + fold + thin * 0.4), (right - thin, bottom - thin), (left + thin, bottom - thin)]
    canvas.fill(rounded(inner, size / 32), "white")
    canvas.fill([(right - fold, top), (right, top + fold), (right - fold, top + fold)], "paperEdge")
    height = max(1, at(3))
    canvas.fill(box(at(15), at(12), at(24), at(12) + height), "orange")
    for y in (21, 27, 33):
        canvas.fill(box(at(15), at(y), at(33), at(y) + height), "line")


def drawFolders(canvas, size):
    at = grid(size)
    canvas.fill(rounded([(at(4), at(7)), (at(18), at(7)), (at(23), at(13)), (at(44), at(13)),
                         (at(44), at(40)), (at(4), at(40))], size / 14), "orangeDark")
    canvas.fill(box(at(8), at(16), at(40), at(30)), "white")
    canvas.fill(box(at(3), at(20), at(45), at(42), size / 14), "orange")
    canvas.fill(box(at(6), at(20), at(42), at(20) + max(1, at(2))), "orangeLight")


def drawDrive(canvas, size):
    at = grid(size)
    canvas.fill(rounded([(at(10), at(9)), (at(38), at(9)), (at(45), at(29)), (at(3), at(29))], size / 16),
                "steelLight")
    canvas.fill(box(at(3), at(24), at(45), at(40), size / 12), "steel")
    canvas.fill(box(at(9), at(31), at(27), at(31) + max(1, at(3))), "base")
    light = at(6)
    canvas.fill(box(at(35), at(30), at(35) + light, at(30) + light, light / 2 if size > 16 else 0), "orange")


def iconImage(draw, size):
    """A bitmap of 32 bits with straight alpha, then the mask that old viewers use instead of the alpha."""
    canvas = Canvas(size, size, 8)
    draw(canvas, size)
    colours, mask = b"", b""
    for row in reversed(canvas.pixels()):
        colours += b"".join(bytes((b, g, r, a)) for r, g, b, a in row)
        bits = "".join("0" if pixel[3] else "1" for pixel in row).ljust((size + 31) // 32 * 32, "0")
        mask += int(bits, 2).to_bytes(len(bits) // 8, "big")
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(colours) + len(mask), 0, 0, 0, 0)
    return header + colours + mask


def icon(draw, sizes=(16, 32, 48)):
    images = [iconImage(draw, size) for size in sizes]
    directory, offset = struct.pack("<HHH", 0, 1, len(images)), 6 + 16 * len(images)
    for size, image in zip(sizes, images):
        directory += struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    return directory + b"".join(images)


# ---------------------------------------------------------------------------------------------------------


def pictures():
    return {"Gif/Scansione.Gif": animation(), "Icon/Files.ico": icon(drawFiles),
            "Icon/Folders.ico": icon(drawFolders), "Icon/Drive.ico": icon(drawDrive)}


def main():
    parser = argparse.ArgumentParser(description="Draws the pictures of the program folder.")
    parser.add_argument("--check", action="store_true", help="compare with the files, write nothing")
    parser.add_argument("folder", nargs="?", type=pathlib.Path, help="the data folder",
                        default=pathlib.Path(__file__).resolve().parent.parent / "data")
    options = parser.parse_args()
    differing = 0
    for name, data in pictures().items():
        path = options.folder / name
        if options.check:
            same = path.is_file() and path.read_bytes() == data
            differing += not same
            print(f"{name}: {'same' if same else 'DIFFERS'}")
        else:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(data)
            print(f"{name}: {len(data)} bytes")
    return 1 if differing else 0


if __name__ == "__main__":
    sys.exit(main())
