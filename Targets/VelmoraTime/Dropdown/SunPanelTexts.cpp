#include "Targets/VelmoraTime/Dropdown/SunPanelTexts.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/FilledText.h"
#include "Targets/VelmoraTime/Classes/TranslatedAmounts.h"

namespace {

constexpr std::string_view Table = "time";
constexpr std::string_view Absent = "-";

int32_t wholeSeconds(double value) {
  using Limits = std::numeric_limits<int32_t>;
  if (!(value > Limits::min())) return Limits::min();
  return value >= Limits::max() ? Limits::max() : static_cast<int32_t>(value);
}

std::string amount(int64_t count, std::string_view one, std::string_view many) {
  return translatedAmount(count, one, many, "common");
}

/// A length of time in whole hours and whole minutes.
struct Length {
  explicit Length(int64_t seconds)
      : hours(static_cast<int64_t>(std::floor(static_cast<float>(seconds) / 3600.F))),
        minutes((seconds - hours * 3600) / 60) {}

  std::string hoursText() const {
    return amount(hours, localizedKey("%i hour"), localizedKey("%i hours"));
  }
  std::string minutesText() const {
    return amount(minutes, localizedKey("%i minute"), localizedKey("%i minutes"));
  }

  int64_t hours;
  int64_t minutes;
};

std::string filledFormat(std::string_view key, std::initializer_list<std::string_view> amounts) {
  return filledIn(WENLocalizedString(key, "", Table), "%@", amounts);
}

}  // namespace

std::string degreesFromValue(double degrees) {
  constexpr float LargestMarker = -100000;
  const auto value = static_cast<float>(degrees);
  if (value <= LargestMarker) return std::string(Absent);
  // Independent of the C library's locale.
  std::array<char, 64> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                 static_cast<double>(value), std::chars_format::fixed, 1);
  return std::string(digits.data(), end.ptr) + "\u00BA";
}

std::string timeFromValue(double time, const ClockElements& elements, NSDateFormatter& formatter) {
  return wholeSeconds(time) < 0 ? std::string(Absent) : dateString(elements, formatter, time);
}

std::string dayLengthFromValue(double seconds) {
  const Length length(wholeSeconds(seconds));
  if (length.hours < 1) {
    return filledFormat(localizedKey("%@ of daylight"), {length.minutesText()});
  }
  return filledFormat(localizedKey("%@ and %@ of daylight"),
                      {length.hoursText(), length.minutesText()});
}

std::string dayLengthDifference(double today, double yesterday) {
  const int64_t change = static_cast<int64_t>(wholeSeconds(today)) - wholeSeconds(yesterday);
  if (change == 0) return WENLocalizedString("Same as yesterday", "", Table);
  const int64_t seconds = std::abs(change);
  const Length length(seconds);
  if (length.hours > 0) {
    return filledFormat(change < 0 ? localizedKey("%@ and %@ less than yesterday")
                                   : localizedKey("%@ and %@ more than yesterday"),
                        {length.hoursText(), length.minutesText()});
  }
  return filledFormat(
      change < 0 ? localizedKey("%@ less than yesterday") : localizedKey("%@ more than yesterday"),
      {length.minutes != 0
           ? length.minutesText()
           : amount(seconds, localizedKey("%i second"), localizedKey("%i seconds"))});
}
