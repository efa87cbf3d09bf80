#pragma once

#include <cstdint>

// Where the Moon stands and when it rises and sets. Degrees unless told otherwise, latitude
// north-positive, longitude as each function tells. Nothing here checks its arguments or keeps
// state; what is not finite comes out as NaN or as a marker of SunMath.h.

/// Low-precision position of the Moon, geocentric, of date: declination in degrees, right ascension
/// in hours. `t` in Julian centuries from J2000.0. Montenbruck & Pfleger, "Astronomy on the
/// Personal Computer", ch. 3 (MiniMoon).
void moonPosition(double& declination, double& rightAscension, double t);

/// Sine of the Moon's geocentric altitude. Longitude east-positive.
double moonSinAlt(double modifiedJulianDate, double hour, double minute, double longitude,
                  double cosLatitude, double sinLatitude);

/// As `sunRiseSet`, for a geocentric altitude of 8 minutes of arc, which stands for parallax,
/// radius and refraction. Without a crossing a Moon that is up has risen "always up" and sets
/// "always down"; one that is down is "always down" in both. Longitude east-positive.
void moonRiseSet(int32_t& rise, int32_t& set, float modifiedJulianDate, double zoneHours,
                 double longitude, double latitude);

/// Azimuth from north through east, geocentric altitude, and distance in whole kilometres.
/// `zoneMinutes` are added to the time of day to make it UTC; longitude is west-positive.
/// Meeus, "Astronomical Algorithms", ch. 47.
void fetchMoonSkyData(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                      int32_t zoneMinutes, double& azimuth, double& altitude, double& distance,
                      double longitude, double latitude);
