#include "Targets/VelmoraTime/Classes/SystemCalendar.h"

#include <cmath>

#include "Targets/VelmoraTime/Classes/JulianDate.h"

namespace {

constexpr double Day = 86400;
constexpr double JulianDateOf1970 = 2440587.5;

int32_t whole(double value) { return static_cast<int32_t>(value); }

CalendarFields fieldsOfWallClock(double seconds) {
  constexpr double Furthest = 10000 * 365.25 * Day;
  const double wall = std::abs(seconds) < Furthest ? std::floor(seconds) : 0;
  const double days = std::floor(wall / Day);
  const int32_t rest = whole(wall - days * Day);
  CalendarFields fields;
  // The date comes from whole days: a Julian date with a fraction holds no more than 40
  // microseconds, and would round the last of them into the next day.
  jyear(fields.year, fields.month, fields.day, JulianDateOf1970 + days);
  fields.hour = rest / 3600;
  fields.minute = rest / 60 % 60;
  fields.second = rest % 60;
  return fields;
}

double wallClockOfFields(const CalendarFields& fields) {
  const double days = ucttoj(fields.year, fields.month - 1, fields.day, 0, 0, 0) - JulianDateOf1970;
  return days * Day + fields.hour * 3600.0 + fields.minute * 60.0 + fields.second;
}

double offsetAt(const NSTimeZone& zone, double seconds) {
  return zone.secondsFromGMTForDate(NSDate::dateWithTimeIntervalSince1970(seconds));
}

}  // namespace

CalendarFields systemCalendarFields(const NSDate& date) {
  const double seconds = date.timeIntervalSince1970();
  return fieldsOfWallClock(seconds + offsetAt(NSTimeZone::systemTimeZone(), seconds));
}

NSDate dateFromSystemCalendar(const CalendarFields& fields) {
  const NSTimeZone zone = NSTimeZone::systemTimeZone();
  const double wall = wallClockOfFields(fields);
  // No zone is further than a day from UTC, so these are the offsets around any jump nearby.
  const double before = offsetAt(zone, wall - Day);
  const double after = offsetAt(zone, wall + Day);
  for (const double offset : {before, after}) {
    if (offsetAt(zone, wall - offset) == offset) {
      return NSDate::dateWithTimeIntervalSince1970(wall - offset);
    }
  }
  return NSDate::dateWithTimeIntervalSince1970(wall - before);
}

NSDate dateFromUniversalCalendar(const CalendarFields& fields) {
  return NSDate::dateWithTimeIntervalSince1970(wallClockOfFields(fields));
}

NSDate dateShowingUniversalTime(const NSDate& date) {
  return date.dateByAddingTimeInterval(-NSTimeZone::systemTimeZone().secondsFromGMTForDate(date));
}

NSDate correctedDate(const NSDate& date, const NSTimeZone& timeZone) {
  const NSDate shifted = dateShowingUniversalTime(date);
  return shifted.dateByAddingTimeInterval(timeZone.secondsFromGMTForDate(shifted));
}
