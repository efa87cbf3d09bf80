"""The moons: lit and dark discs of the menu bar and the dropdown, and the
large face of the moon submenu.

A lit picture is drawn turned by half a turn where the Moon is seen from the
northern hemisphere, and as it is in the southern one, where the face stands on
its head. So the files hold the face with south at the top. The dark picture is
never turned; it is the same from all sides.
"""

from . import moon_face
from .palette import (EDGE, MARE, MOONLIGHT, MOON_LIMB, MOON_RIM, MOON_SHADOW,
                      SHADOW_STRENGTH, WHITE)
from .svg import circle, path, picture, radial_gradient, smooth, stop

# The view clips the lit picture at a terminator that travels the whole square,
# so the disc fills it: any margin, and any rim that is not lit, would be taken
# off a young crescent. At small sizes the terminator stops short of the lit
# area, by up to four hundredths of the disc. There the disc is larger than the
# square by these points, so that the sides cut it off where nobody sees it,
# which leaves less than three hundredths.
OVERLAP = {16: .16, 32: .3}


class Disc:
    """Places the face with south at the top."""

    def __init__(self, size):
        self.middle = size / 2
        self.radius = size / 2 + OVERLAP.get(size, 0)

    def point(self, longitude, latitude):
        x, y = moon_face.on_disc(longitude, latitude)
        return self.middle - self.radius * x, self.middle + self.radius * y

    def outline(self, places):
        return smooth([self.point(*place) for place in places])

    def filled(self, paint, **more):
        return circle(self.middle, self.middle, self.radius, fill=paint, **more)


def limb(disc, start):
    """The ground of a lit disc. It darkens and yellows towards the edge: that
    is its outline on a light menu, and still lit beside the dark side."""
    return (radial_gradient("ground", disc.middle, disc.middle, disc.radius,
                            stop(0, MOONLIGHT), stop(start, MOONLIGHT),
                            stop(1, MOON_RIM))
            + disc.filled("url(#ground)"))


def lit_moon(size, shores):
    disc = Disc(size)
    outlines = "".join(disc.outline(places) for places in shores)
    return picture(size, size, limb(disc, 1 - 4 / size),
                   path(outlines, fill=MARE))


def dark_moon(size):
    disc = Disc(size)
    return picture(
        size, size,
        disc.filled(MOON_SHADOW, fill_opacity=SHADOW_STRENGTH))


# At the size of the bar three plains are told apart: Procellarum with Imbrium,
# Serenitatis with Tranquillitatis, Nubium with Humorum.
SMALL_SHORES = [
    [(-14, 50), (-40, 50), (-60, 38), (-62, 14), (-46, -2), (-30, 4),
     (-16, 18), (-2, 26), (0, 42)],
    [(10, 36), (24, 36), (33, 22), (48, 12), (50, -6), (36, -8), (22, 0),
     (12, 18)],
    moon_face.ring(-25, -24, 12)]
MIDDLE_PLAINS = ["Imbrium", "Procellarum", "Serenitatis", "Tranquillitatis",
                 "Fecunditatis", "Nubium", "Crisium", "Nectaris", "Humorum",
                 "Cognitum", "Frigoris", "Vaporum"]


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
    yield "menubar-moon-light", lit_moon(16, SMALL_SHORES)
    yield "menubar-moon-dark", dark_moon(16)
    yield "stats-calendar-moon-light", lit_moon(
        32, [moon_face.plain_outline(name) for name in MIDDLE_PLAINS])
    yield "stats-calendar-moon-dark", dark_moon(32)
    yield "stats-calendar-moon-header-lightmoon", large_face(120)
