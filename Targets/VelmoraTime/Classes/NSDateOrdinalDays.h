#pragma once

#include <cstdint>
#include <string>

#include "Platform/Foundation/Time/NSDate.h"

/// The English ordinal suffix of a day of the month: "st", "nd", "rd" or "th".
std::string ordinalSuffixFromDay(int64_t day);

/// The suffix of the date's day in the current calendar.
std::string ordinalSuffix(const NSDate& date);
