#pragma once

/// Mean arguments of the Moon's position, in degrees; they need not be reduced.
struct LunarArguments {
  double elongation;        ///< D
  double sunAnomaly;        ///< M
  double moonAnomaly;       ///< M'
  double latitudeArgument;  ///< F
  double meanLongitude;     ///< L'
  double a1, a2, a3;        ///< Venus, Jupiter, and the flattening of the Earth.
  double eccentricity;      ///< E, of the Earth's orbit relative to 2000.
};

/// Periodic terms: longitude and latitude in 1e-6 degree, distance in metres.
struct LunarPeriodicTerms {
  double longitude;
  double latitude;
  double distance;
};

/// Sums the two tables of 60 rows and the additive terms. Meeus, "Astronomical Algorithms", ch. 47.
LunarPeriodicTerms lunarPeriodicTerms(const LunarArguments& arguments);
