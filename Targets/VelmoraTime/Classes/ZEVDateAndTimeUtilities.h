#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Foundation/Time/NSCalendar.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Targets/VelmoraTime/Classes/ClockElements.h"

/// The locale of the setting "language", if it has one.
std::optional<NSLocale> localeOfLanguageSetting();

/// A formatter in that locale, else in the current one.
NSDateFormatter dateFormatterOfLanguageSetting();

/// The shared calendars and the one shared date formatter. Main thread only; the formatter's
/// pattern and zone are set just before each use and hold for nothing after it.
class ZEVDateAndTimeUtilities {
 public:
  static ZEVDateAndTimeUtilities& sharedUtilities();
  /// Has the shared ones made anew at their next use, for an extra that is loaded anew.
  static void cleanup();

  ZEVDateAndTimeUtilities();

  /// In the locale of the setting "language", else the current one, as it was at the first use.
  NSDateFormatter& dateFormatter() { return dateFormatter_; }
  const NSCalendar& gregorianCalendar() const { return gregorian_; }

  /// The user's own calendar: what the formatter's texts, the leaf and the suffixes count by.
  const NSCalendar& currentCalendar() const { return current_; }

  /// The week of the year of a date on the UTC calendar: by the ISO rule if
  /// "Time_WeekNumberFormat" is 1, else with weeks that start on Sunday and a first week of at
  /// least one day.
  int64_t weekForDate(const NSDate& date);
  /// The same as text, of an instant in seconds since 1970.
  std::string week(double time);

  /// 1 is Sunday, in the system's zone.
  int64_t weekdayOfToday() const;

  /// The format of a bare time: the time part of "Time_DropdownFormat" if it can be cut out, else
  /// the locale's short time.
  ClockElements dropdownTimeFormat() const;

  std::string nameForHour(int64_t hour) const;
  std::string fuzzyClock(double time) const;

 private:
  NSCalendar weekCalendar_;
  NSCalendar gregorian_;
  NSCalendar current_;
  NSCalendar dayCalendar_;
  NSDateFormatter dateFormatter_;
};
