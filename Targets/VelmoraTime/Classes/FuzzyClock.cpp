#include "Targets/VelmoraTime/Classes/FuzzyClock.h"

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/SystemCalendar.h"

namespace {

constexpr std::string_view Table = "time";

/// How many hours each phrase from "five past" to "five to" adds before naming the hour.
constexpr std::string_view DefaultAddedHours = "0,0,0,0,0,0,1,1,1,1,1";
constexpr size_t AddedHoursCount = 11;

std::string phraseFor(int64_t index, const FuzzyClockStyle& style) {
  const auto keys =
      localizedKeys("midnight", "%@ o'clock", "five past %@", "ten past %@", "quarter past %@",
                    "twenty past %@", style.twentyFivePast, "half past %@", style.twentyFiveTo,
                    "twenty to %@", "quarter to %@", "ten to %@", "five to %@");
  return WENLocalizedString(keys[static_cast<size_t>(index)], "", Table);
}

int64_t addedHours(int64_t index) {
  auto parts = componentsSeparatedByString(
      WENLocalizedString("FUZZY_CLOCK_HOURS", DefaultAddedHours, Table), ",");
  if (parts.size() != AddedHoursCount) parts = componentsSeparatedByString(DefaultAddedHours, ",");
  return integerValue(parts[static_cast<size_t>(index - 2)]);
}

}  // namespace

std::string fuzzyHourName(int64_t hour) {
  constexpr auto Names = localizedKeys("twelve", "one", "two", "three", "four", "five", "six",
                                       "seven", "eight", "nine", "ten", "eleven");
  // A language may take hours off, too.
  const int64_t onDial = hour >= 24 ? 0 : (hour % 12 + 12) % 12;
  return WENLocalizedString(Names[static_cast<size_t>(onDial)], "", Table);
}

std::string fuzzyHourNameOfCity(int64_t hour) {
  if (hour != 0 && hour < 24) return fuzzyHourName(hour);
  return WENLocalizedString("FUZZY_CLOCK_MIDNIGHT", WENLocalizedString("midnight", "", Table),
                            Table);
}

std::string fuzzyClockPhrase(const NSCalendar& calendar, const NSDate& date,
                             const FuzzyClockStyle& style) {
  const int64_t hour = calendar.component(NSCalendarUnitHour, date);
  const int64_t minute = calendar.component(NSCalendarUnitMinute, date);
  // The buckets are centred on the five-minute marks; the top of the hour reaches from 58 to 2.
  const int64_t mark = (minute + 2) / 5;
  const bool isTop = mark == 0 || mark == 12;
  const int64_t topHour = mark == 12 ? hour + 1 : hour;
  if (isTop && (topHour == 0 || topHour == 24)) return phraseFor(0, style);
  const int64_t index = isTop ? 1 : mark + 1;
  const int64_t namedHour = isTop ? topHour : hour + addedHours(index);
  return stringByReplacingOccurrences(phraseFor(index, style), "%@", style.nameForHour(namedHour));
}

std::string fuzzyClockOfCity(const NSDate& date) {
  constexpr FuzzyClockStyle Style = {localizedKey("twenty five past %@"),
                                     localizedKey("twenty five to %@"), fuzzyHourNameOfCity};
  // With the system's offset taken off, the system's calendar reads the city's wall clock.
  return fuzzyClockPhrase(NSCalendar::gregorianCalendar(), dateShowingUniversalTime(date), Style);
}
