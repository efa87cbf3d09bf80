#pragma once

#include <cstdint>

#include "Platform/EventKit/RecurrenceRule_p.h"

constexpr int64_t SecondsPerDay = 86400;

/// Days are counted from 1970-01-01, which is 0.
int64_t dayOfTime(int64_t time);

/// A day by the Gregorian calendar of all time. The month is 1 to 12.
int64_t dayOfDate(int64_t year, unsigned month, unsigned day);

/// Days from `first` to before `end`.
struct DayRange {
  int64_t first;
  int64_t end;
};

/// On which days a rule takes place.
class RecurrenceDays {
 public:
  /// `start` is the day of the series' beginning. `rule` must outlive this.
  RecurrenceDays(const RecurrenceRule& rule, int64_t start);

  /// The days of a rule's nth day, week, month or year; the first, 0, holds the start.
  DayRange period(int64_t number) const;
  /// The number of the last period that begins at or before a day.
  int64_t periodOf(int64_t day) const;

  /// Whether the rule takes place on that day, if its period is one of the rule's.
  bool contains(int64_t day) const;

  bool isEveryDay() const { return isEveryDay_; }

 private:
  struct Date;
  bool fitsWeekDay(int64_t day, const Date& date) const;
  bool fitsWeekNumber(int64_t day, const Date& date) const;
  int64_t firstDayOfWeek(int64_t day) const;
  int64_t firstWeekOfYear(int64_t year) const;

  const RecurrenceRule& rule_;
  int64_t start_;
  int64_t startMonth_;  ///< Months since the year 0.
  // What the rule leaves open comes from the start.
  std::bitset<13> months_;
  std::bitset<32> monthDays_;
  std::vector<RecurrenceRule::WeekDay> weekDays_;
  bool isEveryDay_;
};
