#include "Shared/External/Logging/DLog.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>

#include "Platform/Foundation/Time/NSCalendar.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Shared/External/Logging/FormattedText.h"

namespace {

using Days = std::chrono::sys_days;

struct WeekRules {
  unsigned firstWeekday;  ///< From 0 for Sunday.
  int minimumDaysInFirstWeek;
};

WeekRules usersWeekRules() {
  const NSCalendar calendar = NSCalendar::currentCalendar();
  return {static_cast<unsigned>(calendar.firstWeekday() - 1), calendar.minimumDaysInFirstWeek()};
}

Days firstDayOfWeekYear(std::chrono::year year, const WeekRules& rules) {
  const Days newYear = year / std::chrono::January / 1;
  const auto daysBefore = std::chrono::weekday(newYear) - std::chrono::weekday(rules.firstWeekday);
  const bool enoughDays = 7 - daysBefore.count() >= rules.minimumDaysInFirstWeek;
  return newYear - daysBefore + (enoughDays ? std::chrono::days(0) : std::chrono::days(7));
}

/// The year to which the weeks' counting gives a day: around New Year it may be a neighbour.
int weekYear(Days day) {
  static const WeekRules rules = usersWeekRules();
  const std::chrono::year year = std::chrono::year_month_day(day).year();
  if (day < firstDayOfWeekYear(year, rules)) return static_cast<int>(year) - 1;
  const std::chrono::year next = year + std::chrono::years(1);
  return static_cast<int>(day < firstDayOfWeekYear(next, rules) ? year : next);
}

/// "YYYY-MM-dd HH:mm:ss.SSS", in the system's zone.
std::string dateText(const NSDate& date) {
  const int offset = NSTimeZone::systemTimeZone().secondsFromGMTForDate(date);
  const NSDate local = date.dateByAddingTimeInterval(offset);
  const double seconds = local.timeIntervalSince1970();
  const auto day = Days(std::chrono::days(static_cast<int>(std::floor(seconds / 86400))));
  // Half a microsecond more, for a millisecond that has no exact double.
  const double fraction = seconds - std::floor(seconds) + 0.0000005;
  std::string milliseconds =
      std::to_string(1000 + std::min(999, static_cast<int>(fraction * 1000)));
  // Between the year and the zone's offset: "-11-21 15:04:05".
  return std::to_string(weekYear(day)) + local.description().substr(4, 15) + "." +
         milliseconds.substr(1);
}

void print(const char* format, va_list arguments) {
  const std::string text = formattedText(format, arguments);
  std::printf("%s: %s\n", dateText(NSDate::date()).c_str(), text.c_str());
  std::fflush(stdout);
}

}  // namespace

void DLog(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  print(format, arguments);
  va_end(arguments);
}

void FMDBLog(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  print(format, arguments);
  va_end(arguments);
}
