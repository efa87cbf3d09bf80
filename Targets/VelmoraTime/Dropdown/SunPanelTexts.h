#pragma once

#include <string>

#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Targets/VelmoraTime/Classes/ClockElements.h"

// The texts of the sun panel, translated. An event that does not take place shows as "-".

/// An angle with one decimal; "-" for `NoAzimuth` and below.
std::string degreesFromValue(double degrees);

/// The time of a moment in seconds since 1970 in the formatter's zone, whose pattern is changed;
/// "-" for a whole number of seconds below 0, as all markers of SunMath.h are.
std::string timeFromValue(double time, const ClockElements& elements, NSDateFormatter& formatter);

/// "10 hours and 5 minutes of daylight". Less than an hour is told in minutes alone, and so is the
/// negative length of a day without a sunset, which means nothing.
std::string dayLengthFromValue(double seconds);

/// "2 minutes less than yesterday": seconds are told only where there is no whole minute.
std::string dayLengthDifference(double today, double yesterday);
