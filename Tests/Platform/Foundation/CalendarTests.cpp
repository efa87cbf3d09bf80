#include "Platform/Foundation/Time/NSCalendar.h"

#include <gtest/gtest.h>

#include <string>

#include "Platform/Foundation/Text/NSLocale.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Platform/Support/Table.h"

namespace {

constexpr auto Table = "Platform/Foundation/CalendarTests.tsv";

TEST(Calendar, WeeksAtTheTurnsOfYears) {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  for (const auto& [date, iso, american] : tableRows<3>(Table, "weeks")) {
    const NSDate noon = utc(date + " 12:00:00");
    calendar.setFirstWeekday(2);
    calendar.setMinimumDaysInFirstWeek(4);
    EXPECT_EQ(calendar.component(NSCalendarUnitWeekOfYear, noon), std::stoi(iso)) << date;
    calendar.setFirstWeekday(1);
    calendar.setMinimumDaysInFirstWeek(1);
    EXPECT_EQ(calendar.component(NSCalendarUnitWeekOfYear, noon), std::stoi(american)) << date;
  }
}

TEST(Calendar, TheLocaleDecidesTheWeek) {
  const NSDate newYear = utc("2021-01-01 12:00:00");
  for (const auto& [locale, firstWeekday, days, week] : tableRows<4>(Table, "locales")) {
    NSLocale::setCurrentLocale(locale);
    const NSCalendar calendar = NSCalendar::currentCalendar();
    EXPECT_EQ(calendar.firstWeekday(), std::stoi(firstWeekday)) << locale;
    EXPECT_EQ(NSLocale::currentLocale().firstWeekday(), std::stoi(firstWeekday)) << locale;
    EXPECT_EQ(calendar.minimumDaysInFirstWeek(), std::stoi(days)) << locale;
    EXPECT_EQ(calendar.component(NSCalendarUnitWeekOfYear, newYear), std::stoi(week)) << locale;
  }
}

TEST(Calendar, SplitsAnInstant) {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(*NSTimeZone::timeZoneWithName("Asia/Kathmandu"));
  const NSDate date = utc("2024-02-29 18:20:59.999");  // Friday 1 March, 00:05 in Kathmandu.
  EXPECT_EQ(calendar.components(NSCalendarUnitEra | NSCalendarUnitYear | NSCalendarUnitMonth |
                                    NSCalendarUnitDay | NSCalendarUnitHour | NSCalendarUnitMinute |
                                    NSCalendarUnitSecond | NSCalendarUnitWeekday,
                                date),
            (NSDateComponents{.era = 1,
                              .year = 2024,
                              .month = 3,
                              .day = 1,
                              .hour = 0,
                              .minute = 5,
                              .second = 59,
                              .weekday = 6}));
  EXPECT_EQ(calendar.components(NSCalendarUnitYear, date), (NSDateComponents{.year = 2024}));
  EXPECT_EQ(calendar.ordinalityOfUnit(NSCalendarUnitDay, NSCalendarUnitMonth, date), 1);
  EXPECT_EQ(calendar.ordinalityOfUnit(NSCalendarUnitDay, NSCalendarUnitYear, date), 31 + 29 + 1);
  const auto ask = [&](uint64_t units) { return calendar.components(units, date); };
  EXPECT_THROW(calendar.ordinalityOfUnit(NSCalendarUnitHour, NSCalendarUnitEra, date),
               std::invalid_argument);
  EXPECT_THROW(ask(NSCalendarUnitDay | 256), std::invalid_argument);
}

// Europe/Berlin: on 2024-03-31 the clocks go from 02:00 to 03:00, on 2024-10-27 back from 03:00.
TEST(Calendar, MakesInstantsOfParts) {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(*NSTimeZone::timeZoneWithName("Europe/Berlin"));
  const std::pair<NSDateComponents, const char*> cases[] = {
      {{.year = 2024, .month = 7, .day = 5, .hour = 1, .minute = 2, .second = 3},
       "2024-07-04 23:02:03"},
      {{.year = 2024, .month = 13, .weekday = 7, .weekOfYear = 30}, "2024-12-31 23:00:00"},
      {{.year = 2024, .month = 3, .day = 0}, "2024-02-28 23:00:00"},
      {{.year = 2024, .month = 3, .day = 31, .hour = 2, .minute = 30}, "2024-03-31 01:30:00"},
      {{.year = 2024, .month = 10, .day = 27, .hour = 2, .minute = 30}, "2024-10-27 00:30:00"},
  };
  for (const auto& [parts, instant] : cases)
    EXPECT_EQ(calendar.dateFromComponents(parts), utc(instant)) << instant;
  EXPECT_THROW(calendar.dateFromComponents({.year = int64_t{1} << 32}), std::out_of_range);
}

TEST(Calendar, AddsParts) {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(*NSTimeZone::timeZoneWithName("Europe/Berlin"));
  struct Case {
    NSDateComponents amount;
    const char* from;
    const char* to;
  };
  // A day over the change of the clocks has 23 or 25 hours.
  for (const auto& [amount, from, to] :
       {Case{{.day = 1}, "2024-03-30 23:00:00", "2024-03-31 22:00:00"},
        Case{{.day = 1}, "2024-10-26 22:00:00", "2024-10-27 23:00:00"},
        Case{{.hour = 24}, "2024-10-26 22:00:00", "2024-10-27 22:00:00"},
        Case{{.month = 1}, "2024-01-31 12:00:00", "2024-02-29 12:00:00"},
        Case{{.year = -1, .day = 1}, "2024-02-29 12:00:00", "2023-03-01 12:00:00"},
        Case{{.second = 90, .weekOfYear = 1}, "2024-01-01 00:00:00", "2024-01-08 00:01:30"},
        Case{{}, "2024-01-31 12:00:00", "2024-01-31 12:00:00"}}) {
    EXPECT_EQ(calendar.dateByAddingComponents(amount, utc(from)), utc(to)) << from;
  }
  EXPECT_THROW(calendar.dateByAddingComponents({.weekday = 1}, utc("2024-01-31 12:00:00")),
               std::invalid_argument);
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
  for (const auto& [locale, year, month] : tableRows<3>(Table, "calendars")) {
    NSLocale::setCurrentLocale(locale);
    const NSCalendar own = NSCalendar::currentCalendar();
    EXPECT_EQ(own.component(NSCalendarUnitYear, date), std::stoi(year)) << locale;
    EXPECT_EQ(own.component(NSCalendarUnitMonth, date), std::stoi(month)) << locale;
    EXPECT_EQ(updating.component(NSCalendarUnitYear, date), std::stoi(year)) << locale;
    EXPECT_EQ(updating.firstWeekday(), own.firstWeekday()) << locale;
    EXPECT_EQ(NSCalendar::gregorianCalendar().component(NSCalendarUnitYear, date), 2024) << locale;
  }
}

}  // namespace
