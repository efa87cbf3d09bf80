#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "Platform/Foundation/Time/NSDate.h"

/// What differs between the copies of the fuzzy clock. The keys of the twenty-fives are two
/// spellings on purpose; every language provides both.
struct FuzzyClockStyle {
  std::string_view twentyFivePast;
  std::string_view twentyFiveTo;
  std::function<std::string(int64_t hour)> nameForHour;
};

/// The time as a phrase in steps of five minutes, translated. `hour` is 0 to 23.
std::string fuzzyClockPhrase(int64_t hour, int64_t minute, const FuzzyClockStyle& style);

/// The name of an hour on a 12-hour dial, translated; 0 and everything from 24 on is "twelve".
std::string fuzzyHourName(int64_t hour);

/// The same in a city's clock, where 0 and everything from 24 on is "midnight": the language's own
/// name for that hour, or the word that stands alone.
std::string fuzzyHourNameOfCity(int64_t hour);

/// The phrase of a city's clock. `date` has the offset of the city's zone added to it already.
std::string fuzzyClockOfCity(const NSDate& date);
