"""The night sky behind the large moon of the moon submenu."""

import math

from .palette import MOONLIGHT, MOON_SHADOW, NIGHT_BOTTOM, NIGHT_TOP, WHITE
from .svg import (circle, picture, radial_gradient, rect, stop,
                  vertical_gradient)

WIDTH, HEIGHT = 320, 160

# The moon stands in the middle. The view draws no dark side, so the sky holds a
# dim disc in its place: without it a new moon would leave nothing to see.
MOON_X, MOON_Y, MOON_RADIUS = 160, 80, 60
GLOW = 84

# Stars keep clear of the moon, of the edges and of each other.
STARS = 90
CLEARANCE = MOON_RADIUS + 6
EDGE_GAP = 4
STAR_GAP = 11
# Radius and strength; most stars are faint.
BRIGHT, MIDDLING, FAINT = (1, .9), (.7, .75), (.5, .55)


def magnitude(index):
    if index % 12 == 0:
        return BRIGHT
    return MIDDLING if index % 3 == 0 else FAINT


def strewn_places():
    """Places without a pattern, yet the same in every run: a congruential
    generator of its own, as the library's may change with its version."""
    state = 1
    while True:
        shares = []
        for _ in range(2):
            state = (state * 1103515245 + 12345) % 2 ** 31
            shares.append(state / 2 ** 31)
        yield (round(EDGE_GAP + (WIDTH - 2 * EDGE_GAP) * shares[0], 1),
               round(EDGE_GAP + (HEIGHT - 2 * EDGE_GAP) * shares[1], 1))


def stars():
    chosen = []
    for place in strewn_places():
        if len(chosen) == STARS:
            break
        if (math.dist(place, (MOON_X, MOON_Y)) > CLEARANCE
                and all(math.dist(place, other) > STAR_GAP
                        for other in chosen)):
            chosen.append(place)
    for index, (x, y) in enumerate(chosen):
        radius, strength = magnitude(index)
        yield circle(x, y, radius, fill=WHITE, fill_opacity=strength)


def pictures():
    yield "stats-calendar-moon-header", picture(
        WIDTH, HEIGHT,
        vertical_gradient("sky", 0, HEIGHT, stop(0, NIGHT_TOP),
                          stop(1, NIGHT_BOTTOM)),
        radial_gradient("glow", MOON_X, MOON_Y, GLOW,
                        stop(MOON_RADIUS / GLOW, MOONLIGHT, .06),
                        stop(1, MOONLIGHT, 0)),
        rect(0, 0, WIDTH, HEIGHT, fill="url(#sky)"),
        *stars(),
        circle(MOON_X, MOON_Y, GLOW, fill="url(#glow)"),
        circle(MOON_X, MOON_Y, MOON_RADIUS, fill=MOON_SHADOW, fill_opacity=.2))
