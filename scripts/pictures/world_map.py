"""The continents of the day-and-night map, and what stands on it.

Made with Natural Earth. The shores are the land at 1:50 million of Natural
Earth (public domain), in Resources/Geography/land.txt: one ring a line, pairs
of longitude and latitude in degrees. Rings are cut along the date line and
Antarctica is closed along the pole, so each can be drawn as it stands; the
Caspian Sea is a ring of its own, which the even-odd rule turns into a hole.

Islands too small for those shores get a dot where people live: at the places of
Resources/cities.csv (GeoNames, CC BY 4.0) that would stand in the open sea.
"""

import collections
import csv
import math
import pathlib

from .palette import (INK, LAND, LAND_STRENGTH, LEGENDS, LINE,
                      MOONLIGHT, MOON_SHADOW, PEN, WHITE)
from .sky_icons import full_sun
from .svg import circle, num, path, picture

RESOURCES = pathlib.Path(__file__).resolve().parents[2] / "Resources"
LAND_FILE = RESOURCES / "Geography" / "land.txt"
CITIES_FILE = RESOURCES / "cities.csv"

WIDTH, HEIGHT = 320, 160

# A line may be off by TOLERANCE points after it is thinned out, and then by
# half a step of the grid: together under a tenth of a point.
TOLERANCE = .06
STEPS_PER_POINT = 20

# An island's dot is a point across. Neither land nor another dot is so near
# that they would touch, which the even-odd rule would show as a hole.
ISLAND_RADIUS = .5
FROM_LAND = .6
FROM_ISLAND = 1.1


def on_map(longitude, latitude):
    return (longitude + 180) * WIDTH / 360, (90 - latitude) * HEIGHT / 180


def rings():
    for text in LAND_FILE.read_text(encoding="ascii").splitlines():
        numbers = [float(word) for word in text.split()]
        yield [on_map(*place) for place in zip(numbers[::2], numbers[1::2])]


def cities():
    """Places of the list on the map, the largest first."""
    with CITIES_FILE.open(encoding="utf-8", newline="") as file:
        for row in csv.DictReader(file):
            yield on_map(float(row["longitude"]), float(row["latitude"]))


class Shores:
    """Answers how far land is, from segments sorted by the whole points of
    height that they touch."""

    def __init__(self, outlines):
        self.bands = collections.defaultdict(list)
        for ring in outlines:
            for segment in zip(ring, ring[1:] + ring[:1]):
                low, high = sorted(point[1] for point in segment)
                for band in range(int(low), int(high) + 1):
                    self.bands[band].append(segment)

    def has_land_at(self, point):
        x, y = point
        crossings = 0
        for (x0, y0), (x1, y1) in self.bands[int(y)]:
            if (y0 > y) != (y1 > y):
                crossings += x0 + (y - y0) * (x1 - x0) / (y1 - y0) > x
        return crossings % 2 == 1

    def has_land_within(self, reach, point):
        x, y = point
        for band in range(int(y - reach), int(y + reach) + 1):
            for start, end in self.bands[band]:
                if (min(start[0], end[0]) - reach < x
                        < max(start[0], end[0]) + reach
                        and distance_to_segment(point, start, end) < reach):
                    return True
        return self.has_land_at(point)


def distance_to_segment(point, start, end):
    dx, dy = end[0] - start[0], end[1] - start[1]
    length = dx * dx + dy * dy
    along = 0
    if length:
        along = ((point[0] - start[0]) * dx + (point[1] - start[1]) * dy)
        along = min(1, max(0, along / length))
    return math.hypot(point[0] - start[0] - along * dx,
                      point[1] - start[1] - along * dy)


def simplified(points):
    """Douglas and Peucker's reduction of an open line."""
    keep = {0, len(points) - 1}
    spans = [(0, len(points) - 1)]
    while spans:
        first, last = spans.pop()
        if last - first < 2:
            continue
        away, index = max(
            (distance_to_segment(points[i], points[first], points[last]), i)
            for i in range(first + 1, last))
        if away > TOLERANCE:
            keep.add(index)
            spans += [(first, index), (index, last)]
    return [points[index] for index in sorted(keep)]


def simplified_ring(ring):
    """A ring is cut at its two farthest places, which both stay."""
    far = max(range(len(ring)), key=lambda i: math.dist(ring[0], ring[i]))
    return (simplified(ring[:far + 1])[:-1]
            + simplified(ring[far:] + ring[:1])[:-1])


def outline(ring):
    """A closed path of relative steps, in whole steps of the grid."""
    grid = [(round(x * STEPS_PER_POINT), round(y * STEPS_PER_POINT))
            for x, y in ring]
    data = f"M{grid[0][0]} {grid[0][1]}l"
    separator = ""
    for (x0, y0), (x1, y1) in zip(grid, grid[1:]):
        for step in (x1 - x0, y1 - y0):
            data += str(step) if step < 0 else f"{separator}{step}"
            separator = " "
    return data + "z"


def islands(shores):
    """Places to mark with a dot. The largest place of a group takes it."""
    chosen = []
    for city in cities():
        if (all(math.dist(city, other) >= FROM_ISLAND for other in chosen)
                and not shores.has_land_within(FROM_LAND, city)):
            chosen.append(city)
    return chosen


def island(place):
    """An octagon; in a coarser shape the diagonals would be short."""
    return [(place[0] + ISLAND_RADIUS * math.sin(math.radians(angle)),
             place[1] + ISLAND_RADIUS * math.cos(math.radians(angle)))
            for angle in range(0, 360, 45)]


def continents():
    land = [simplified_ring(ring) for ring in rings()]
    land += [island(place) for place in islands(Shores(land))]
    data = "".join(map(outline, land))
    return picture(WIDTH, HEIGHT,
                   path(data, fill=LAND, fill_opacity=LAND_STRENGTH,
                        fill_rule="evenodd",
                        transform=f"scale({num(1 / STEPS_PER_POINT)})"))


PIN = 12
ICON = 16


def pin(radius, core):
    """A dot with a white ring and a dark hem, the city in its middle."""
    middle = PIN / 2
    return picture(PIN, PIN,
                   circle(middle, middle, radius, fill=INK, fill_opacity=.6),
                   circle(middle, middle, radius - PEN / 2, fill=WHITE),
                   circle(middle, middle, radius - 1.5, fill=core))


def moon():
    middle = ICON / 2
    return picture(ICON, ICON,
                   circle(middle, middle, 6, fill=MOON_SHADOW),
                   path("M8 3A5 5 0 0 1 8 13A10 10 0 0 0 8 3Z",
                        fill=MOONLIGHT))


def pictures():
    yield "stats-calendar-map-header", continents()
    yield "map-location", pin(4, LINE)
    yield "map-location-selected", pin(5, LEGENDS["red"])
    yield "map-icon-sun", full_sun()
    yield "map-icon-moon", moon()
