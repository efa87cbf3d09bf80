"""Sixteen-point pictures of the Sun and the Moon for the rows of the sun panel.

They have no variants for light and dark. What is pale has a hem, and every
other shape keeps three to one against both menus. Level edges stand on
multiples of four points, which are whole pixels at scale 1.25 and 1.5, too;
the far side of a horizon fades, so that it has none.
"""

import math

from .palette import (ASTRONOMICAL, CIVIL, HEM, LINE, MAP_SUN, MOON, NAUTICAL,
                      PEN, SUN)
from .svg import (circle, num, path, picture, rect, stop,
                  vertical_gradient)

SIZE = 16
MIDDLE = SIZE / 2

# Height of an arrow and of the land, and a step of twilight.
STEP = 4

SUN_RADIUS = 3.5
# A ray begins clear of the disc and ends in a point.
RAY_FOOT, RAY_TIP = 5.2, 7.6
RAY_HALF_WIDTH = .9


def amber(data):
    """The hem goes around the whole: it lies under the fill of all parts."""
    return (path(data, fill=SUN, stroke=SUN, stroke_width=2 * HEM,
                 stroke_linejoin="round")
            + path(data, fill=MAP_SUN))


def disc(x, y, radius):
    arc = f"a{num(radius)} {num(radius)} 0 1 1 "
    return (f"M{num(x - radius)} {num(y)}{arc}{num(2 * radius)} 0"
            f"{arc}{num(-2 * radius)} 0Z")


def rays(x, y, bearings):
    """Wedges around a sun; bearings in degrees from the top, clockwise."""
    data = ""
    for bearing in map(math.radians, bearings):
        along = math.sin(bearing), -math.cos(bearing)
        corners = ((RAY_FOOT, -RAY_HALF_WIDTH), (RAY_TIP, 0),
                   (RAY_FOOT, RAY_HALF_WIDTH))
        data += "M" + "L".join(
            f"{num(x + reach * along[0] - aside * along[1])} "
            f"{num(y + reach * along[1] + aside * along[0])}"
            for reach, aside in corners) + "Z"
    return data


def full_sun():
    return picture(SIZE, SIZE, amber(disc(MIDDLE, MIDDLE, SUN_RADIUS)
                                     + rays(MIDDLE, MIDDLE,
                                            range(0, 360, 45))))


def arrow_up(top, colour):
    return path(f"M4 {top + STEP}H12L8 {top}Z", fill=colour)


def arrow_down(top, colour):
    return path(f"M4 {top}H12L8 {top + STEP}Z", fill=colour)


def ground(horizon, far):
    """The land from the horizon to where it has faded."""
    top, bottom = sorted((horizon, far))
    return (vertical_gradient("ground", horizon, far, stop(0, LINE),
                              stop(.25, LINE), stop(.8, LINE, 0))
            + rect(0, top, SIZE, bottom, fill="url(#ground)"))


def half_sun(horizon, bearings):
    r = SUN_RADIUS
    dome = f"M{num(MIDDLE - r)} {horizon}a{r} {r} 0 0 1 {num(2 * r)} 0Z"
    return amber(dome + rays(MIDDLE, horizon, bearings))


def crescent(x, y, radius):
    """The waxing Moon as the north sees it: a disc less a smaller one."""
    def at(dx, dy):
        return f"{num(x + dx * radius)} {num(y + dy * radius)}"

    return (f"M{at(.055, -.998)}A{num(radius)} {num(radius)} 0 1 1 "
            f"{at(-.933, .36)}A{num(.84 * radius)} {num(.84 * radius)} 0 0 0 "
            f"{at(.055, -.998)}Z")


def half_moon(horizon):
    """The same Moon of four points' radius, as far as it is up."""
    return path(f"M8.22 {num(horizon - 6.49)}A4 4 0 0 1 11.12 {horizon}H4.88"
                f"A4 4 0 0 1 4.27 {num(horizon - 1.06)}"
                f"A3.36 3.36 0 0 0 8.22 {num(horizon - 6.49)}Z", fill=MOON)


# The arrow goes ahead of the body: above one that rises, below one that sets,
# whose horizon stands higher. So both differ in outline, too.
RISE, SET = 12, 8


def rising(body, colour):
    return picture(SIZE, SIZE, arrow_up(0, colour), body, ground(RISE, RISE + STEP))


def setting(body, colour):
    return picture(SIZE, SIZE, body, ground(SET, SET + STEP), arrow_down(12, colour))


def altitude():
    """A sun above the ground, with the angle that its sight line makes."""
    return picture(SIZE, SIZE,
                   path("M1 12L8 6", fill="none", stroke=LINE,
                        stroke_width=PEN),
                   path("M7 12A6 6 0 0 0 5.5 8", fill="none", stroke=LINE,
                        stroke_width=PEN),
                   ground(12, 16), amber(disc(11, 4.5, SUN_RADIUS)))


def twilight(steps, colour):
    """The Sun below the horizon, beside a scale that is coloured as deep as the
    Sun is. A scale of dots has no edges, and all of its dots come out alike."""
    scale = [circle(3, STEP * (step + .5), 1.3,
                    fill=colour if step <= steps else LINE)
             for step in (1, 2, 3)]
    return picture(SIZE, SIZE, ground(STEP, 0), *scale,
                   circle(11, STEP + 3 * steps, 3, fill=colour))


def moon_age():
    """The Moon, and an arrow that goes once around it."""
    return picture(SIZE, SIZE, path(crescent(8, 8, 4), fill=MOON),
                   path("M13.2 4.1A6.4 6.4 0 1 1 8 1.6", fill="none",
                        stroke=LINE, stroke_width=PEN),
                   path("M8 0V3.2L11 1.6Z", fill=LINE))


def pictures():
    yield "stats-calendar-sunrise", rising(
        half_sun(RISE, (-74, -37, 37, 74)), SUN)
    yield "stats-calendar-noon", full_sun()
    yield "stats-calendar-sunset", setting(
        half_sun(SET, (-74, -37, 0, 37, 74)), SUN)
    yield "stats-calendar-moonrise", rising(half_moon(RISE), MOON)
    yield "stats-calendar-moonset", setting(half_moon(SET), MOON)
    yield "icon-sun-currentaltitude", altitude()
    for steps, (name, colour) in enumerate(
            (("civil", CIVIL), ("nautical", NAUTICAL),
             ("astronomical", ASTRONOMICAL)), 1):
        yield f"icon-twilight-{name}", twilight(steps, colour)
    yield "icon-moon-age", moon_age()
