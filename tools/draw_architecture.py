#!/usr/bin/env python3
"""Draws the house from its includes: rooms on their floors, an arrow for every room that takes from another.

    python3 tools/draw_architecture.py > docs/architecture.svg

What everyone takes from (base, text, bridge, catalogue; in the small host base and charset) would hide the rest under
arrows: those rooms show as ground, with the number of rooms that take from them.
"""
import pathlib
import sys
from xml.sax.saxutils import escape

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests/repository"))
import house  # noqa: E402

GROUND = {"src/base", "src/text", "src/bridge", "src/catalogue", "host/base", "host/charset"}
BOX_WIDTH, BOX_HEIGHT, GAP, FLOOR_HEIGHT, MARGIN, TOP = 106, 34, 16, 92, 24, 64


def places(floors, prefix, left, width):
    """{room: (x, y of its box)}; the roof is at the top."""
    found = {}
    for floor, rooms in enumerate(floors):
        row = len(rooms) * BOX_WIDTH + (len(rooms) - 1) * GAP
        x = left + (width - row) // 2
        y = TOP + (max(len(house.LIBRARY), len(house.HOST)) - 1 - floor) * FLOOR_HEIGHT
        for room in rooms:
            found[f"{prefix}/{room}"] = (x, y)
            x += BOX_WIDTH + GAP
    return found


def arrow(start, end, crossing):
    (x1, y1), (x2, y2) = start, end
    x1, y1, x2 = x1 + BOX_WIDTH // 2, y1 + BOX_HEIGHT, x2 + BOX_WIDTH // 2
    bend = (y2 - y1) // 2
    kind = "across" if crossing else "down"
    return f'<path class="{kind}" d="M{x1} {y1} C{x1} {y1 + bend} {x2} {y2 - bend} {x2} {y2}" marker-end="url(#tip)"/>'


def draw():
    arrows = house.arrows(house.repository_files())
    row = max(len(rooms) for rooms in house.LIBRARY + house.HOST)
    width = row * BOX_WIDTH + (row - 1) * GAP
    boxes = places(house.LIBRARY, "src", MARGIN, width)
    right = 2 * MARGIN + width
    boxes.update(places(house.HOST, "host", right, width // 2))
    total = right + width // 2 + MARGIN
    height = TOP + max(len(house.LIBRARY), len(house.HOST)) * FLOOR_HEIGHT
    taken = {room: sum(1 for pair in arrows if pair[1] == room) for room in GROUND}
    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {total} {height}" font-family="sans-serif" font-size="12">',
        "<title>The rooms of the library and of the small host, and which takes from which</title>",
        "<style>rect{fill:#eef3f8;stroke:#345;rx:4}rect.ground{fill:#e6e0d2}text{text-anchor:middle}"
        "path{fill:none;stroke:#678;stroke-width:1.2}path.across{stroke:#b63;stroke-dasharray:5 3}"
        ".head{font-size:16px;font-weight:bold}.small{font-size:10px;fill:#555}</style>",
        '<defs><marker id="tip" viewBox="0 0 8 8" refX="8" refY="4" markerWidth="7" markerHeight="7" orient="auto">'
        '<path d="M0 0L8 4L0 8z" fill="#678" stroke="none"/></marker></defs>',
        f'<text class="head" x="{MARGIN + width // 2}" y="28">src: the library</text>',
        f'<text class="head" x="{right + width // 4}" y="28">host: the small host</text>',
    ]
    for pair in sorted(arrows):
        if pair[0] in boxes and pair[1] in boxes and pair[1] not in GROUND:
            lines.append(arrow(boxes[pair[0]], boxes[pair[1]], pair[0].split("/")[0] != pair[1].split("/")[0]))
    for room in sorted(boxes):
        x, y = boxes[room]
        name = room.split("/")[1]
        kind = ' class="ground"' if room in GROUND else ""
        lines.append(f'<rect{kind} x="{x}" y="{y}" width="{BOX_WIDTH}" height="{BOX_HEIGHT}"/>')
        size = ' font-size="9"' if len(name) > 15 else ""
        lines.append(f'<text x="{x + BOX_WIDTH // 2}" y="{y + 21}"{size}>{escape(name)}</text>')
        if room in GROUND:
            lines.append(f'<text class="small" x="{x + BOX_WIDTH // 2}" y="{y + BOX_HEIGHT + 12}">'
                         f"{taken[room]} rooms take from it</text>")
    return "\n".join(lines + ["</svg>"]) + "\n"


if __name__ == "__main__":
    sys.stdout.write(draw())
