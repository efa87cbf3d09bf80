#pragma once

#include <array>
#include <cstdint>

#include "Platform/Foundation/Time/NSDate.h"

// The days of a month's grid. All dates here are wall-clock seconds: the seconds since 1970 of a
// moment and the system zone's offset at that moment, so that a calendar in UTC counts the days
// that the user reads. Every day has 86,400 of them, whatever the clocks do.

constexpr double SecondsPerDay = 86400;
constexpr double NoDay = -1;  ///< Where a day may be missing.

/// What a cell of the grid stands for; the views know the numbers, too.
enum MonthDayType : int64_t {
  WeekNumberType = 0,
  DayOfMonthType = 1,
  DayOfOtherMonthType = 2,
};

struct MonthDay {
  double date = 0;      ///< Its beginning.
  int64_t day = 0;      ///< Of the month.
  int64_t weekday = 0;  ///< 1 is Sunday.
  int64_t type = DayOfMonthType;
  bool isToday = false;
  bool isTomorrow = false;
};

/// Six weeks around a month.
struct MonthDays {
  static constexpr int Columns = 7;
  static constexpr int Rows = 6;
  static constexpr int Count = Columns * Rows;
  static constexpr double Length = Count * SecondsPerDay;

  std::array<MonthDay, Count> days;
  /// Today's date; `NoDay` if that is not among them.
  double currentDay = NoDay;

  double start() const { return days.front().date; }
};

/// The weeks that begin with the one in which the month of `reference` begins. Weeks begin on
/// `firstWeekday`, 1 for Sunday. At midnight itself both days are today, and the later is current.
MonthDays daysOfMonth(double reference, double now, int firstWeekday);

double wallClock(const NSDate& date);
/// The present moment.
double wallClockNow();

/// The beginning of the first day of the month.
double firstOfMonth(double date);
/// The same day some months later, or the last of a month that is shorter.
double monthsLater(double date, int64_t months);
