#include "Platform/Foundation/Time/DatePattern_p.h"

#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr double SecondsPerMinute = 60;

/// Years before and after 1970 in which ICU's milliseconds are exact; some thousands.
constexpr double Furthest = 1e11;

/// Equal to no time.
constexpr double Never = std::numeric_limits<double>::quiet_NaN();

}  // namespace

DatePattern::DatePattern(std::string_view pattern, std::unique_ptr<icu::SimpleDateFormat> format)
    : format_(std::move(format)), period_(periodOf(pattern)) {
  const auto count = period_ == Period::SecondOfMinute ? static_cast<size_t>(SecondsPerMinute) : 1;
  kept_.resize(count, {Never, ""});
}

DatePattern::Period DatePattern::periodOf(std::string_view pattern) {
  // Fractions, and zones: their names depend on more than what the clocks show.
  constexpr std::string_view Passing = "SAzZOvVXx";
  bool isQuoted = false;
  bool hasSeconds = false;
  bool hasOthers = false;
  for (const char letter : pattern) {
    if (letter == '\'') isQuoted = !isQuoted;
    const bool isField = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
    if (isQuoted || !isField) continue;
    if (Passing.find(letter) != std::string_view::npos) return Period::None;
    (letter == 's' ? hasSeconds : hasOthers) = true;
  }
  if (!hasSeconds) return Period::Minute;
  return hasOthers ? Period::None : Period::SecondOfMinute;
}

double DatePattern::timeOf(double wallClock) const {
  if (period_ == Period::None || !(std::abs(wallClock) < Furthest)) return Never;
  const double minute = std::floor(wallClock / SecondsPerMinute);
  return period_ == Period::Minute ? minute : wallClock - minute * SecondsPerMinute;
}

size_t DatePattern::placeOf(double time) const {
  return period_ == Period::SecondOfMinute ? static_cast<size_t>(time) : 0;
}

const std::string* DatePattern::keptText(double wallClock) const {
  const double time = timeOf(wallClock);
  if (std::isnan(time)) return nullptr;
  const Kept& kept = kept_[placeOf(time)];
  return kept.time == time ? &kept.text : nullptr;
}

std::string DatePattern::text(icu::Calendar& calendar, double wallClock) {
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString units;
  format_->format(calendar, units, nullptr, status);
  std::string text;
  units.toUTF8String(text);
  const double time = timeOf(wallClock);
  if (!std::isnan(time)) kept_[placeOf(time)] = {time, text};
  return text;
}
