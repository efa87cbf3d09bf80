#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Platform/Foundation/Time/NSCalendar.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Targets/Shared/ZEVTranslations.h"

/// The name of an hour on a 12-hour dial, translated; 0 and everything from 24 on is "twelve".
std::string fuzzyHourName(int64_t hour);

/// The same in a city's clock, where 0 and everything from 24 on is "midnight": the language's own
/// name for that hour, or the word that stands alone.
std::string fuzzyHourNameOfCity(int64_t hour);

/// What differs between the copies of the fuzzy clock. The keys of the twenty-fives are two
/// spellings on purpose; every language provides both.
struct FuzzyClockStyle {
  std::string_view twentyFivePast;
  std::string_view twentyFiveTo;
  std::string (*nameForHour)(int64_t hour);
};

inline constexpr FuzzyClockStyle UtilitiesFuzzyClock = {
    localizedKey("twentyfive past %@"), localizedKey("twentyfive to %@"), fuzzyHourName};
inline constexpr FuzzyClockStyle MenubarFuzzyClock = {
    localizedKey("twenty five past %@"), localizedKey("twenty five to %@"), fuzzyHourName};

/// The time of day in a calendar as a phrase in steps of five minutes, translated.
std::string fuzzyClockPhrase(const NSCalendar& calendar, const NSDate& date,
                             const FuzzyClockStyle& style);

/// The phrase of a city's clock. `date` has the offset of the city's zone added to it already.
std::string fuzzyClockOfCity(const NSDate& date);
