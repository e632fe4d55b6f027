#!/usr/bin/env python3
"""Draws a terminal picture (SVG) of text on standard input: draw-demo.py TITLE < text > docs/demo.svg

A line that begins with "$ " is drawn as a command, one that begins with "# " as a remark. Long lines are cut. The
picture needs no font beyond the reader's own monospaced one.
"""

import sys
from html import escape

COLUMNS = 120
CELL_WIDTH = 7.8
LINE_HEIGHT = 18
MARGIN = 16
BAR = 34

FONT = "ui-monospace, 'DejaVu Sans Mono', Menlo, Consolas, monospace"
PLAIN, TITLE, COMMAND, REMARK = "#d5dae3", "#9aa4b5", "#8fd694", "#e6c37a"


def cut(line):
    return line if len(line) <= COLUMNS else line[: COLUMNS - 1] + "…"


def colour_of(line):
    return {"$ ": COMMAND, "# ": REMARK}.get(line[:2], PLAIN)


def text(x, y, colour, content, anchor="start"):
    # No viewer folds no-break spaces, so columns stay columns.
    content = escape(content).replace(" ", "\u00a0")
    return f'<text x="{x}" y="{y}" fill="{colour}" text-anchor="{anchor}">{content}</text>'


def draw(title, lines):
    """Gives the picture line by line. It uses attributes alone, since some viewers drop style sheets."""
    width = round(COLUMNS * CELL_WIDTH + 2 * MARGIN)
    height = BAR + len(lines) * LINE_HEIGHT + 2 * MARGIN
    yield f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" viewBox="0 0 {width} {height}">'
    yield f"<title>{escape(title)}</title>"
    yield f'<rect width="{width}" height="{height}" rx="8" fill="#1b1f27"/>'
    yield f'<rect width="{width}" height="{BAR}" rx="8" fill="#2b313c"/>'
    for index, colour in enumerate(("#e0645c", "#e3b54a", "#6cbf5f")):
        yield f'<circle cx="{MARGIN + 4 + index * 18}" cy="{BAR // 2}" r="5" fill="{colour}"/>'
    yield f'<g font-family="{FONT}" font-size="13" xml:space="preserve">'
    yield text(width // 2, BAR // 2 + 5, TITLE, title, "middle")
    for index, line in enumerate(lines):
        yield text(MARGIN, BAR + MARGIN + index * LINE_HEIGHT + 12, colour_of(line), cut(line))
    yield "</g></svg>"


def main():
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 64
    lines = sys.stdin.read().rstrip("\n").split("\n")
    print("\n".join(draw(sys.argv[1], lines)))
    return 0


if __name__ == "__main__":
    sys.exit(main())
