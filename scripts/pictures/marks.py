"""Small marks of rows: ticks, coloured dots, and the item that stands in the
bar when no module shows."""

from .palette import BOLD_PEN, EDGE, HEM, INK, LEGENDS, LINE, WHITE
from .svg import circle, line, path, picture

TICK = 12


def tick(colour):
    return picture(TICK, TICK, line((2, 6.5), (5, 9.5), (10, 2.5),
                                    stroke=colour, stroke_width=BOLD_PEN))


# A dot has seven points across.
DOT = 7
LEGEND = 9


def hem(x, y):
    """A thin ring on the edge of a dot: dark enough to keep yellow apart from a
    light menu, light enough to keep grey apart from a dark one."""
    return circle(x, y, (DOT - HEM) / 2, fill="none", stroke=EDGE,
                  stroke_width=HEM)


def overlay():
    """Two points higher than the dot, because it is drawn from the lower edge
    of the row's mark and the dot stands two points above it."""
    return picture(DOT, DOT + 2, hem(DOT / 2, DOT / 2))


def legend(colour):
    middle = LEGEND / 2
    return picture(LEGEND, LEGEND, circle(middle, middle, DOT / 2, fill=colour),
                   hem(middle, middle))


def combined(ink):
    """Three rows of a menu, in the middle of the bar's height."""
    rows = "".join(f"M0 {y}h2v2h-2zM4 {y}h8v2h-8z" for y in (4, 8, 12))
    return picture(12, 18, path(rows, fill=ink))


def pictures():
    yield "stats-tick", tick(LINE)
    yield "stats-tick-white", tick(WHITE)
    yield "menubar-diskactivity-dots-overlay", overlay()
    for name, colour in LEGENDS.items():
        yield f"stats-label-{name}", legend(colour)
    yield "menubar-combined", combined(INK)
    yield "menubar-combined-white", combined(WHITE)
