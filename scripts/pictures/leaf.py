"""The calendar leaf of the menu bar and its day numbers.

A leaf and a day number are drawn at the same point, so both have the same size
and the number has to fall on the middle of the leaf.
"""

from .palette import DIGIT_PEN, EDGE, HEM, INK, PAPER, WHITE
from .svg import num, path, picture, rounded

# Size of both, in points. The leaf leaves one point free on each side; the bar
# draws its colour band over exactly the head of the leaf.
WIDTH, HEIGHT = 17, 18
LEFT, TOP, RIGHT, BOTTOM = 1, 1, 16, 17
CORNER = 1.5

# The colour band is four points high. The transparent leaf gets no band, and
# its number stands one point higher; with a head of three points the number
# is in the middle of what remains inside the outline.
BAND = 4
HEAD = 3

# Digits stand in a box of DIGIT_HEIGHT points whose upper left corner is the
# origin. Round ones are centre lines drawn with the pen of digits, straight
# ones are outlines, because a pen would leave slanted ends at head and foot.
# Stems, bars and the widest part of the bowls have their outer flanks on whole
# points, hence on whole pixels at any integral scale; only the inner flanks
# may be soft. The open ends of 6 and 9 are short so that they never close to
# an 8 at scale 1.
DIGIT_HEIGHT = 8
DIGIT_GAP = 1
LINE, SHAPE = "line", "shape"

# Every width is odd, as is the gap between two digits, so one digit or two
# always leave the same whole number of points on both sides of the leaf.
DIGITS = {
    "0": (5, LINE, "M.65 2.5A1.85 1.85 0 0 1 4.35 2.5V5.5"
                   "A1.85 1.85 0 0 1 .65 5.5Z"),
    "1": (3, SHAPE, "M1.8 0H3V8H1.7V1.65L0 2.75V1.2Z"),
    "2": (5, LINE, "M.65 2.4A1.85 1.75 0 0 1 4.35 2.4"
                   "C4.35 4.1 .95 5.1 .8 7.35H5"),
    "3": (5, LINE, "M.7 2.05A1.75 1.5 0 0 1 2.45 .65A1.6 1.5 0 0 1 2.45 3.65"
                   "H1.6M2.45 3.65A1.9 1.85 0 0 1 2.45 7.35"
                   "A1.8 1.7 0 0 1 .65 5.8"),
    "4": (5, SHAPE, "M2.7 0H4.3V5H5V6.3H4.3V8H3V6.3H0V5ZM3 2L1.35 5H3Z"),
    "5": (5, LINE, "M4.7 .65H.65V3.65H2.5A1.85 1.85 0 0 1 2.5 7.35"
                   "A1.85 1.7 0 0 1 .65 5.8"),
    "6": (5, LINE, "M4.02 1.44A1.85 1.85 0 0 0 .65 2.5V5.5"
                   "A1.85 1.85 0 0 0 4.35 5.5A1.85 1.85 0 0 0 .65 5.5"),
    "7": (5, SHAPE, "M0 0H5V1.2L2.4 8H1L3.55 1.3H0Z"),
    "8": (5, LINE, "M2.5 .65A1.6 1.5 0 0 1 2.5 3.65A1.6 1.5 0 0 1 2.5 .65Z"
                   "M2.5 3.65A1.85 1.85 0 0 1 2.5 7.35"
                   "A1.85 1.85 0 0 1 2.5 3.65Z"),
    "9": (5, LINE, "M.98 6.56A1.85 1.85 0 0 0 4.35 5.5V2.5"
                   "A1.85 1.85 0 0 0 .65 2.5A1.85 1.85 0 0 0 4.35 2.5"),
}


def paper_leaf():
    """The opaque leaf; its head is left for the band."""
    # The head is rounder than the band so that no light pixel of paper peeks
    # out from behind the softened corners of the band.
    edge = rounded(LEFT, TOP, RIGHT, BOTTOM + .5, CORNER + 1, CORNER)
    paper = rounded(LEFT + .5, TOP + .5, RIGHT - .5, BOTTOM, CORNER + .5,
                    CORNER - .5)
    # The band is the program's: on a dark bar a black one would be lost without
    # a light hem, which a light bar hides.
    hem = rounded(LEFT - HEM, TOP - HEM, RIGHT + HEM, TOP + BAND, CORNER + HEM,
                  0)
    return picture(WIDTH, HEIGHT, path(hem, fill=WHITE, fill_opacity=.8),
                   path(edge, fill=EDGE), path(paper, fill=PAPER))


def outline_leaf(ink):
    """The transparent leaf: a frame of one point under a solid head."""
    outer = rounded(LEFT, TOP, RIGHT, BOTTOM, CORNER, CORNER)
    inner = rounded(LEFT + 1, TOP + HEAD, RIGHT - 1, BOTTOM - 1, 0,
                    CORNER - 1)
    return picture(WIDTH, HEIGHT,
                   path(outer + inner, fill=ink, fill_rule="evenodd"))


def day_number(day, ink):
    """The number in the middle of the body below the band."""
    digits = [DIGITS[digit] for digit in str(day)]
    width = sum(digit[0] for digit in digits) + DIGIT_GAP * (len(digits) - 1)
    x = (LEFT + RIGHT - width) / 2
    y = (TOP + BAND + BOTTOM - DIGIT_HEIGHT) / 2
    strokes = []
    for advance, kind, outline in digits:
        paint = (f'fill="none" stroke="{ink}" stroke-width="{DIGIT_PEN}"'
                 if kind == LINE else f'fill="{ink}" fill-rule="evenodd"')
        strokes.append(f'<path transform="translate({num(x)} {num(y)})" '
                       f'{paint} d="{outline}"/>')
        x += advance + DIGIT_GAP
    return picture(WIDTH, HEIGHT, *strokes)


def pictures():
    yield "menubar-date", paper_leaf()
    yield "menubar-date-transparent", outline_leaf(INK)
    yield "menubar-date-transparent-white", outline_leaf(WHITE)
    for day in range(1, 32):
        yield f"menubar-date-{day}", day_number(day, INK)
        yield f"menubar-date-{day}-white", day_number(day, WHITE)
