#include "Platform/Foundation/Zones/PosixTimeZone_p.h"

#include <chrono>

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

bool isDigit(char character) { return character >= '0' && character <= '9'; }
bool isLetter(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

/// Reads from the front of a text; a failed read leaves `ok` false for good.
struct Reader {
  std::string_view text;
  bool ok = true;

  bool take(char expected) {
    if (!text.starts_with(expected)) return false;
    text.remove_prefix(1);
    return true;
  }

  int number(int minimum, int maximum) {
    int value = 0;
    size_t digits = 0;
    while (digits < text.size() && digits < 4 && isDigit(text[digits])) {
      value = value * 10 + (text[digits++] - '0');
    }
    text.remove_prefix(digits);
    if (digits == 0 || value < minimum || value > maximum) ok = false;
    return value;
  }

  std::string name() {
    size_t length = 0;
    std::string result;
    if (take('<')) {
      length = text.find('>');
      if (length == std::string_view::npos) return ok = false, result;
      result = text.substr(0, length);
      text.remove_prefix(length + 1);
    } else {
      while (length < text.size() && isLetter(text[length]))
        ++length;
      result = text.substr(0, length);
      text.remove_prefix(length);
    }
    if (result.size() < 3) ok = false;
    return result;
  }

  /// Hours, and optionally minutes and seconds, with a sign.
  int32_t clockTime(int maximumHours) {
    const bool negative = take('-');
    if (!negative) take('+');
    int32_t seconds = number(0, maximumHours) * 3600;
    if (take(':')) seconds += number(0, 59) * 60;
    if (take(':')) seconds += number(0, 59);
    return negative ? -seconds : seconds;
  }

  PosixTimeZone::Change change() {
    using Form = PosixTimeZone::Change::Form;
    PosixTimeZone::Change result;
    if (take('M')) {
      result.form = Form::MonthWeekDay;
      result.month = number(1, 12);
      if (!take('.')) ok = false;
      result.week = number(1, 5);
      if (!take('.')) ok = false;
      result.day = number(0, 6);
    } else if (take('J')) {
      result.form = Form::JulianDay;
      result.day = number(1, 365);
    } else {
      result.form = Form::DayOfYear;
      result.day = number(0, 365);
    }
    if (take('/')) result.seconds = clockTime(167);
    return result;
  }
};

}  // namespace

int64_t PosixTimeZone::Change::inYear(int year) const {
  const std::chrono::year calendarYear(year);
  const sys_days newYear = calendarYear / 1 / 1;
  sys_days date = newYear;
  switch (form) {
    case Form::JulianDay:
      date += days(day - 1);
      if (calendarYear.is_leap() && day >= 60) date += days(1);
      break;
    case Form::DayOfYear:
      date += days(day);
      break;
    case Form::MonthWeekDay: {
      const std::chrono::weekday weekday(static_cast<unsigned>(day));
      const auto calendarMonth = calendarYear / month;
      date = week == 5 ? sys_days(calendarMonth / weekday[std::chrono::last])
                       : sys_days(calendarMonth / weekday[static_cast<unsigned>(week)]);
      break;
    }
  }
  return int64_t{date.time_since_epoch().count()} * 86'400 + seconds;
}

std::optional<PosixTimeZone> PosixTimeZone::parse(std::string_view text) {
  Reader reader{text};
  PosixTimeZone zone;
  zone.standardName = reader.name();
  // POSIX counts offsets westward.
  zone.standardOffset = -reader.clockTime(24);
  if (reader.ok && !reader.text.empty()) {
    Daylight summer;
    summer.name = reader.name();
    summer.offset = zone.standardOffset + 3600;
    if (!reader.text.empty() && reader.text.front() != ',') summer.offset = -reader.clockTime(24);
    if (reader.text.empty()) {
      reader.text = ",M3.2.0,M11.1.0";  // The customary rule of a text that names none.
    }
    if (!reader.take(',')) return std::nullopt;
    summer.start = reader.change();
    if (!reader.take(',')) return std::nullopt;
    summer.end = reader.change();
    zone.daylight = std::move(summer);
  }
  if (!reader.ok || !reader.text.empty()) return std::nullopt;
  return zone;
}

int yearOfTime(int64_t secondsSince1970) {
  const auto day =
      std::chrono::floor<days>(std::chrono::sys_seconds(std::chrono::seconds(secondsSince1970)));
  return static_cast<int>(year_month_day(day).year());
}
