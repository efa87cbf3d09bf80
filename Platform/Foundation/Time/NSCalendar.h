#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Time/NSDateComponents.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"

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

/// Splits instants into the parts of a date, and makes instants of them. A calendar that was given
/// no zone follows the system's, also when that changes. Units that a question does not know raise
/// `std::invalid_argument`.
///
/// An object is for one thread.
class NSCalendar {
 public:
  /// The user's own calendar, which need not be the Gregorian one.
  static NSCalendar currentCalendar();
  /// The same, following the current locale when that changes.
  static NSCalendar autoupdatingCurrentCalendar();
  static NSCalendar gregorianCalendar();

  NSCalendar(NSCalendar&&) noexcept;
  NSCalendar& operator=(NSCalendar&&) noexcept;
  ~NSCalendar();

  /// The name of the system of counting, as a locale's keyword has it: "gregorian", "persian".
  std::string calendarIdentifier() const;

  void setTimeZone(const NSTimeZone& zone);
  int firstWeekday() const;
  void setFirstWeekday(int weekday);
  int minimumDaysInFirstWeek() const;
  void setMinimumDaysInFirstWeek(int days);

  int64_t component(NSCalendarUnit unit, const NSDate& date) const;
  /// The parts of a date for a sum of units.
  NSDateComponents components(uint64_t units, const NSDate& date) const;

  /// The instant of a date's parts from the era to the second; weekday and week are not read. A
  /// missing part has its first value, and one too large rolls into the next: month 13 is January.
  /// Where clocks show a time twice it is the first; where they skip it, it is that by the clocks
  /// before the jump. A part beyond 32 bits raises `std::out_of_range`.
  NSDate dateFromComponents(const NSDateComponents& components) const;

  /// The date so many years, months, weeks, days, hours, minutes and seconds later, in this order.
  /// The time of day stays over a change of the clocks, and a day of the month that the month does
  /// not have becomes its last. Eras and weekdays cannot be added.
  NSDate dateByAddingComponents(const NSDateComponents& components, const NSDate& date) const;

  /// The number of `smaller` within `larger` on a date, from 1: the day of the month or the year.
  int64_t ordinalityOfUnit(NSCalendarUnit smaller, NSCalendarUnit larger, const NSDate& date) const;

 private:
  struct Implementation;
  explicit NSCalendar(std::unique_ptr<Implementation> implementation);

  std::unique_ptr<Implementation> implementation_;
};
