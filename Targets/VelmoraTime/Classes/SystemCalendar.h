#pragma once

#include <cstdint>

#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"

/// A date and time of day as a calendar shows them. Months from 1.
struct CalendarFields {
  int32_t year = 0;
  int32_t month = 0;
  int32_t day = 0;
  int32_t hour = 0;
  int32_t minute = 0;
  int32_t second = 0;
};

// The system's calendar for the astronomy: the machine's zone, and always the Gregorian calendar
// (the Julian before 1582 October 15), whatever calendar the user's locale prefers. The formulas
// want Gregorian years, and a Buddhist or Islamic one would move every result by centuries.

/// What the system's calendar shows at an instant. An instant that is not finite or beyond ten
/// thousand years from 1970 reads as 1970-01-01.
CalendarFields systemCalendarFields(const NSDate& date);

/// The instant at which the system's calendar shows the fields: the first, where clocks show them
/// twice; by the clocks before the jump, where they are skipped. Hour 24 is the next day's 0.
NSDate dateFromSystemCalendar(const CalendarFields& fields);

/// The instant at which a calendar in UTC shows the fields.
NSDate dateFromUniversalCalendar(const CalendarFields& fields);

/// `date`, shifted so that the system's calendar shows UTC's wall clock in it.
NSDate dateShowingUniversalTime(const NSDate& date);

/// `date`, shifted so that the system's calendar shows the wall clock of `timeZone` in it. The
/// zone's offset is the one at the moment that was shifted by the system's.
NSDate correctedDate(const NSDate& date, const NSTimeZone& timeZone);
