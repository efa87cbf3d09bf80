"""Sixteen-point pictures of the Sun and the Moon for the rows of the sun panel.

They have no variants for light and dark, so every line keeps three to one
against both menus. Those that tell of rising, setting or depth share one
horizon.
"""

from .palette import (ASTRONOMICAL, CIVIL, LINE, MOON, NAUTICAL, PEN, SUN)
from .svg import circle, line, num, path, picture, rect

SIZE = 16
MIDDLE = SIZE / 2

# The horizon under a body that rises or sets; the arrow stands below it.
HORIZON = 11
ARROW = "M8 13L12 16H4Z"
ARROW_DOWN = "M8 16L4 13H12Z"


def horizon(y):
    return rect(1, y, SIZE - 1, y + PEN, fill=LINE)


def beams(colour, *places):
    """Dots around a sun; two points wide and on whole points, they weigh the
    same in every direction."""
    return [circle(x, y, 1.1, fill=colour) for x, y in places]


def full_sun(colour):
    return picture(SIZE, SIZE, circle(MIDDLE, MIDDLE, 4, fill=colour),
                   *beams(colour, (8, 1), (13, 3), (15, 8), (13, 13), (8, 15),
                          (3, 13), (1, 8), (3, 3)))


def sun_at_horizon(arrow):
    y = HORIZON - 1
    return picture(SIZE, SIZE, path(f"M4 {y}a4 4 0 0 1 8 0Z", fill=SUN),
                   *beams(SUN, (1, y - 1), (3, 5), (8, 3), (13, 5),
                          (15, y - 1)),
                   horizon(HORIZON), path(arrow, fill=LINE))


# The waxing Moon as the north sees it: a disc about (8, 5) less a smaller one
# about (5.8, 3.4). The horns are where the two circles meet.
CRESCENT = "M8.28 .01A5 5 0 1 1 3.34 6.8A4.2 4.2 0 0 0 8.28 .01Z"


def moon_at_horizon(arrow):
    return picture(SIZE, SIZE, path(CRESCENT, fill=MOON), horizon(HORIZON),
                   path(arrow, fill=LINE))


def altitude():
    """A sun above the ground, with the angle that its sight line makes."""
    return picture(SIZE, SIZE,
                   line((1.5, 14), (9, 6.5), stroke=LINE, stroke_width=PEN),
                   path("M7 14A6 6 0 0 0 5.5 10", fill="none", stroke=LINE,
                        stroke_width=PEN),
                   rect(1, 14, 15, 15, fill=LINE),
                   circle(11, 4, 4, fill=SUN))


# Depths of the Sun's middle below the horizon, one for each twilight.
DEPTHS = (6.5, 9.5, 12.5)


def twilight(depth, colour):
    """The Sun below the horizon, beside a scale that is coloured as deep as
    the Sun is."""
    def ticks(depths):
        return "".join(f"M2 {num(y - PEN / 2)}h3v{PEN}h-3z" for y in depths)

    return picture(SIZE, SIZE, horizon(1),
                   path(ticks(y for y in DEPTHS if y <= depth), fill=colour),
                   path(ticks(y for y in DEPTHS if y > depth), fill=LINE),
                   circle(10.5, depth, 3.5, fill=colour))


def moon_age():
    """A dial that is also a half moon."""
    return picture(SIZE, SIZE,
                   path("M8 2a6 6 0 0 1 0 12z", fill=MOON),
                   circle(MIDDLE, MIDDLE, 6.5, fill="none", stroke=LINE))


def pictures():
    yield "stats-calendar-sunrise", sun_at_horizon(ARROW)
    yield "stats-calendar-noon", full_sun(SUN)
    yield "stats-calendar-sunset", sun_at_horizon(ARROW_DOWN)
    yield "stats-calendar-moonrise", moon_at_horizon(ARROW)
    yield "stats-calendar-moonset", moon_at_horizon(ARROW_DOWN)
    yield "icon-sun-currentaltitude", altitude()
    colours = (CIVIL, NAUTICAL, ASTRONOMICAL)
    for name, depth, colour in zip(("civil", "nautical", "astronomical"),
                                   DEPTHS, colours):
        yield f"icon-twilight-{name}", twilight(depth, colour)
    yield "icon-moon-age", moon_age()
