#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/VelmoraTime/Classes/SunMath.h"
#include "Targets/VelmoraTime/Classes/SystemCalendar.h"

/// The Sun at one place on one calendar date, a record with these keys:
///
/// - "rise-" and "set-" with "sun" (altitude -0.833 degree, which stands for refraction and
///   radius), "civil" (-6), "nautical" (-12) and "astronomical" (-18): seconds since 1970, whole
///   and within 32 bits, or a marker of SunMath.h. A sunrise that the date does not have beside a
///   sunset it has is 100000 seconds before the date's midnight in UTC.
/// - "noon": the middle of sunrise and sunset, -100000 without both.
/// - "azimuth-now", "altitude-now": degrees, at the present instant on the record's calendar date.
/// - "azimuth-rise-sun", "azimuth-noon", "azimuth-set-sun": degrees or `NoAzimuth`;
///   "altitude-noon": degrees. Altitudes move in steps of 337.5 seconds.
/// - "daylength", "daylength-yesterday": whole seconds between rise and set, of civil twilight
///   where the Sun stays down; meaningless where an event is missing.
using SunData = std::map<std::string, double, std::less<>>;

/// The record of the calendar date that `timeZone` shows at `date`. Times outside the 32 bits
/// (before December 1901, after January 2038) come out as the smallest 32-bit integer, times before
/// 1970 read as markers.
SunData calculateSunRiseAndSet(const NSDate& date, const NSTimeZone& timeZone, double longitude,
                               double latitude);

/// Midnight of the calendar date that a zone shows at an instant.
struct ZoneMidnight {
  double zoneHours = 0;          ///< The zone's offset at the instant, east-positive.
  CalendarFields date;           ///< Its calendar date.
  double secondsSince1970 = 0;   ///< 00:00 UTC of that date.
  float modifiedJulianDate = 0;  ///< The same moment.
};
ZoneMidnight zoneMidnight(const NSDate& date, const NSTimeZone& timeZone);

/// An event in seconds from 00:00 UTC of a date, as seconds since 1970. `RiseSetNoRise` is shifted
/// like a time; the other markers stay.
int32_t eventSince1970(int32_t value, const ZoneMidnight& midnight);

// The names begin as they do throughout the family.

/// The middle of a rise and a set; -100000 if either is a marker.
int32_t _noon(int32_t rise, int32_t set);

/// Seconds from rise to set, also of markers; a whole day and none for "always up" and "down".
int32_t _daylength(int32_t rise, int32_t set);
