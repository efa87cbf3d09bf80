#include "Targets/VelmoraTime/Classes/ClockElements.h"

#include <algorithm>
#include <stdexcept>

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

ClockElements clockElementsFromSetting(const PropertyList& value, std::string_view key) {
  if (value.isNull()) return {};
  const auto fail = [&](const std::string& what) {
    throw std::invalid_argument("the setting " + std::string(key) +
                                " must be a list of texts, not " + what);
  };
  if (value.array() == nullptr) fail(std::string(value.kindName()));
  ClockElements elements;
  for (const PropertyList& item : *value.array()) {
    if (item.string() == nullptr) fail("a list with " + std::string(item.kindName()) + " in it");
    elements.push_back(*item.string());
  }
  return elements;
}

std::string dayPeriodMarker(NSDateFormatter& formatter, const NSDate& date) {
  formatter.setDateFormat("a");
  return substringToIndex(formatter.stringFromDate(date), 1);
}

std::string withStandAloneWeekdays(std::string_view element) {
  if (element.find("EE") == std::string_view::npos) return std::string(element);
  std::string result = stringByReplacingOccurrences(element, "EEEEE", "ccccc");
  result = stringByReplacingOccurrences(result, "EEEE", "cccc");
  // "EEE" stays as it is, though it holds an "EE".
  const auto pieces = componentsSeparatedByString(result, "EEE");
  result = stringByReplacingOccurrences(pieces.front(), "EE", "ccc");
  for (size_t index = 1; index < pieces.size(); ++index) {
    result += "EEE" + stringByReplacingOccurrences(pieces[index], "EE", "ccc");
  }
  return result;
}

std::string withMarkerLiterals(const std::string& element, const std::string& marker) {
  if (element.find("aa") == std::string::npos) return element;
  // The longer one goes first: it holds the shorter.
  const std::string result =
      stringByReplacingOccurrences(element, "aaa", "'" + lowercaseString(marker) + "'");
  return stringByReplacingOccurrences(result, "aa", "'" + uppercaseString(marker) + "'");
}

std::string weekdayLetter() {
  constexpr std::string_view Letters = "UMTWRFS";
  const int64_t weekday = ZEVDateAndTimeUtilities::sharedUtilities().weekdayOfToday();
  const size_t index = weekday >= 1 && weekday <= 7 ? static_cast<size_t>(weekday - 1) : 0;
  return std::string(Letters.substr(index, 1));
}

std::string relativeDayText() { return WENLocalizedString("Today", "", "time"); }

SecondHourRule::SecondHourRule(const ClockElements& elements)
    : hasMinutes_(std::any_of(elements.begin(), elements.end(), [](const std::string& element) {
        return element == "m" || element == "mm";
      })) {}

std::string SecondHourRule::apply(std::string element) {
  if (hasMinutes_) return element;
  const bool isHour = element == "h" || element == "hh" || element == "HH";
  if (!hasSeenHour_) {
    hasSeenHour_ = isHour;
    return element;
  }
  return isHour ? "mm" : element;
}

std::string validateHourString(std::string_view text, std::string_view element) {
  const int64_t value = integerValue(text);
  const int64_t hour = value == 0 ? 12 : value >= 13 ? value - 12 : value;
  const bool wantsZero = hour < 10 && element == "hh";
  return stringWithDigitsOf((wantsZero ? "0" : "") + std::to_string(hour), text);
}

std::string formattedElement(const std::string& element, NSDateFormatter& formatter,
                             const NSDate& date) {
  formatter.setDateFormat(element);
  std::string text = formatter.stringFromDate(date);
  return element == "hh" || element == "h" ? validateHourString(text, element) : text;
}
