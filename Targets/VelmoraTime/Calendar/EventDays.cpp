#include "Targets/VelmoraTime/Calendar/EventDays.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Time/NSCalendar.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

WallClockSpan spanOfEvent(const EKEvent& event) {
  return {wallClock(event.startDate()), wallClock(event.endDate())};
}

bool isInDay(const WallClockSpan& event, const WallClockSpan& day) {
  const bool beginsInside = event.start >= day.start;
  const bool endsInside = event.end <= day.end;
  return (beginsInside && (event.start < day.end || endsInside)) ||
         (endsInside && event.end > day.start) || (event.start < day.start && event.end > day.end);
}

EventsOfDays eventsOfDays(const EventList& events, double start) {
  EventsOfDays sorted{start, {}};
  std::unordered_set<const EKEvent*> known;
  const auto indexOf = [&](double moment) {
    return std::clamp(std::floor((moment - start) / SecondsPerDay), 0.0, MonthDays::Count - 1.0);
  };
  for (const auto& event : events) {
    const bool isNamed = event->title() && !event->eventIdentifier().empty();
    if (!isNamed || !known.insert(event.get()).second) continue;
    const WallClockSpan span = spanOfEvent(*event);
    // One without length at midnight is in both days.
    const auto first = static_cast<size_t>(indexOf(span.start - 1));
    const auto last = static_cast<size_t>(indexOf(span.end));
    for (size_t index = first; index <= last; ++index) {
      const double day = start + static_cast<double>(index) * SecondsPerDay;
      if (isInDay(span, {day, day + SecondsPerDay})) sorted.days[index].push_back(event);
    }
  }
  return sorted;
}

EventTimes::EventTimes()
    : format_(ZEVDateAndTimeUtilities::sharedUtilities().dropdownTimeFormat()),
      leavesOutMinutes_(std::ranges::find(format_, "a") != format_.end()),
      formatter_(dateFormatterOfLanguageSetting()) {
  formatter_.setTimeZone(*NSTimeZone::timeZoneWithAbbreviation("UTC"));
}

std::string EventTimes::timeText(double wallClockSeconds) {
  return dateString(format_, formatter_, wallClockSeconds);
}

std::string EventTimes::partText(const EKEvent& event, const WallClockSpan& day) {
  const WallClockSpan span = spanOfEvent(event);
  const bool isOver = day.start > span.end;
  const bool beginsInDay = isOver || span.start >= day.start;
  const bool endsInDay = isOver || day.end > span.end;
  if (!isOver && (event.isAllDay() || (!beginsInDay && !endsInDay))) {
    return WENLocalizedString("All Day", "", "time");
  }
  if (beginsInDay && !endsInDay) return "Starts " + timeText(span.start);
  if (endsInDay && !beginsInDay) return "Ends " + timeText(span.end);
  return timeText(span.start);
}

std::string EventTimes::textInDay(const EKEvent& event, const WallClockSpan& day) {
  const std::string text = partText(event, day);
  return leavesOutMinutes_ ? stringByReplacingOccurrences(text, ":00", "") : text;
}
