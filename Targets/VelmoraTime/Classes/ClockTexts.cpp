#include "Targets/VelmoraTime/Classes/ClockTexts.h"

#include <cstddef>
#include <cstdint>

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/FuzzyClock.h"
#include "Targets/VelmoraTime/Classes/NSDateOrdinalDays.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

namespace {

ZEVDateAndTimeUtilities& utilities() { return ZEVDateAndTimeUtilities::sharedUtilities(); }

}  // namespace

std::string dayPeriodMarker(NSDateFormatter& formatter, const NSDate& date) {
  formatter.setDateFormat("a");
  return substringToIndex(formatter.stringFromDate(date), 1);
}

std::string weekdayLetter() {
  constexpr std::string_view Letters = "UMTWRFS";
  const int64_t weekday = utilities().weekdayOfToday();
  const size_t index = weekday >= 1 && weekday <= 7 ? static_cast<size_t>(weekday - 1) : 0;
  return std::string(Letters.substr(index, 1));
}

ClockTexts::ClockTexts(ClockWalker walker, const ClockElements& elements,
                       NSDateFormatter& formatter, double time)
    : walker_(walker),
      formatter_(formatter),
      time_(time),
      date_(NSDate::dateWithTimeIntervalSince1970(time)),
      marker_(dayPeriodMarker(formatter, date_)),
      secondHour_(elements) {}

std::string ClockTexts::textOf(const std::string& element) {
  switch (kindOfElement(element, walker_)) {
    case ElementKind::WeekdayLetter:
      return weekdayLetter();
    case ElementKind::Today:
      return WENLocalizedString("Today", "", "time");
    case ElementKind::DaySuffix:
      return ordinalSuffix(date_);
    case ElementKind::DaySuffixUpper:
      return uppercaseString(ordinalSuffix(date_));
    case ElementKind::FuzzyClock:
      return utilities().fuzzyClock(time_);
    case ElementKind::MenubarFuzzyClock:
      return fuzzyClockPhrase(utilities().currentCalendar(), date_, MenubarFuzzyClock);
    case ElementKind::LocalWeek:
      // The week calendar stands on UTC, so the wall clock is given as if it were UTC.
      return utilities().week(time_ + formatter_.timeZone().secondsFromGMT());
    case ElementKind::UniversalWeek:
      return utilities().week(time_);
    case ElementKind::Separator:
    case ElementKind::Pattern:
      return textOfPattern(element);
    case ElementKind::Moon:
    case ElementKind::CalendarLeaf:
      return "";
  }
  return "";
}

std::string ClockTexts::textOfPattern(const std::string& original) {
  std::string element = withMarkerLiterals(withStandAloneWeekdays(original), marker_);
  if (isLiteral(element)) return stringByDroppingFirstAndLast(element);
  element = secondHour_.apply(std::move(element));
  isAfterTime_ = endsTime(element);
  formatter_.setDateFormat(element);
  std::string text = formatter_.stringFromDate(date_);
  return timeRolesOfElement(element).isOnDial ? validateHourString(text, element) : text;
}

std::string dateString(const ClockElements& elements, NSDateFormatter& formatter, double time) {
  ClockTexts texts(ClockWalker::DateString, elements, formatter, time);
  std::string result;
  for (const std::string& element : elements)
    result += texts.textOf(element);
  return result;
}

std::string validateHourString(std::string_view text, std::string_view element) {
  const int64_t value = integerValue(text);
  const int64_t hour = value == 0 ? 12 : value >= 13 ? value - 12 : value;
  const bool wantsZero = hour < 10 && element == "hh";
  return stringWithDigitsOf((wantsZero ? "0" : "") + std::to_string(hour), text);
}
