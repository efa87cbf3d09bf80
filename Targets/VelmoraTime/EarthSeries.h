#pragma once

/// Heliocentric position of the Earth, ecliptic and equinox of date.
struct EarthPosition {
  double longitude;  ///< Radians, not reduced.
  double latitude;   ///< Radians.
  double distance;   ///< Astronomical units.
};

/// `tau` in Julian millennia of dynamical time from J2000.0. Meeus, "Astronomical Algorithms",
/// ch. 32 and appendix III.
EarthPosition earthPosition(double tau);
