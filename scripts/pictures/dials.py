"""The day and night dials of the clock face, and the mask that cuts them.

White hands of 11 and 8 points are drawn over them about the middle, so the
marks of the hours stand outside the longer hand, and both dials are dark
enough for white. A round dot of an hour would be too small for its pixels and
become a cross, so an hour is a short stroke towards the middle.
"""

import math

from .palette import (BLACK, DAY_BOTTOM, DAY_TOP, NIGHT_BOTTOM, NIGHT_TOP, PEN,
                      WHITE)
from .svg import circle, line, picture, rect, stop, vertical_gradient

SIZE = 32
MIDDLE = SIZE // 2
# As large as the moon of the row above.
RADIUS = 16

# The marks of the quarters are squares on whole points, the others strokes
# from one radius to another.
QUARTER = 2
QUARTER_GAP = 1
STROKE = (13, 15)


def marks(strength):
    paint = {"fill": WHITE, "fill_opacity": strength}
    outer = MIDDLE - RADIUS + QUARTER_GAP
    half = QUARTER // 2
    for near, far in ((outer, outer + QUARTER),
                      (SIZE - outer - QUARTER, SIZE - outer)):
        yield rect(MIDDLE - half, near, MIDDLE + half, far, **paint)
        yield rect(near, MIDDLE - half, far, MIDDLE + half, **paint)
    for hour in range(12):
        if hour % 3:
            angle = math.radians(hour * 30)
            yield line(*((MIDDLE + radius * math.sin(angle),
                          MIDDLE - radius * math.cos(angle))
                         for radius in STROKE), stroke=WHITE,
                       stroke_opacity=strength)


def dial(top, bottom, rim, rim_strength, mark_strength):
    return picture(
        SIZE, SIZE,
        vertical_gradient("dial", MIDDLE - RADIUS, MIDDLE + RADIUS,
                          stop(0, top), stop(1, bottom)),
        circle(MIDDLE, MIDDLE, RADIUS, fill="url(#dial)"),
        circle(MIDDLE, MIDDLE, RADIUS - PEN / 2, fill="none", stroke=rim,
               stroke_opacity=rim_strength),
        *marks(mark_strength))


def pictures():
    yield "stats-calendar-clock-mask", picture(
        SIZE, SIZE, circle(MIDDLE, MIDDLE, RADIUS, fill=WHITE))
    yield "stats-calendar-clock-light", dial(DAY_TOP, DAY_BOTTOM, BLACK, .15,
                                             .8)
    # The rim of the night is light, or the dial would melt into a dark menu.
    yield "stats-calendar-clock-dark", dial(NIGHT_TOP, NIGHT_BOTTOM, WHITE, .3,
                                            .6)
