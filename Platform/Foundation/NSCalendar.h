#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSLocale.h"
#include "Platform/Foundation/NSTimeZone.h"

/// Calendar units, by the values under which the code asks for them.
enum NSCalendarUnit : uint64_t {
  NSCalendarUnitEra = 2,
  NSCalendarUnitYear = 4,
  NSCalendarUnitMonth = 8,
  NSCalendarUnitDay = 16,
  NSCalendarUnitHour = 32,
  NSCalendarUnitMinute = 64,
  NSCalendarUnitSecond = 128,
  NSCalendarUnitWeekday = 512,
  NSCalendarUnitWeekOfYear = 8192,
};

/// Splits instants into the parts of a date. Months count from 1, Sunday is weekday 1.
/// A calendar that was given no zone follows the system's, also when that changes.
class NSCalendar {
 public:
  /// The user's own calendar, which need not be the Gregorian one.
  static NSCalendar currentCalendar();
  static NSCalendar gregorianCalendar();

  NSCalendar(NSCalendar&&) noexcept;
  NSCalendar& operator=(NSCalendar&&) noexcept;
  ~NSCalendar();

  void setTimeZone(const NSTimeZone& zone);
  int firstWeekday() const;
  void setFirstWeekday(int weekday);
  int minimumDaysInFirstWeek() const;
  void setMinimumDaysInFirstWeek(int days);

  int64_t component(NSCalendarUnit unit, const NSDate& date) const;

  /// The number of `smaller` within `larger` on a date, from 1: the day of the month for day and
  /// month. 0 for a pair that the calendar does not answer.
  int64_t ordinalityOfUnit(NSCalendarUnit smaller, NSCalendarUnit larger, const NSDate& date) const;

 private:
  struct Implementation;
  explicit NSCalendar(std::unique_ptr<Implementation> implementation);

  std::unique_ptr<Implementation> implementation_;
};
