"""The month view: its grounds, the marks of days, the buttons of its head and
the shadow at its foot."""

from .palette import (BLACK, BOLD_PEN, CORNER, DEEP_BOTTOM, DEEP_TOP, HIGHLIGHT,
                      MONTH_DARK, MONTH_LIGHT, PEN, WHITE)
from .svg import (circle, line, path, picture, rect, rounded, stop,
                  vertical_gradient)

# The view from top to bottom: a head, six weeks, a rule.
WIDTH = 280
HEAD = 54
GRID_BOTTOM = HEAD + 6 * 32
HEIGHT = GRID_BOTTOM + 1
WEEK_COLUMN = 35
# Without week numbers the ground is drawn at x 34, so it ends at the same edge.
PLAIN_WIDTH = WIDTH - 34

DAY_HEIGHT = 32
DAY_WIDTHS = {"": 40, "-week": 35}

BUTTON = 20

THEMES = {"": MONTH_LIGHT, "-dark": MONTH_DARK}


def ground(width, theme, with_weeks):
    days, weeks, rule = THEMES[theme]
    return picture(
        width, HEIGHT,
        vertical_gradient("head", 0, HEAD, stop(0, DEEP_TOP),
                          stop(1, DEEP_BOTTOM)),
        rect(0, 0, width, HEAD, fill="url(#head)"),
        rect(0, HEAD, width, GRID_BOTTOM, fill=days),
        rect(0, HEAD, WEEK_COLUMN, GRID_BOTTOM, fill=weeks)
        if with_weeks else None,
        rect(0, GRID_BOTTOM, width, HEIGHT, fill=rule))


def day_mark(width, inset=0):
    """The rounded area of a day; it leaves one point free on each side."""
    margin = 1 + inset
    return rounded(margin, margin, width - margin, DAY_HEIGHT - margin,
                   CORNER - inset, CORNER - inset)


def selected(width):
    return picture(
        width, DAY_HEIGHT,
        vertical_gradient("day", 1, DAY_HEIGHT - 1, stop(0, DEEP_TOP),
                          stop(1, DEEP_BOTTOM)),
        path(day_mark(width), fill="url(#day)"))


def today(width, tint):
    return picture(
        width, DAY_HEIGHT,
        path(day_mark(width), fill=HIGHLIGHT, fill_opacity=tint),
        path(day_mark(width) + day_mark(width, PEN), fill=HIGHLIGHT,
             fill_rule="evenodd"))


def button(pressed, *glyph):
    """A white glyph on the blue head; pressed, the head darkens under it."""
    plate = path(rounded(0, 0, BUTTON, BUTTON, CORNER, CORNER), fill=BLACK,
                 fill_opacity=.2)
    return picture(BUTTON, BUTTON, plate if pressed else None, *glyph)


def arrow(direction):
    """A chevron: direction -1 points left, 1 right."""
    middle, half = BUTTON / 2, 2.5
    tip = middle + direction * half
    tail = middle - direction * half
    return line((tail, middle - 5), (tip, middle), (tail, middle + 5),
                stroke=WHITE, stroke_width=BOLD_PEN)


def small_leaf():
    """A leaf with a head and two rows of days. Its edges are on multiples of
    four points, which are whole pixels at scale 1.25 and 1.5, too; the days are
    four points apart, so that all come out alike."""
    return (path(rounded(4, 8, 16, 16, 0, 1.5), fill=WHITE, fill_opacity=.3)
            + path(rounded(4, 4, 16, 8, 1.5, 0), fill=WHITE)
            + "".join(circle(x, y, 1.2, fill=WHITE)
                      for y in (10, 14) for x in (6, 10, 14)))


def shadow():
    return picture(
        WIDTH, 10,
        vertical_gradient("shadow", 0, 10, stop(0, BLACK, 0),
                          stop(1, BLACK, .1)),
        rect(0, 0, WIDTH, 10, fill="url(#shadow)"))


def pictures():
    for theme in THEMES:
        yield f"stats-calendar{theme}", ground(PLAIN_WIDTH, theme, False)
        yield f"stats-calendar-weeks{theme}", ground(WIDTH, theme, True)
    for suffix, width in DAY_WIDTHS.items():
        yield f"stats-calendar-selected{suffix}", selected(width)
        yield f"stats-calendar-today-light{suffix}", today(width, .16)
        yield f"stats-calendar-today-dark{suffix}", today(width, .28)
    for pressed, suffix in ((False, ""), (True, "-down")):
        yield f"stats-calendar-arrow-left{suffix}", button(pressed, arrow(-1))
        yield f"stats-calendar-arrow-right{suffix}", button(pressed, arrow(1))
        yield f"stats-calendar-opencal{suffix}", button(pressed, small_leaf())
    yield "stats-calendar-shadow", shadow()
