#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"

/// "rise" and "set" of the Moon on one calendar date: seconds since 1970, or a marker of SunMath.h.
using MoonData = std::map<std::string, int32_t, std::less<>>;

/// A principal phase to come.
struct MoonPhaseRecord {
  int32_t phase = 0;  ///< 0 new moon, 2 first quarter, 4 full moon, 6 last quarter.
  double time = 0;    ///< Seconds since 1970.
  float age = 0;      ///< Always 0.
};

/// The phase index of a moment, 0 to 7 from new moon to waning crescent, with the age in days and
/// the illuminated fraction. For 0.0025 of a cycle after a principal phase the index is that
/// phase's; then it falls back to the one before until the cycle has moved on by 0.01. Lunations
/// count from the mean new moon: between a true one and a later mean one the index is 2.
int32_t currentPhase(double& age, double& illumination, const NSDate& date);

/// The next principal phases in time order, `count` of them but 100000 at the most. East of
/// Greenwich a phase already past by less than the system zone's offset is still listed; west of it
/// one nearer than the offset is left out.
std::vector<MoonPhaseRecord> nextPhases(int32_t count, const NSDate& date);

/// Rise and set on the calendar date that `timeZone` shows at `date`. Longitude east-positive. The
/// set may be earlier than the rise; range and shifted "no rise" as in SunData.h.
MoonData calculateMoonRiseAndSet(const NSDate& date, const NSTimeZone& timeZone, double longitude,
                                 double latitude);

/// The Moon's altitude and azimuth in degrees and its distance in kilometres, to the minute, as
/// from latitude 0, longitude 0.
void calculateMoonInfo(const NSDate& date, double& altitude, double& azimuth, double& distance);
