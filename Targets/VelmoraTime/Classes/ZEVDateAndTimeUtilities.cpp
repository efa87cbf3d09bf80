#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

#include "Platform/Foundation/SharedInstance.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/FuzzyClock.h"

namespace {

constexpr int Sunday = 1;
constexpr int Monday = 2;

std::optional<ZEVDateAndTimeUtilities>& sharedInstance() {
  static SharedInstance<std::optional<ZEVDateAndTimeUtilities>> utilities;
  return utilities.get();
}

}  // namespace

std::optional<NSLocale> localeOfLanguageSetting() {
  const PropertyList language = ZEVObjectForKey("language");
  if (language.string() == nullptr) return std::nullopt;
  return NSLocale::localeWithLocaleIdentifier(*language.string());
}

NSDateFormatter dateFormatterOfLanguageSetting() {
  NSDateFormatter formatter;
  if (const auto locale = localeOfLanguageSetting()) formatter.setLocale(*locale);
  return formatter;
}

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
      dateFormatter_(dateFormatterOfLanguageSetting()) {
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
  return bareTimeFormat(clockElementsFromSetting(ZEVObjectForKey(Key), Key));
}

std::string ZEVDateAndTimeUtilities::nameForHour(int64_t hour) const { return fuzzyHourName(hour); }

std::string ZEVDateAndTimeUtilities::fuzzyClock(double time) const {
  return fuzzyClockPhrase(current_, NSDate::dateWithTimeIntervalSince1970(time),
                          UtilitiesFuzzyClock);
}
