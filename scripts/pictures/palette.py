"""The colours and the pens of all pictures."""

# Greys. EDGE outlines pale shapes on a white bar and on a black one; LINE
# stands alone and is at least three to one against light and dark menus.
INK = "#333"
WHITE = "#fff"
BLACK = "#000"
PAPER = "#fcfcfc"
EDGE = "#8c8c8c"
LINE = "#808080"

# The blue of the highlight, and a deeper one, from top to bottom, for the head
# of the month and what is selected in it: white on it has at least 4.5 to one.
HIGHLIGHT = "#729cdb"
DEEP_TOP = "#4576bb"
DEEP_BOTTOM = "#2d5798"

# Small pictures on menus: at least three to one on light and on dark.
SUN = "#c77800"
MOON = "#6d83b5"
CIVIL = "#d9653b"
NAUTICAL = "#b364b8"
ASTRONOMICAL = "#7477cf"

# The Moon: lit ground, its edge, lava plains, and the side in shadow, which is
# laid on with SHADOW_STRENGTH: it takes some of the tone of what it stands on.
MOONLIGHT = "#f5f1e4"
MOON_LIMB = "#d6d0c0"
MOON_RIM = "#b89c5c"
MARE = "#c2bcac"
MOON_SHADOW = "#5f6675"
SHADOW_STRENGTH = .85

# The night sky, from top to bottom.
NIGHT_TOP = "#12182e"
NIGHT_BOTTOM = "#2c3760"

# The day on a clock dial, from top to bottom.
DAY_TOP = "#62abe0"
DAY_BOTTOM = "#3b7cc4"

# The grounds of the month view in each theme: days, week numbers, and the rule
# at the foot. Day cells and menu rows are filled with the same colours.
MONTH_LIGHT = ("#fff", "#cae5f3", "#e6e6e6")
MONTH_DARK = ("#383838", "#3d5475", "#383838")

# The map: land is translucent, so that the blue of the day and the purple of
# the night under it tint it and both stay darker than the land.
LAND = "#e6f0cf"
LAND_STRENGTH = .55
MAP_SUN = "#ffd34d"

# Colours that tell things apart.
LEGENDS = {"blue": "#3d8fe0", "red": "#e5484d", "lightgrey": "#b4b4b4",
           "darkgrey": "#6e6e6e", "purple": "#9a5fd0", "green": "#3fa64b",
           "yellow": "#edc32f", "orange": "#f08c2e"}

# Widths of strokes: the ordinary line, a hem, that of digits, that of marks.
PEN = 1
HEM = .5
DIGIT_PEN = 1.3
BOLD_PEN = 2

# Corner of a filled area, as in the highlight of a menu row.
CORNER = 4
