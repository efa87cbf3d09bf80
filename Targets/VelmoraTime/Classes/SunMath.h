#pragma once

#include <cstdint>

// Where the Sun stands, and when it crosses an altitude. Degrees unless told otherwise, longitude
// east-positive, latitude north-positive. Nothing here checks its arguments or keeps state; what is
// not finite comes out as NaN or as a marker.

/// Markers in the place of an event's time. All are below -99999, and no time of day is.
constexpr int32_t RiseSetNoRise = -100000;      ///< A set was found and no rise.
constexpr int32_t RiseSetNoSet = -100001;       ///< A rise was found and no set.
constexpr int32_t RiseSetAlwaysUp = -100002;    ///< No crossing, above the threshold.
constexpr int32_t RiseSetAlwaysDown = -100004;  ///< No crossing, below the threshold.

/// The azimuth of an event that does not happen.
constexpr double NoAzimuth = -100000.0;

/// Whether the number stands for a time, and not for one of the markers.
constexpr bool isEventTime(int32_t value) { return value >= -99999; }

/// Modified Julian date of a calendar date (months from 1) and an hour. Whole dates are exact; a
/// fraction is quantised by the 32 bits, to 2^-8 day in this era.
float mjd(int32_t day, int32_t month, int32_t year, double hour);

/// Local mean sidereal time in hours, not reduced: it can lie outside 0 to 24.
double lmst(double modifiedJulianDate, double longitude);

/// Low-precision position of the Sun, of date: declination in degrees, right ascension in hours.
/// `t` in Julian centuries from J2000.0. Montenbruck & Pfleger, "Astronomy on the Personal
/// Computer", ch. 3 (MiniSun).
void sunPosition(double& declination, double& rightAscension, double t);

/// Sine of the Sun's geometric altitude.
double sunSinAlt(double modifiedJulianDate, double hour, double minute, double longitude,
                 double cosLatitude, double sinLatitude);

/// When the Sun rises above and sets below the altitude whose sine is given, in the 24 hours from
/// the zone's midnight of the date, in seconds relative to 00:00 UTC of that date, or markers.
/// A pair of crossings within two hours counts only beside a single crossing.
void sunRiseSet(int32_t& rise, int32_t& set, float modifiedJulianDate, double zoneHours,
                double longitude, double latitude, double sinThreshold);

/// Geometric altitude of the Sun, without refraction.
double sunAltitude2(float modifiedJulianDate, double longitude, double latitude);

/// Azimuth of the Sun from north through east, above 0 and up to 360; a calendar date from 1901 to
/// 2099 and a fraction of its day, both UTC. Meeus, "Astronomical Algorithms", ch. 25 and 13.
double sunAzimuth2(int32_t year, int32_t month, int32_t day, double longitude, double latitude,
                   double dayFraction);

/// The fraction of the UTC day at an instant; for a negative instant less 1.
double dayOffset(double seconds);

/// The whole hours of a length of time, and the whole minutes that are left.
int32_t hourFromSeconds(int32_t seconds);
int32_t minuteFromSeconds(int32_t seconds);
