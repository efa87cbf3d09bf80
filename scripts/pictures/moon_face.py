"""The near side of the Moon: where its plains and bright craters are.

Positions are selenographic degrees, east (the side of Mare Crisium) and north
positive, rounded from the IAU Gazetteer of Planetary Nomenclature (USGS,
public domain). The outlines of the irregular plains are ours. The disc is the
orthographic projection about the middle of the near side.
"""

import math

# Round plains: longitude, latitude, angular radius.
ROUND_PLAINS = {
    "Imbrium": (-15.6, 32.8, 18.5),
    "Serenitatis": (17.5, 28, 11),
    "Nectaris": (34.6, -15.2, 5.6),
    "Humorum": (-38.6, -24.4, 6.9),
    "Cognitum": (-23.1, -10, 6),
    "Iridum": (-31.5, 44.1, 4),
    "Vaporum": (3.6, 13.3, 4),
}

# Fainter ones: Sinus Aestuum, Sinus Medii, Lacus Somniorum.
FAINT_PLAINS = [(-8.8, 10.9, 4.4), (1.7, 2.4, 3.4), (29.2, 38, 5.5)]

# Plains of other shapes: points of the shore as longitude, latitude.
PLAINS = {
    "Procellarum": [
        (-44, 46), (-56, 54), (-66, 51), (-68, 42), (-69, 32), (-71, 22),
        (-69, 11), (-65, 3), (-62, -5), (-55, -13), (-46, -18), (-38, -16),
        (-31, -13), (-27, -5), (-24, 2), (-18, 4), (-23, 10), (-21, 16),
        (-27, 24), (-35, 34)],
    "Frigoris": [
        (-45, 54), (-32, 59), (-12, 61), (8, 60), (24, 60), (38, 56),
        (32, 53), (22, 55), (8, 56), (-6, 55), (-22, 55), (-36, 52)],
    "Tranquillitatis": [
        (17, 12), (22, 18), (31, 20), (38, 18), (44, 13), (46, 6), (42, 0),
        (35, -2), (30, -9), (25, -6), (24, -1), (18, 2), (15, 6)],
    "Crisium": [
        (50, 17), (52, 21.5), (57, 24), (64, 23), (69, 19), (69, 14),
        (64, 10.5), (57, 10.5), (52, 12.5)],
    "Fecunditatis": [
        (41, -3), (46, 3), (53, 5), (58, 2), (60, -4), (58, -9), (57, -14),
        (54, -19), (50, -19), (47, -14), (44, -9)],
    "Nubium": [
        (-24, -14), (-16, -12), (-9, -12), (-6, -17), (-6, -23), (-9, -29),
        (-15, -31), (-21, -29), (-27, -27), (-29, -21), (-27, -16)],
}

# Small dark floors: Grimaldi and Plato.
DARK_FLOORS = [(-68.6, -5.2, 2.8), (-9.3, 51.6, 1.7)]

# Large old craters of the highlands: Clavius, Maginus, Longomontanus,
# Deslandres, Stofler, Maurolycus, Janssen, Schickard, Petavius, Ptolemaeus,
# Albategnius, Hipparchus.
CRATERS = [(-14.1, -58.8, 3.8), (-6, -50.5, 2.7), (-21.9, -49.6, 2.4),
           (-5.6, -33.1, 3.7), (6, -41.1, 2.1), (14, -41.8, 1.9),
           (40.8, -45, 3.2), (-55, -44.4, 3.4), (60.4, -25.3, 3),
           (-1.9, -9.3, 2.5), (4, -11.2, 2.1), (5, -5.1, 2.3)]

TYCHO = (-11.4, -43.3)

# Rays of Tycho: bearing (degrees from north through east) and angular length.
# The one at 34 degrees is the long ray across Mare Serenitatis.
TYCHO_RAYS = [(34, 82), (62, 50), (88, 30), (128, 26), (176, 24), (228, 28),
              (276, 30), (318, 42), (336, 52), (8, 22)]

# Where the rays begin, in degrees from the crater's middle.
RAY_FOOT = 3

# Bright ejecta: longitude, latitude, angular radius of the halo. Copernicus,
# Kepler, Aristarchus, Proclus, Langrenus, Tycho.
HALOES = [(-20.1, 9.6, 8), (-38, 8.1, 5), (-47.4, 23.7, 4),
          (46.8, 16.1, 3.5), (61, -8.9, 3), (*TYCHO, 8)]


def on_disc(longitude, latitude):
    """The point of the unit disc, y upwards, with north at the top."""
    longitude, latitude = math.radians(longitude), math.radians(latitude)
    return math.cos(latitude) * math.sin(longitude), math.sin(latitude)


def walk(longitude, latitude, bearing, distance):
    """The place at an angular distance along a great circle."""
    latitude, bearing = math.radians(latitude), math.radians(bearing)
    distance = math.radians(distance)
    there = math.asin(math.sin(latitude) * math.cos(distance)
                      + math.cos(latitude) * math.sin(distance)
                      * math.cos(bearing))
    turn = math.atan2(
        math.sin(bearing) * math.sin(distance) * math.cos(latitude),
        math.cos(distance) - math.sin(latitude) * math.sin(there))
    return longitude + math.degrees(turn), math.degrees(there)


def ring(longitude, latitude, radius, count=10):
    """Places on a small circle."""
    return [walk(longitude, latitude, 360 * i / count, radius)
            for i in range(count)]


def plain_outline(name):
    if name in PLAINS:
        return PLAINS[name]
    return ring(*ROUND_PLAINS[name])


def ray(bearing, length, width, steps=5):
    """A wedge from Tycho: `width` degrees at its foot, a point at its end."""
    left, right = [], []
    for step in range(steps):
        share = step / steps
        distance = RAY_FOOT + (length - RAY_FOOT) * share
        half = math.radians(width / 2 * (1 - share))
        aside = math.degrees(half / math.sin(math.radians(distance)))
        left.append(walk(*TYCHO, bearing - aside, distance))
        right.append(walk(*TYCHO, bearing + aside, distance))
    return left + [walk(*TYCHO, bearing, length)] + right[::-1]
