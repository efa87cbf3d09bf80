#include "Targets/VelmoraTime/Dropdown/CityAccessibleName.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/FilledText.h"
#include "Targets/VelmoraTime/Classes/TranslatedAmounts.h"

namespace {

/// How far the city's clocks are from those here, in the digits of its time.
std::string offsetText(int64_t seconds, std::string_view time) {
  const int64_t minutes = std::abs(seconds) / 60;
  if (minutes == 0) return WENLocalizedString("same time as here", "", "time");
  const std::string hoursText = translatedAmount(minutes / 60, localizedKey("%i hour"),
                                                 localizedKey("%i hours"), "common", time);
  const std::string minutesText = translatedAmount(minutes % 60, localizedKey("%i minute"),
                                                   localizedKey("%i minutes"), "common", time);
  const bool isAhead = seconds > 0;
  if (minutes % 60 != 0 && minutes > 60) {
    const std::string_view key =
        isAhead ? localizedKey("%@ and %@ ahead") : localizedKey("%@ and %@ behind");
    return filledIn(WENLocalizedString(key, "", "time"), "%@", {hoursText, minutesText});
  }
  const std::string_view key = isAhead ? localizedKey("%@ ahead") : localizedKey("%@ behind");
  return filledIn(WENLocalizedString(key, "", "time"), "%@",
                  {minutes < 60 ? minutesText : hoursText});
}

/// Marks of no letters are the same with apostrophes as without, but only so part of a bare time.
std::string withQuotedMarks(const std::string& element) {
  const bool isMark = std::ranges::none_of(element, [](char character) {
    return character == '\'' || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z');
  });
  return isMark ? "'" + element + "'" : element;
}

/// The time of the rows' format, without seconds: they would be stale before they are read.
ClockElements timeToTheMinute() {
  constexpr std::string_view Format = "Time_DropdownFormat";
  ClockElements kept;
  for (const std::string& element : clockElementsFromSetting(ZEVObjectForKey(Format), Format)) {
    if (element != "ss") {
      kept.push_back(withQuotedMarks(element));
    } else if (!kept.empty() && isLiteral(kept.back())) {
      kept.pop_back();
    }
  }
  return bareTimeFormat(kept);
}

}  // namespace

std::string cityAccessibleName(std::string_view city, const CityClock& clock, const NSDate& date) {
  const int offset = clock.zone.secondsFromGMTForDate(date) -
                     NSTimeZone::systemTimeZone().secondsFromGMTForDate(date);
  const std::string time = cityTimeText(timeToTheMinute(), clock, date);
  return filledIn(WENLocalizedString("%@, %@ %@, %@", "", "time"), "%@",
                  {std::string(city), lowercaseString(relativeDayText(clock, date)), time,
                   offsetText(offset, time)});
}
