#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// A time zone in the form of the POSIX `TZ` variable, as it also closes a compiled zone file:
/// "EST5EDT,M3.2.0,M11.1.0". Offsets here are seconds to add to UTC, east-positive.
struct PosixTimeZone {
  /// A moment of each year, on the wall clock.
  struct Change {
    enum class Form {
      JulianDay,    ///< Day 1 to 365; 29 February is never counted.
      DayOfYear,    ///< Day 0 to 365, leap days counted.
      MonthWeekDay  ///< A weekday's nth coming in a month; the fifth is the last.
    };
    Form form = Form::MonthWeekDay;
    int month = 0;
    int week = 0;
    int day = 0;
    int32_t seconds = 2 * 3600;  ///< Of the day; may be negative or beyond the day.

    /// Seconds since 1970, as if the wall clock were UTC.
    int64_t inYear(int year) const;
  };

  struct Daylight {
    std::string name;
    int32_t offset = 0;
    Change start;
    Change end;

    int64_t startsAt(int year) const { return start.inYear(year); }
    int64_t endsAt(int year) const { return end.inYear(year); }
  };

  std::string standardName;
  int32_t standardOffset = 0;
  std::optional<Daylight> daylight;

  /// Nothing if the text does not read as a whole.
  static std::optional<PosixTimeZone> parse(std::string_view text);
};

/// The Gregorian year in which a moment falls, in UTC.
int yearOfTime(int64_t secondsSince1970);
