"""The moons: lit and dark discs of the menu bar and the dropdown, and the
large face of the moon submenu.

A lit picture is drawn turned by half a turn where the Moon is seen from the
northern hemisphere, and as it is in the southern one, where the face stands on
its head. So the files hold the face with south at the top. The dark picture is
never turned; it is the same from all sides.
"""

from . import moon_face
from .palette import (EDGE, MARE, MOONLIGHT, MOON_LIMB, MOON_SHADOW, PEN,
                      SHADOW_STRENGTH, WHITE)
from .svg import circle, path, picture, radial_gradient, smooth, stop

# The disc leaves one point free on each side.
MARGIN = 1

# The rim of the lit side is thinner, or it would eat a young crescent.
LIT_RIM = .65


class Disc:
    """Places the face with south at the top."""

    def __init__(self, size):
        self.middle = size / 2
        self.radius = size / 2 - MARGIN

    def point(self, longitude, latitude):
        x, y = moon_face.on_disc(longitude, latitude)
        return self.middle - self.radius * x, self.middle + self.radius * y

    def outline(self, places):
        return smooth([self.point(*place) for place in places])


def rim(size, pen):
    """A ring inside the edge: the outline on any background."""
    return circle(size / 2, size / 2, size / 2 - MARGIN - pen / 2,
                  fill="none", stroke=EDGE, stroke_width=pen)


def lit_moon(size, plains):
    disc = Disc(size)
    shores = "".join(disc.outline(moon_face.plain_outline(name))
                     for name in plains)
    return picture(
        size, size,
        circle(disc.middle, disc.middle, disc.radius, fill=MOONLIGHT),
        path(shores, fill=MARE), rim(size, LIT_RIM))


def dark_moon(size):
    middle = size / 2
    return picture(
        size, size,
        circle(middle, middle, middle - MARGIN - .5, fill=MOON_SHADOW,
               fill_opacity=SHADOW_STRENGTH), rim(size, PEN))


# At the size of the bar only the large plains are more than a speck.
SMALL_PLAINS = ["Imbrium", "Procellarum", "Serenitatis", "Tranquillitatis",
                "Fecunditatis", "Nubium"]
MIDDLE_PLAINS = SMALL_PLAINS + ["Crisium", "Nectaris", "Humorum", "Cognitum",
                                "Frigoris", "Vaporum"]


# The large face shows soft shores, which a filter would blur at small sizes:
# the outline is drawn with ever narrower translucent pens, then filled.
SHORES = ((2.4, .25), (1.2, .3))


def large_face(size):
    """The face of the submenu's head. It has no rim: the sky is dark."""
    disc = Disc(size)

    def rings(places):
        return "".join(disc.outline(moon_face.ring(*place))
                       for place in places)

    shores = "".join(disc.outline(moon_face.plain_outline(name))
                     for name in (*moon_face.ROUND_PLAINS, *moon_face.PLAINS))
    rays = "".join(disc.outline(moon_face.ray(bearing, length, 2.6))
                   for bearing, length in moon_face.TYCHO_RAYS)
    return picture(
        size, size,
        radial_gradient("ground", disc.middle, disc.middle, disc.radius,
                        stop(0, MOONLIGHT), stop(.7, MOONLIGHT),
                        stop(1, MOON_LIMB)),
        # Without units of its own it spreads over each halo.
        '<radialGradient id="halo">' + stop(0, WHITE, .9) + stop(.3, WHITE, .5)
        + stop(1, WHITE, 0) + "</radialGradient>",
        circle(disc.middle, disc.middle, disc.radius, fill="url(#ground)"),
        path(rings(moon_face.CRATERS), fill=MOON_LIMB, fill_opacity=.5),
        path(rings(moon_face.FAINT_PLAINS), fill=MARE, fill_opacity=.55),
        *(path(shores, fill="none", stroke=MARE, stroke_width=pen,
               stroke_opacity=strength) for pen, strength in SHORES),
        path(shores, fill=MARE),
        path(rings(moon_face.DARK_FLOORS), fill=EDGE, fill_opacity=.6),
        path(rays, fill=WHITE, fill_opacity=.35),
        *(path(rings([halo]), fill="url(#halo)") for halo in moon_face.HALOES))


def pictures():
    yield "menubar-moon-light", lit_moon(16, SMALL_PLAINS)
    yield "menubar-moon-dark", dark_moon(16)
    yield "stats-calendar-moon-light", lit_moon(32, MIDDLE_PLAINS)
    yield "stats-calendar-moon-dark", dark_moon(32)
    yield "stats-calendar-moon-header-lightmoon", large_face(120)
