#include "Shared/External/Logging/DDLogFileName.h"

#include <algorithm>
#include <charconv>
#include <chrono>

#include "Platform/Foundation/Text/NSString.h"

namespace {

constexpr std::string_view DatePattern = "dddd-dd-dd dd-dd";

int numberAt(std::string_view text, size_t position, size_t length) {
  int number = 0;
  std::from_chars(text.data() + position, text.data() + position + length, number);
  return number;
}

std::optional<NSDate> parsedDate(std::string_view text) {
  const auto fits = [](char character, char pattern) {
    return pattern == 'd' ? character >= '0' && character <= '9' : character == pattern;
  };
  if (!std::ranges::equal(text, DatePattern, fits)) return std::nullopt;
  const std::chrono::year_month_day day{
      std::chrono::year(numberAt(text, 0, 4)),
      std::chrono::month(static_cast<unsigned>(numberAt(text, 5, 2))),
      std::chrono::day(static_cast<unsigned>(numberAt(text, 8, 2)))};
  const int hour = numberAt(text, 11, 2);
  const int minute = numberAt(text, 14, 2);
  if (!day.ok() || hour > 23 || minute > 59) return std::nullopt;
  const auto time =
      std::chrono::sys_days(day) + std::chrono::hours(hour) + std::chrono::minutes(minute);
  return NSDate::dateWithTimeIntervalSince1970(
      std::chrono::duration<double>(time.time_since_epoch()).count());
}

}  // namespace

std::optional<DDLogFileName> DDLogFileName::parsed(std::string_view fileName) {
  if (!fileName.ends_with(Extension)) return std::nullopt;
  fileName.remove_suffix(Extension.size());
  const auto parts = componentsSeparatedByString(fileName, " ");
  if (parts.size() != 3 && parts.size() != 4) return std::nullopt;
  const auto date = parsedDate(parts[1] + " " + parts[2]);
  if (!date) return std::nullopt;
  DDLogFileName name{*date};
  if (parts.size() == 4) {
    std::from_chars(parts[3].data(), parts[3].data() + parts[3].size(), name.number);
  }
  return name;
}

std::string DDLogFileName::text(std::string_view applicationName, const NSDate& creationDate,
                                uint64_t number) {
  // "2026-11-21 15:04:05 +0000" up to the minutes.
  std::string date = creationDate.description().substr(0, DatePattern.size());
  std::ranges::replace(date, ':', '-');
  std::string name = std::string(applicationName) + " " + date;
  if (number > 1) name += " " + std::to_string(number);
  return name.append(Extension);
}
