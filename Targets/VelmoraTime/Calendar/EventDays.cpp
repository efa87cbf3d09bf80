#include "Targets/VelmoraTime/Calendar/EventDays.h"

#include <algorithm>

#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Time/NSCalendar.h"
#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Calendar/MonthDays.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

namespace {

std::string timeText(const ClockElements& format, double wallClockSeconds) {
  NSDateFormatter formatter = dateFormatterOfLanguageSetting();
  formatter.setTimeZone(*NSTimeZone::timeZoneWithAbbreviation("UTC"));
  return dateString(format, formatter, wallClockSeconds);
}

std::string partText(const ClockElements& format, const EKEvent& event, const WallClockSpan& day) {
  const WallClockSpan span = spanOfEvent(event);
  const bool isOver = day.start > span.end;
  const bool beginsInDay = isOver || span.start >= day.start;
  const bool endsInDay = isOver || day.end > span.end;
  if (!isOver && (event.isAllDay() || (!beginsInDay && !endsInDay))) {
    return WENLocalizedString("All Day", "", "time");
  }
  if (beginsInDay && !endsInDay) return "Starts " + timeText(format, span.start);
  if (endsInDay && !beginsInDay) return "Ends " + timeText(format, span.end);
  return timeText(format, span.start);
}

}  // namespace

WallClockSpan spanOfEvent(const EKEvent& event) {
  return {wallClock(event.startDate()), wallClock(event.endDate())};
}

bool isInDay(const WallClockSpan& event, const WallClockSpan& day) {
  const bool beginsInside = event.start >= day.start;
  const bool endsInside = event.end <= day.end;
  return (beginsInside && (event.start < day.end || endsInside)) ||
         (endsInside && event.end > day.start) || (event.start < day.start && event.end > day.end);
}

std::string timeOfEventInDay(const EKEvent& event, const WallClockSpan& day) {
  const auto format = ZEVDateAndTimeUtilities::sharedUtilities().dropdownTimeFormat();
  const std::string text = partText(format, event, day);
  const bool hasMarker = std::ranges::find(format, "a") != format.end();
  return hasMarker ? stringByReplacingOccurrences(text, ":00", "") : text;
}
