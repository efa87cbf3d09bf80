#include "Targets/VelmoraTime/Calendar/MonthDays.h"

#include "Platform/Foundation/Time/NSCalendar.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"

namespace {

NSCalendar universalCalendar() {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(*NSTimeZone::timeZoneWithAbbreviation("UTC"));
  return calendar;
}

NSDate at(double seconds) { return NSDate::dateWithTimeIntervalSince1970(seconds); }

/// The first of the month that is `months` after that of `date`.
double firstOfMonth(const NSCalendar& calendar, double date, int64_t months) {
  NSDateComponents parts = calendar.components(
      NSCalendarUnitEra | NSCalendarUnitYear | NSCalendarUnitMonth | NSCalendarUnitDay, at(date));
  parts.day = 1;
  *parts.month += months;
  return calendar.dateFromComponents(parts).timeIntervalSince1970();
}

}  // namespace

double wallClock(const NSDate& date) {
  return date.timeIntervalSince1970() + NSTimeZone::defaultTimeZone().secondsFromGMTForDate(date);
}

double wallClockNow() { return wallClock(NSDate::date()); }

double firstOfMonth(double date) { return firstOfMonth(universalCalendar(), date, 0); }

double monthsLater(double date, int64_t months) {
  return universalCalendar()
      .dateByAddingComponents({.month = months}, at(date))
      .timeIntervalSince1970();
}

MonthDays daysOfMonth(double reference, double now, int firstWeekday) {
  constexpr int64_t Sunday = 1;
  const NSCalendar calendar = universalCalendar();
  const double first = firstOfMonth(calendar, reference, 0);
  const double next = firstOfMonth(calendar, reference, 1);
  const int64_t weekdayOfFirst = calendar.component(NSCalendarUnitWeekday, at(first));
  double start = first - static_cast<double>(weekdayOfFirst - Sunday) * SecondsPerDay;
  start += static_cast<double>(firstWeekday - Sunday) * SecondsPerDay;
  if (start > first) start -= MonthDays::Columns * SecondsPerDay;

  MonthDays month;
  int today = MonthDays::Count;
  for (int index = 0; index < MonthDays::Count; ++index) {
    MonthDay& day = month.days[static_cast<size_t>(index)];
    day.date = start + index * SecondsPerDay;
    day.day = calendar.component(NSCalendarUnitDay, at(day.date));
    day.weekday = (firstWeekday - Sunday + index) % MonthDays::Columns + Sunday;
    day.type = day.date < first || day.date >= next ? DayOfOtherMonthType : DayOfMonthType;
    if (now >= day.date && now <= day.date + SecondsPerDay) {
      day.isToday = true;
      month.currentDay = day.date;
      today = index;
    }
    day.isTomorrow = index == today + 1;
  }
  return month;
}
