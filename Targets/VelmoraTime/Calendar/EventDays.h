#pragma once

#include <array>
#include <string>

#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Targets/VelmoraTime/Calendar/MonthDays.h"
#include "Targets/VelmoraTime/CalendarStatCollector.h"
#include "Targets/VelmoraTime/Classes/ClockElements.h"

/// A stretch of wall-clock seconds (MonthDays.h).
struct WallClockSpan {
  double start = 0;
  double end = 0;
};

/// When an event takes place by the user's clocks.
WallClockSpan spanOfEvent(const EKEvent& event);

/// Whether an event has a part of a day. One that ends where the day begins has none; one that
/// begins where the day ends has one only if it has no length.
bool isInDay(const WallClockSpan& event, const WallClockSpan& day);

/// The events of a month's days.
struct EventsOfDays {
  double start = NoDay;  ///< The first day's beginning, in wall-clock seconds.
  std::array<EventList, MonthDays::Count> days;
};

/// Puts each event that has a title and an identifier into the days that it has a part of, in the
/// order in which they are given. Any thread.
EventsOfDays eventsOfDays(const EventList& events, double start);

/// What rows of a day's list say of their events' times, in the format and the language that the
/// settings had when this was made.
class EventTimes {
 public:
  EventTimes();

  /// When it takes place or, if the day sees a part of it only, when that begins or ends. Whole
  /// hours of a 12-hour clock come without minutes.
  std::string textInDay(const EKEvent& event, const WallClockSpan& day);

 private:
  std::string partText(const EKEvent& event, const WallClockSpan& day);
  std::string timeText(double wallClockSeconds);

  const ClockElements format_;
  const bool leavesOutMinutes_;
  NSDateFormatter formatter_;
};
