#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

// Small arithmetic that the sun and moon functions share.

/// Radians in a degree, one factor per published theory: each keeps the digits that it was
/// published with, so that its results can be compared with others of the same theory.
constexpr double AltitudeDegree = 0.0174532925;         ///< Altitudes, rise and set.
constexpr double AzimuthDegree = 0.017453292519943295;  ///< Azimuths, phases and the lunar series.
constexpr double DegreesInRadian = 57.29577951308232;   ///< The inverse of the second one.

/// A full turn in the low-precision solar and lunar positions, and what follows from it.
constexpr double ShortTurn = 6.283185307;
constexpr double DegreesInShortRadian = 57.29577951471995;
constexpr double TwoHoursInShortRadian = 7.639437268629327;

constexpr double JulianDateOfJ2000 = 2451545;
constexpr double ModifiedJulianDateOfJ2000 = 51544.5;
constexpr double DaysInCentury = 36525;

/// Truncates toward zero. What does not fit, NaN included, becomes the smallest integer: far below
/// every marker, so it shows as an absent event.
inline int32_t truncatedTo32Bits(double value) {
  constexpr double Beyond = 2147483648.0;
  if (!(value > -Beyond - 1 && value < Beyond)) return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(value);
}

/// The part behind the decimal point, 0 up to 1, of a negative value too.
inline double fraction(double value) { return value - std::floor(value); }

/// An angle in degrees, brought to 0 up to 360.
inline double turn(double degrees) { return fraction(degrees / 360) * 360; }

/// The sine of an altitude; declination and hour angle in degrees, by the degree of the altitudes.
inline double sineOfAltitude(double declination, double hourAngle, double cosLatitude,
                             double sinLatitude) {
  return std::sin(declination * AltitudeDegree) * sinLatitude +
         std::cos(declination * AltitudeDegree) * cosLatitude *
             std::cos(hourAngle * AltitudeDegree);
}
