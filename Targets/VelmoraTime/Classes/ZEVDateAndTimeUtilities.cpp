#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

#include <algorithm>
#include <array>
#include <optional>

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/FuzzyClock.h"
#include "Targets/VelmoraTime/Classes/NSDateOrdinalDays.h"

namespace {

constexpr int Sunday = 1;
constexpr int Monday = 2;

bool isTimeElement(std::string_view element) {
  constexpr std::array<std::string_view, 9> TimeElements = {"HH", "H",  "mm",  "hh", "a",
                                                            "h",  "aa", "aaa", "ss"};
  return std::find(TimeElements.begin(), TimeElements.end(), element) != TimeElements.end();
}

bool isHourElement(std::string_view element) {
  return element == "HH" || element == "H" || element == "h" || element == "hh";
}

/// The time part of a list: from its first time element to the first foreign one, without a
/// trailing literal. Literals before the time are skipped.
ClockElements timePart(const ClockElements& elements) {
  ClockElements kept;
  bool hasStarted = false;
  for (const std::string& element : elements) {
    if (!hasStarted) hasStarted = isTimeElement(element);
    if (element.find('\'') != std::string::npos || isTimeElement(element)) {
      if (hasStarted) kept.push_back(element);
    } else if (hasStarted) {
      break;
    }
  }
  if (!kept.empty() && isLiteral(kept.back())) kept.pop_back();
  return kept;
}

ClockElements timeFormatOfLocale() {
  NSDateFormatter formatter;
  formatter.setDateStyle(NSDateFormatterStyle::None);
  formatter.setTimeStyle(NSDateFormatterStyle::Short);
  const std::string pattern = formatter.dateFormat();
  if (pattern.find('H') != std::string::npos) return {"H", "':'", "mm"};
  return {pattern.find("hh") != std::string::npos ? "hh" : "h", "':'", "mm ", "a"};
}

NSDateFormatter makeSharedFormatter() {
  NSDateFormatter formatter;
  const PropertyList language = ZEVObjectForKey("language");
  if (language.string() != nullptr) {
    formatter.setLocale(NSLocale::localeWithLocaleIdentifier(*language.string()));
  }
  return formatter;
}

std::optional<ZEVDateAndTimeUtilities>& sharedInstance() {
  static std::optional<ZEVDateAndTimeUtilities> utilities;
  return utilities;
}

}  // namespace

ZEVDateAndTimeUtilities& ZEVDateAndTimeUtilities::sharedUtilities() {
  auto& shared = sharedInstance();
  return shared ? *shared : shared.emplace();
}

void ZEVDateAndTimeUtilities::cleanup() { sharedInstance().reset(); }

ZEVDateAndTimeUtilities::ZEVDateAndTimeUtilities()
    : weekCalendar_(NSCalendar::gregorianCalendar()),
      gregorian_(NSCalendar::gregorianCalendar()),
      current_(NSCalendar::autoupdatingCurrentCalendar()),
      dayCalendar_(NSCalendar::gregorianCalendar()),
      dateFormatter_(makeSharedFormatter()) {
  weekCalendar_.setMinimumDaysInFirstWeek(4);
  weekCalendar_.setFirstWeekday(Monday);
  weekCalendar_.setTimeZone(*NSTimeZone::timeZoneWithAbbreviation("UTC"));
}

int64_t ZEVDateAndTimeUtilities::weekForDate(const NSDate& date) {
  const bool isIso = ZEVIntegerForKey("Time_WeekNumberFormat") == 1;
  const int firstWeekday = isIso ? Monday : Sunday;
  if (weekCalendar_.firstWeekday() != firstWeekday) {
    weekCalendar_.setMinimumDaysInFirstWeek(isIso ? 4 : 1);
    weekCalendar_.setFirstWeekday(firstWeekday);
  }
  return weekCalendar_.component(NSCalendarUnitWeekOfYear, date);
}

std::string ZEVDateAndTimeUtilities::week(double time) {
  return std::to_string(weekForDate(NSDate::dateWithTimeIntervalSince1970(time)));
}

int64_t ZEVDateAndTimeUtilities::weekdayOfToday() const {
  return dayCalendar_.component(NSCalendarUnitWeekday, NSDate::date());
}

ClockElements ZEVDateAndTimeUtilities::dropdownTimeFormat() const {
  constexpr std::string_view Key = "Time_DropdownFormat";
  ClockElements kept = timePart(clockElementsFromSetting(ZEVObjectForKey(Key), Key));
  const bool hasHour = std::any_of(kept.begin(), kept.end(), isHourElement);
  const bool hasMinutes = std::find(kept.begin(), kept.end(), "mm") != kept.end();
  return hasHour && hasMinutes ? kept : timeFormatOfLocale();
}

std::string ZEVDateAndTimeUtilities::nameForHour(int64_t hour) const { return fuzzyHourName(hour); }

std::string ZEVDateAndTimeUtilities::fuzzyClock(double time) const {
  const NSDate date = NSDate::dateWithTimeIntervalSince1970(time);
  return fuzzyClockPhrase(current_.component(NSCalendarUnitHour, date),
                          current_.component(NSCalendarUnitMinute, date),
                          {localizedKey("twentyfive past %@"), localizedKey("twentyfive to %@"),
                           [this](int64_t hour) { return nameForHour(hour); }});
}

std::string dateString(const ClockElements& elements, NSDateFormatter& formatter, double time) {
  auto& utilities = ZEVDateAndTimeUtilities::sharedUtilities();
  const NSDate date = NSDate::dateWithTimeIntervalSince1970(time);
  const std::string marker = dayPeriodMarker(formatter, date);
  SecondHourRule secondHour(elements);
  std::string text;
  for (const std::string& original : elements) {
    std::string element = withStandAloneWeekdays(original);
    if (element == "__DAY_MTWRFSU__") {
      text += weekdayLetter();
    } else if (element == "__RELATIVE_DAY__") {
      text += relativeDayText();
    } else if (element == "__DAY_SUFFIX__") {
      text += ordinalSuffix(date);
    } else if (element == "__DAY_SUFFIX_UPPER__") {
      text += uppercaseString(ordinalSuffix(date));
    } else if (element.starts_with("FUZZY")) {
      text += utilities.fuzzyClock(time);
    } else {
      element = withMarkerLiterals(element, marker);
      if (element == "w") {
        // The week calendar stands on UTC, so the wall clock is given as if it were UTC.
        element = "'" + utilities.week(time + formatter.timeZone().secondsFromGMT()) + "'";
      }
      if (isLiteral(element)) {
        text += stringByDroppingFirstAndLast(element);
      } else {
        text += formattedElement(secondHour.apply(std::move(element)), formatter, date);
      }
    }
  }
  return text;
}
