#include "Platform/Foundation/Time/NSCalendar.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"

namespace {

constexpr auto Table = "Platform/Foundation/CalendarTests.txt";

TEST(Calendar, WeeksAtTheTurnsOfYears) {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  for (const auto& [date, iso, american] : casesIn<std::string, int, int>(Table, "weeks")) {
    const NSDate noon = utc(date + " 12:00:00");
    calendar.setFirstWeekday(2);
    calendar.setMinimumDaysInFirstWeek(4);
    EXPECT_EQ(calendar.component(NSCalendarUnitWeekOfYear, noon), iso) << date;
    calendar.setFirstWeekday(1);
    calendar.setMinimumDaysInFirstWeek(1);
    EXPECT_EQ(calendar.component(NSCalendarUnitWeekOfYear, noon), american) << date;
  }
}

TEST(Calendar, TheLocaleDecidesTheWeek) {
  const NSDate newYear = utc("2021-01-01 12:00:00");
  for (const auto& [locale, firstWeekday, days, week] :
       casesIn<std::string, int, int, int>(Table, "locales")) {
    NSLocale::setCurrentLocale(locale);
    const NSCalendar calendar = NSCalendar::currentCalendar();
    EXPECT_EQ(calendar.firstWeekday(), firstWeekday) << locale;
    EXPECT_EQ(NSLocale::currentLocale().firstWeekday(), firstWeekday) << locale;
    EXPECT_EQ(calendar.minimumDaysInFirstWeek(), days) << locale;
    EXPECT_EQ(calendar.component(NSCalendarUnitWeekOfYear, newYear), week) << locale;
  }
}

/// "day=1 hour=-2".
NSDateComponents componentsOf(const std::string& text) {
  const std::map<std::string, std::optional<int64_t> NSDateComponents::*> parts = {
      {"year", &NSDateComponents::year},       {"month", &NSDateComponents::month},
      {"day", &NSDateComponents::day},         {"hour", &NSDateComponents::hour},
      {"minute", &NSDateComponents::minute},   {"second", &NSDateComponents::second},
      {"weekday", &NSDateComponents::weekday}, {"weekOfYear", &NSDateComponents::weekOfYear}};
  NSDateComponents components;
  for (const std::string& part : componentsSeparatedByString(text, " ")) {
    const size_t sign = part.find('=');
    components.*parts.at(part.substr(0, sign)) = std::stoll(part.substr(sign + 1));
  }
  return components;
}

TEST(Calendar, SplitsAnInstant) {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(*NSTimeZone::timeZoneWithName("Asia/Kathmandu"));
  const NSDate date = utc("2024-02-29 18:20:59.999");  // Friday 1 March, 00:05 in Kathmandu.
  const uint64_t all = NSCalendarUnitEra | NSCalendarUnitYear | NSCalendarUnitMonth |
                       NSCalendarUnitDay | NSCalendarUnitHour | NSCalendarUnitMinute |
                       NSCalendarUnitSecond | NSCalendarUnitWeekday;
  NSDateComponents expected = componentsOf("year=2024 month=3 day=1 hour=0 minute=5 second=59");
  expected.era = 1;
  expected.weekday = 6;
  EXPECT_EQ(calendar.components(all, date), expected);
  EXPECT_EQ(calendar.components(NSCalendarUnitYear, date), (NSDateComponents{.year = 2024}));
  EXPECT_EQ(calendar.ordinalityOfUnit(NSCalendarUnitDay, NSCalendarUnitMonth, date), 1);
  EXPECT_EQ(calendar.ordinalityOfUnit(NSCalendarUnitDay, NSCalendarUnitYear, date), 31 + 29 + 1);
  const auto ask = [&](uint64_t units) { return calendar.components(units, date); };
  EXPECT_THROW(calendar.ordinalityOfUnit(NSCalendarUnitHour, NSCalendarUnitEra, date),
               std::invalid_argument);
  EXPECT_THROW(ask(NSCalendarUnitDay | 256), std::invalid_argument);
}

TEST(Calendar, MakesInstantsOfPartsAndAddsThem) {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(*NSTimeZone::timeZoneWithName("Europe/Berlin"));
  for (const auto& [parts, moment] : casesIn<std::string, NSDate>(Table, "moments"))
    EXPECT_EQ(calendar.dateFromComponents(componentsOf(parts)), moment) << parts;
  const NSDate date = utc("2024-01-31 12:00:00");
  for (const auto& [amount, from, to] : casesIn<std::string, NSDate, NSDate>(Table, "sums")) {
    EXPECT_EQ(calendar.dateByAddingComponents(componentsOf(amount), from), to) << amount;
  }
  EXPECT_EQ(calendar.dateByAddingComponents({}, date), date);
  EXPECT_THROW(calendar.dateFromComponents({.year = int64_t{1} << 32}), std::out_of_range);
  EXPECT_THROW(calendar.dateByAddingComponents({.weekday = 1}, date), std::invalid_argument);
}

TEST(Calendar, FollowsTheSystemsZoneAfterAReset) {
  const NSCalendar calendar = NSCalendar::gregorianCalendar();
  NSCalendar fixed = NSCalendar::gregorianCalendar();
  fixed.setTimeZone(*NSTimeZone::timeZoneWithName("UTC"));
  const NSDate date = utc("2024-07-01 20:00:00");
  for (const auto& [zone, hour] : {std::pair{"Asia/Tokyo", 5}, {"America/New_York", 16}}) {
    const EnvironmentVariable variable("TZ", zone);
    NSTimeZone::resetSystemTimeZone();
    EXPECT_EQ(calendar.component(NSCalendarUnitHour, date), hour) << zone;
    EXPECT_EQ(fixed.component(NSCalendarUnitHour, date), 20) << zone;
  }
}

TEST(Calendar, TheUsersOwnNeedNotBeGregorian) {
  const NSDate date = utc("2024-07-05 09:00:00");
  const NSCalendar updating = NSCalendar::autoupdatingCurrentCalendar();
  for (const auto& [locale, year, month] : casesIn<std::string, int, int>(Table, "calendars")) {
    NSLocale::setCurrentLocale(locale);
    const NSCalendar own = NSCalendar::currentCalendar();
    EXPECT_EQ(own.component(NSCalendarUnitYear, date), year) << locale;
    EXPECT_EQ(own.component(NSCalendarUnitMonth, date), month) << locale;
    EXPECT_EQ(updating.component(NSCalendarUnitYear, date), year) << locale;
    EXPECT_EQ(updating.firstWeekday(), own.firstWeekday()) << locale;
    EXPECT_EQ(NSCalendar::gregorianCalendar().component(NSCalendarUnitYear, date), 2024) << locale;
  }
}

}  // namespace
