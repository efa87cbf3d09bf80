#pragma once

#include <string>
#include <string_view>

#include "Platform/Foundation/Time/NSDate.h"

/// A place on the Earth in degrees, positive north and east.
struct EarthPlace {
  double latitude = 0;
  double longitude = 0;
};

/// Where the Sun is overhead, by SunMath.h: to a few hundredths of a degree.
EarthPlace subSolarPlace(const NSDate& date);

/// What is read aloud for the light map: "Day and night map: the Sun is over Africa, night in
/// Tokyo"; translated.
std::string lightMapDescription(const NSDate& date, std::string_view city, bool isDay);
