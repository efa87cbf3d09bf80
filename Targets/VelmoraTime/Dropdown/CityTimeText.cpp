#include "Targets/VelmoraTime/Dropdown/CityTimeText.h"

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/FuzzyClock.h"
#include "Targets/VelmoraTime/Classes/NSDateOrdinalDays.h"

namespace {

std::string formatted(NSDateFormatter& formatter, std::string_view pattern, const NSDate& date) {
  formatter.setDateFormat(pattern);
  return formatter.stringFromDate(date);
}

std::string patternText(const std::string& element, NSDateFormatter& formatter,
                        const NSDate& date) {
  if (isLiteral(element)) return stringByDroppingFirstAndLast(element);
  const std::string text = formatted(formatter, element, date);
  return timeRolesOfElement(element).isOnDial ? validateHourString(text, element) : text;
}

std::string daySuffix(NSDateFormatter& formatter, const NSDate& date) {
  return ordinalSuffixFromDay(integerValue(formatted(formatter, "d", date)));
}

std::string zoneAbbreviation(const CityClock& clock, const NSDate& date) {
  if (clock.abbreviationLocale) clock.formatter.setLocale(*clock.abbreviationLocale);
  std::string text = formatted(clock.formatter, "zzz", date);
  clock.formatter.setLocale(clock.locale.value_or(NSLocale::currentLocale()));
  return text;
}

std::string textOf(const std::string& element, const CityClock& clock, const NSDate& date) {
  NSDateFormatter& formatter = clock.formatter;
  switch (cityKindOfElement(element)) {
    case CityElementKind::Pattern:
      return patternText(element, formatter, date);
    case CityElementKind::WeekdayLetter:
      return weekdayLetter();
    case CityElementKind::LowercaseMarker:
      return lowercaseString(dayPeriodMarker(formatter, date));
    case CityElementKind::UppercaseMarker:
      return uppercaseString(dayPeriodMarker(formatter, date));
    case CityElementKind::RelativeDay:
      return relativeDayText(clock, date);
    case CityElementKind::DaySuffix:
      return daySuffix(formatter, date);
    case CityElementKind::DaySuffixUpper:
      return uppercaseString(daySuffix(formatter, date));
    case CityElementKind::FuzzyClock:
      return fuzzyClockOfCity(
          date.dateByAddingTimeInterval(clock.zone.secondsFromGMTForDate(date)));
    case CityElementKind::ZoneAbbreviation:
      return zoneAbbreviation(clock, date);
  }
  return "";
}

}  // namespace

std::string cityTimeText(const ClockElements& elements, const CityClock& clock,
                         const NSDate& date) {
  clock.formatter.setTimeZone(clock.zone);
  std::string text;
  for (const std::string& element : elements)
    text += textOf(withStandAloneWeekdays(element), clock, date);
  return text;
}

std::string relativeDayText(const CityClock& clock, const NSDate& date) {
  // The modified Julian day: the day of the month would go wrong where a month ends.
  const auto dayIn = [&](const NSTimeZone& zone) {
    clock.formatter.setTimeZone(zone);
    return integerValue(formatted(clock.formatter, "g", date));
  };
  const int64_t here = dayIn(NSTimeZone::systemTimeZone());
  const int64_t there = dayIn(clock.zone);
  if (there > here) return WENLocalizedString("Tomorrow", "", "time");
  if (there < here) return WENLocalizedString("Yesterday", "", "time");
  return WENLocalizedString("Today", "", "time");
}
