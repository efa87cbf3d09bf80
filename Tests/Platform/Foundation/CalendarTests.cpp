#include "Platform/Foundation/NSCalendar.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "Tests/Platform/Support/Files.h"

namespace {

using std::chrono::days;
using std::chrono::sys_days;

class Calendar : public testing::Test {
 protected:
  ~Calendar() override {
    NSLocale::setCurrentLocale("");
    NSTimeZone::resetSystemTimeZone();
  }
};

NSDate noonOf(sys_days day) {
  return NSDate::dateWithTimeIntervalSince1970(
      static_cast<double>(day.time_since_epoch().count()) * 86'400 + 43'200);
}

/// The ordinal of a day within its own year.
int64_t dayOfYear(sys_days day) {
  const auto year = std::chrono::year_month_day(day).year();
  return (day - sys_days(year / 1 / 1)).count() + 1;
}

/// A week belongs to the year that holds its `decidingDay`, counted from the week's first day:
/// Thursday by ISO 8601, the week's last day where 1 January is always in week 1.
int64_t weekOfYear(sys_days day, std::chrono::weekday firstDay, int decidingDay) {
  const sys_days start = day - (std::chrono::weekday(day) - firstDay);
  return (dayOfYear(start + days(decidingDay)) - 1) / 7 + 1;
}

TEST_F(Calendar, WeeksAtTheTurnsOfYears) {
  NSCalendar iso = NSCalendar::gregorianCalendar();
  iso.setFirstWeekday(2);
  iso.setMinimumDaysInFirstWeek(4);
  NSCalendar american = NSCalendar::gregorianCalendar();
  american.setFirstWeekday(1);
  american.setMinimumDaysInFirstWeek(1);
  for (int year = 1970; year <= 2100; ++year) {
    const sys_days newYear = std::chrono::year(year) / 1 / 1;
    for (int step = -8; step <= 8; ++step) {
      const sys_days day = newYear + days(step);
      ASSERT_EQ(iso.component(NSCalendarUnitWeekOfYear, noonOf(day)),
                weekOfYear(day, std::chrono::Monday, 3))
          << year << " " << step;
      ASSERT_EQ(american.component(NSCalendarUnitWeekOfYear, noonOf(day)),
                weekOfYear(day, std::chrono::Sunday, 6))
          << year << " " << step;
    }
  }
}

// Monday 2018-12-31 is in week 1 of 2019; Friday 2021-01-01 in week 53 of 2020 (ISO 8601).
TEST_F(Calendar, TheLocaleDecidesTheWeek) {
  struct Case {
    const char* locale;
    int firstWeekday;
    int minimumDays;
    int newYear2021;
  };
  for (const auto& [locale, firstWeekday, minimumDays, newYear2021] :
       {Case{"de_DE", 2, 4, 53}, Case{"en_US", 1, 1, 1}, Case{"en_GB", 2, 4, 53},
        Case{"ar_EG", 7, 1, 1}}) {
    NSLocale::setCurrentLocale(locale);
    const NSCalendar calendar = NSCalendar::currentCalendar();
    EXPECT_EQ(calendar.firstWeekday(), firstWeekday) << locale;
    EXPECT_EQ(NSLocale::currentLocale().firstWeekday(), firstWeekday) << locale;
    EXPECT_EQ(calendar.minimumDaysInFirstWeek(), minimumDays) << locale;
    EXPECT_EQ(calendar.component(NSCalendarUnitWeekOfYear, utc("2021-01-01 12:00:00")), newYear2021)
        << locale;
    EXPECT_EQ(calendar.component(NSCalendarUnitWeekOfYear, utc("2018-12-31 12:00:00")), 1)
        << locale;
  }
}

TEST_F(Calendar, SplitsAnInstant) {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(*NSTimeZone::timeZoneWithName("Asia/Kathmandu"));
  const NSDate date = utc("2024-02-29 18:20:59.999");  // Friday 1 March, 00:05 in Kathmandu.
  const std::pair<NSCalendarUnit, int64_t> parts[] = {
      {NSCalendarUnitEra, 1},     {NSCalendarUnitYear, 2024}, {NSCalendarUnitMonth, 3},
      {NSCalendarUnitDay, 1},     {NSCalendarUnitHour, 0},    {NSCalendarUnitMinute, 5},
      {NSCalendarUnitSecond, 59}, {NSCalendarUnitWeekday, 6}};
  for (const auto& [unit, value] : parts)
    EXPECT_EQ(calendar.component(unit, date), value) << unit;
  EXPECT_EQ(calendar.ordinalityOfUnit(NSCalendarUnitDay, NSCalendarUnitMonth, date), 1);
  EXPECT_EQ(calendar.ordinalityOfUnit(NSCalendarUnitHour, NSCalendarUnitEra, date), 0);
}

TEST_F(Calendar, FollowsTheSystemsZoneAfterAReset) {
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

// 2024-07-05 is 5 July 2567 of the Buddhist era and 15 Tir (month 4) 1403.
TEST_F(Calendar, TheUsersOwnNeedNotBeGregorian) {
  struct Case {
    const char* locale;
    int64_t year, month, day;
  };
  const NSDate date = utc("2024-07-05 09:00:00");
  for (const auto& [locale, year, month, day] :
       {Case{"th_TH", 2567, 7, 5}, Case{"fa_IR", 1403, 4, 15}, Case{"en_US", 2024, 7, 5}}) {
    NSLocale::setCurrentLocale(locale);
    const NSCalendar own = NSCalendar::currentCalendar();
    EXPECT_EQ(own.component(NSCalendarUnitYear, date), year) << locale;
    EXPECT_EQ(own.component(NSCalendarUnitMonth, date), month) << locale;
    EXPECT_EQ(own.component(NSCalendarUnitDay, date), day) << locale;
    const NSCalendar gregorian = NSCalendar::gregorianCalendar();
    EXPECT_EQ(gregorian.component(NSCalendarUnitYear, date), 2024) << locale;
  }
}

// The clocks of Berlin show 02:30 twice on 2024-10-27.
TEST_F(Calendar, KnowsBothPassesOfARepeatedHour) {
  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(*NSTimeZone::timeZoneWithName("Europe/Berlin"));
  for (const char* moment : {"2024-10-27 00:30:00", "2024-10-27 01:30:00"}) {
    EXPECT_EQ(calendar.component(NSCalendarUnitHour, utc(moment)), 2) << moment;
  }
  EXPECT_EQ(calendar.component(NSCalendarUnitHour, utc("2024-10-27 02:30:00")), 3);
}

}  // namespace
