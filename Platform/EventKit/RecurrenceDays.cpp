#include "Platform/EventKit/RecurrenceDays_p.h"

#include <algorithm>

namespace {

using Frequency = RecurrenceRule::Frequency;

int64_t floorDivided(int64_t number, int64_t divisor) {
  return number / divisor - (number % divisor < 0 ? 1 : 0);
}

/// 1970-01-01 was a Thursday.
int weekdayOf(int64_t day) { return static_cast<int>(((day + 4) % 7 + 7) % 7); }

bool isLeapYear(int64_t year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int daysInMonth(int64_t year, int month) {
  constexpr int Days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return Days[month - 1] + (month == 2 && isLeapYear(year) ? 1 : 0);
}

bool holds(const std::vector<int16_t>& numbers, int64_t number, int64_t size) {
  return std::any_of(numbers.begin(), numbers.end(), [&](int64_t wanted) {
    return wanted == number || wanted == number - size - 1;
  });
}

}  // namespace

int64_t dayOfTime(int64_t time) { return floorDivided(time, SecondsPerDay); }

// Howard Hinnant, "chrono-Compatible Low-Level Date Algorithms": years that begin in March, in
// eras of 400.
int64_t dayOfDate(int64_t year, unsigned month, unsigned day) {
  const int64_t shifted = year - (month <= 2 ? 1 : 0);
  const int64_t era = floorDivided(shifted, 400);
  const int64_t yearOfEra = shifted - era * 400;
  const int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

struct RecurrenceDays::Date {
  explicit Date(int64_t number) {
    const int64_t shifted = number + 719468;
    const int64_t era = floorDivided(shifted, 146097);
    const int64_t dayOfEra = shifted - era * 146097;
    const int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int64_t dayFromMarch = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int64_t monthFromMarch = (5 * dayFromMarch + 2) / 153;
    day = static_cast<int>(dayFromMarch - (153 * monthFromMarch + 2) / 5 + 1);
    month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
  }

  int64_t year;
  int month;
  int day;
};

RecurrenceDays::RecurrenceDays(const RecurrenceRule& rule, int64_t start)
    : rule_(rule),
      start_(start),
      months_(rule.months),
      monthDays_(rule.monthDays),
      weekDays_(rule.weekDays) {
  const Date date(start);
  startMonth_ = date.year * 12 + date.month - 1;
  const bool hasMonthDays = rule.monthDays.any() || rule.monthDaysFromEnd.any();
  const bool isOpen = !hasMonthDays && rule.weekDays.empty() && rule.yearDays.empty();
  const RecurrenceRule::WeekDay startsOn{0, static_cast<uint8_t>(weekdayOf(start))};
  const bool isYearly = rule.frequency == Frequency::Yearly;
  if (isOpen && (rule.frequency == Frequency::Weekly || !rule.weekNumbers.empty())) {
    weekDays_ = {startsOn};
  } else if (isOpen && (isYearly || rule.frequency == Frequency::Monthly)) {
    if (isYearly && months_.none()) months_.set(static_cast<size_t>(date.month));
    monthDays_.set(static_cast<size_t>(date.day));
  }
  isEveryDay_ = weekDays_.empty() && monthDays_.none() && !hasMonthDays && months_.none() &&
                rule.yearDays.empty() && rule.weekNumbers.empty();
}

DayRange RecurrenceDays::period(int64_t number) const {
  const int64_t steps = number * rule_.interval;
  switch (rule_.frequency) {
    case Frequency::Yearly: {
      const int64_t year = startMonth_ / 12 + steps;
      return {dayOfDate(year, 1, 1), dayOfDate(year + 1, 1, 1)};
    }
    case Frequency::Monthly: {
      const int64_t month = startMonth_ + steps;
      const int64_t first = dayOfDate(month / 12, static_cast<unsigned>(month % 12 + 1), 1);
      return {first, first + daysInMonth(month / 12, static_cast<int>(month % 12 + 1))};
    }
    case Frequency::Weekly: {
      const int64_t first = firstDayOfWeek(start_) + steps * 7;
      return {first, first + 7};
    }
    default:
      return {start_ + steps, start_ + steps + 1};
  }
}

int64_t RecurrenceDays::periodOf(int64_t day) const {
  const Date date(day);
  const int64_t month = date.year * 12 + date.month - 1;
  switch (rule_.frequency) {
    case Frequency::Yearly:
      return floorDivided(date.year - startMonth_ / 12, rule_.interval);
    case Frequency::Monthly:
      return floorDivided(month - startMonth_, rule_.interval);
    case Frequency::Weekly:
      return floorDivided(day - firstDayOfWeek(start_), 7 * int64_t{rule_.interval});
    default:
      return floorDivided(day - start_, rule_.interval);
  }
}

bool RecurrenceDays::contains(int64_t day) const {
  if (isEveryDay_) return true;
  const Date date(day);
  if (months_.any() && !months_[static_cast<size_t>(date.month)]) return false;
  if (monthDays_.any() || rule_.monthDaysFromEnd.any()) {
    const int fromEnd = daysInMonth(date.year, date.month) - date.day + 1;
    if (!monthDays_[static_cast<size_t>(date.day)] &&
        !rule_.monthDaysFromEnd[static_cast<size_t>(fromEnd)]) {
      return false;
    }
  }
  if (!rule_.yearDays.empty() && !holds(rule_.yearDays, day - dayOfDate(date.year, 1, 1) + 1,
                                        isLeapYear(date.year) ? 366 : 365)) {
    return false;
  }
  if (!rule_.weekNumbers.empty() && !fitsWeekNumber(day, date)) return false;
  return weekDays_.empty() || fitsWeekDay(day, date);
}

bool RecurrenceDays::fitsWeekDay(int64_t day, const Date& date) const {
  const bool isOfMonth = rule_.frequency == Frequency::Monthly ||
                         (rule_.frequency == Frequency::Yearly && rule_.months.any());
  const bool hasOrdinals = isOfMonth || rule_.frequency == Frequency::Yearly;
  const int64_t before = isOfMonth ? date.day - 1 : day - dayOfDate(date.year, 1, 1);
  const int64_t length =
      isOfMonth ? daysInMonth(date.year, date.month) : (isLeapYear(date.year) ? 366 : 365);
  const int64_t ordinal = before / 7 + 1;
  const int64_t ordinalFromEnd = -((length - before - 1) / 7 + 1);
  const int weekday = weekdayOf(day);
  return std::any_of(weekDays_.begin(), weekDays_.end(), [&](const auto& wanted) {
    if (wanted.day != weekday) return false;
    return !hasOrdinals || wanted.ordinal == 0 || wanted.ordinal == ordinal ||
           wanted.ordinal == ordinalFromEnd;
  });
}

bool RecurrenceDays::fitsWeekNumber(int64_t day, const Date& date) const {
  // A year's first days may belong to the last week of the year before, its last days to the first
  // of the next.
  int64_t year = date.year;
  if (day < firstWeekOfYear(year)) --year;
  if (day >= firstWeekOfYear(year + 1)) ++year;
  const int64_t first = firstWeekOfYear(year);
  return holds(rule_.weekNumbers, (day - first) / 7 + 1, (firstWeekOfYear(year + 1) - first) / 7);
}

int64_t RecurrenceDays::firstDayOfWeek(int64_t day) const {
  return day - (weekdayOf(day) - rule_.firstWeekday + 7) % 7;
}

/// The first day of the first week that has four days of the year.
int64_t RecurrenceDays::firstWeekOfYear(int64_t year) const {
  return firstDayOfWeek(dayOfDate(year, 1, 4));
}
