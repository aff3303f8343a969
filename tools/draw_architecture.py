#!/usr/bin/env python3
"""Draws the house from its includes: rooms on their floors, an arrow for every room that takes from another.

    python3 tools/draw_architecture.py > docs/architecture.svg

What everyone takes from (base, text, bridge, catalogue; in the small host base and charset) would hide the rest under
arrows: those rooms show as ground, with the number of rooms that take from them. What the small host takes of the
library stands as names under the rooms that it takes from. Floors move sideways until few arrows pass behind a room.
"""
import pathlib
import sys
from xml.sax.saxutils import escape

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests/repository"))
import house  # noqa: E402

GROUND = {"src/base", "src/text", "src/bridge", "src/catalogue", "host/base", "host/files", "host/charset"}
BOX_WIDTH, BOX_HEIGHT, GAP, FLOOR_HEIGHT, MARGIN, TOP = 106, 34, 16, 92, 24, 64
STEP = (BOX_WIDTH + GAP) // 2
ROUNDS = 4  # of moving floors; a further one changes nothing
POINTS = [i / 16 for i in range(1, 16)]  # of an arrow, where it is looked at


def house_of(room):
    return room.split("/")[0]


def floor_width(rooms):
    return len(rooms) * BOX_WIDTH + (len(rooms) - 1) * GAP


class Plan:
    """Where the rooms of one house stand: floors bottom up, each moved sideways by a number of steps."""

    def __init__(self, floors, prefix, left, width, arrows):
        self.floors = [[f"{prefix}/{room}" for room in rooms] for rooms in floors]
        self.left, self.width = left, width
        self.moves = [0] * len(floors)
        self.arrows = [pair for pair in sorted(arrows) if house_of(pair[0]) == house_of(pair[1]) == prefix
                       and pair[1] not in GROUND]
        self.places = self.find_places()

    def find_places(self):
        """{room: (x, y of its box)}; the roof is at the top."""
        found = {}
        for floor, rooms in enumerate(self.floors):
            x = self.left + (self.width - floor_width(rooms)) // 2 + self.moves[floor] * STEP
            y = TOP + (max(len(house.LIBRARY), len(house.HOST)) - 1 - floor) * FLOOR_HEIGHT
            for room in rooms:
                found[room] = (x, y)
                x += BOX_WIDTH + GAP
        return found

    def cost(self):
        """Points of arrows that lie behind rooms, and, much less, how far arrows lead aside."""
        hidden = aside = 0
        for start, end in self.arrows:
            if start not in self.places or end not in self.places:
                continue
            curve = curve_of(self.places[start], self.places[end])
            aside += abs(curve[0][0] - curve[3][0])
            low, high = curve[0][1], curve[3][1]
            between = [place for place in self.places.values() if low < place[1] + BOX_HEIGHT and place[1] < high]
            for x, y in (point_of(curve, t) for t in POINTS):
                hidden += any(left - 4 < x < left + BOX_WIDTH + 4 and top - 4 < y < top + BOX_HEIGHT + 4
                              for left, top in between)
        return hidden * 1000 + aside

    def settle(self):
        """Moves one floor after the other to where it hides least."""
        for _ in range(ROUNDS):
            for floor, rooms in enumerate(self.floors):
                most = (self.width - floor_width(rooms)) // 2 // STEP
                self.moves[floor] = min(range(-most, most + 1), key=lambda move: (self.cost_at(floor, move), abs(move)))
                self.places = self.find_places()
        return self.places

    def cost_at(self, floor, move):
        self.moves[floor] = move
        self.places = self.find_places()
        return self.cost()


def curve_of(start, end):
    (x1, y1), (x2, y2) = start, end
    x1, y1, x2 = x1 + BOX_WIDTH // 2, y1 + BOX_HEIGHT, x2 + BOX_WIDTH // 2
    bend = (y2 - y1) // 2
    return (x1, y1), (x1, y1 + bend), (x2, y2 - bend), (x2, y2)


def point_of(curve, t):
    weights = (1 - t) ** 3, 3 * t * (1 - t) ** 2, 3 * t * t * (1 - t), t ** 3
    return tuple(sum(weight * point[axis] for weight, point in zip(weights, curve)) for axis in (0, 1))


def arrow(start, end):
    (x1, y1), (x2, y2), (x3, y3), (x4, y4) = curve_of(start, end)
    return f'<path d="M{x1} {y1} C{x2} {y2} {x3} {y3} {x4} {y4}" marker-end="url(#tip)"/>'


def labels(room, arrows):
    """(class, text) of the lines under a room."""
    if room in GROUND:
        yield "small", f"{sum(1 for pair in arrows if pair[1] == room)} rooms take from it"
    elif house_of(room) == "src":
        takers = sorted(pair[0].split("/")[1] for pair in arrows if pair[1] == room and house_of(pair[0]) == "host")
        if takers:
            yield "host", "host: " + ", ".join(takers)


def box(room, place, arrows):
    (x, y), name = place, room.split("/")[1]
    kind = ' class="ground"' if room in GROUND else ""
    size = ' font-size="9"' if len(name) > 15 else ""
    yield f'<rect{kind} x="{x}" y="{y}" width="{BOX_WIDTH}" height="{BOX_HEIGHT}"/>'
    yield f'<text x="{x + BOX_WIDTH // 2}" y="{y + 21}"{size}>{escape(name)}</text>'
    for kind, text in labels(room, arrows):
        yield f'<text class="{kind}" x="{x + BOX_WIDTH // 2}" y="{y + BOX_HEIGHT + 12}">{escape(text)}</text>'


def draw():
    arrows = house.arrows(house.repository_files())
    width = max(floor_width(rooms) for rooms in house.LIBRARY)
    host_width = max(floor_width(rooms) for rooms in house.HOST) + 4 * STEP
    right = 2 * MARGIN + width
    library = Plan(house.LIBRARY, "src", MARGIN, width, arrows)
    host = Plan(house.HOST, "host", right, host_width, arrows)
    boxes = {**library.settle(), **host.settle()}
    total = right + host_width + MARGIN
    height = TOP + max(len(house.LIBRARY), len(house.HOST)) * FLOOR_HEIGHT
    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {total} {height}" font-family="sans-serif" font-size="12">',
        "<title>The rooms of the library and of the small host, and which takes from which</title>",
        "<style>rect{fill:#eef3f8;stroke:#345;rx:4}rect.ground{fill:#e6e0d2}text{text-anchor:middle}"
        "path{fill:none;stroke:#678;stroke-width:1.2}"
        ".head{font-size:16px;font-weight:bold}.small{font-size:10px;fill:#555}.host{font-size:9px;fill:#a42}"
        ".small,.host{paint-order:stroke;stroke:#fff;stroke-width:3}</style>",
        '<defs><marker id="tip" viewBox="0 0 8 8" refX="8" refY="4" markerWidth="7" markerHeight="7" orient="auto">'
        '<path d="M0 0L8 4L0 8z" fill="#678" stroke="none"/></marker></defs>',
        f'<text class="head" x="{MARGIN + width // 2}" y="28">src: the library</text>',
        f'<text class="head" x="{right + host_width // 2}" y="28">host: the small host</text>',
    ]
    for pair in library.arrows + host.arrows:
        if pair[0] in boxes and pair[1] in boxes:
            lines.append(arrow(boxes[pair[0]], boxes[pair[1]]))
    for room in sorted(boxes):
        lines += box(room, boxes[room], arrows)
    return "\n".join(lines + ["</svg>"]) + "\n"


if __name__ == "__main__":
    sys.stdout.write(draw())
