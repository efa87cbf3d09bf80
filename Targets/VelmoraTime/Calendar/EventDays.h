#pragma once

#include <string>

#include "Platform/EventKit/EKEvent.h"

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

/// What a row of a day's list says of an event's time: when it takes place or, if the day sees a
/// part of it only, when that begins or ends. Whole hours of a 12-hour clock come without minutes.
std::string timeOfEventInDay(const EKEvent& event, const WallClockSpan& day);
