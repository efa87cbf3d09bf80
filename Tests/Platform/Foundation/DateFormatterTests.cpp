#include "Platform/Foundation/Time/NSDateFormatter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"

namespace {

NSTimeZone zoneNamed(std::string_view name) { return NSTimeZone::timeZoneWithName(name).value(); }

std::string formatted(std::string_view pattern, std::string_view locale, std::string_view zone,
                      const NSDate& date, std::string_view currentLocale = "") {
  NSLocale::setCurrentLocale(currentLocale);
  NSDateFormatter formatter;
  NSLocale::setCurrentLocale("");
  formatter.setLocale(NSLocale::localeWithLocaleIdentifier(locale));
  formatter.setTimeZone(zoneNamed(zone));
  formatter.setDateFormat(pattern);
  return formatter.stringFromDate(date);
}

constexpr auto Table = "Platform/Foundation/DateFormatterTests.txt";

class FormattedDates : public testing::TestWithParam<const char*> {};

TEST_P(FormattedDates, AreThoseOfTheTable) {
  for (const auto& [current, locale, zone, moment, pattern, text] :
       casesIn<std::string, std::string, std::string, std::string, std::string, std::string>(
           Table, GetParam())) {
    EXPECT_EQ(formatted(pattern, locale, zone, utc(moment), current), text)
        << pattern << " in " << zone << " at " << moment << " for " << current;
  }
}

INSTANTIATE_TEST_SUITE_P(Sections, FormattedDates,
                         testing::Values("languages", "calendars", "offsets", "seasons", "bounds"));

TEST(DateFormatter, CountsByACalendarThatIsSet) {
  NSDateFormatter formatter;
  NSLocale::setCurrentLocale("fa_IR");
  formatter.setCalendar(NSCalendar::currentCalendar());
  NSLocale::setCurrentLocale("");
  formatter.setDateFormat("d MMMM y");
  EXPECT_EQ(formatter.stringFromDate(utc("2024-07-05 09:08:07")), "15 Tir 1403");
}

TEST(DateFormatter, StylesAreTheLanguagesPatterns) {
  for (const auto& [locale, date, time, pattern] :
       casesIn<std::string, int, int, std::string>(Table, "styles")) {
    NSDateFormatter formatter;
    formatter.setLocale(NSLocale::localeWithLocaleIdentifier(locale));
    formatter.setDateStyle(static_cast<NSDateFormatterStyle>(date));
    formatter.setTimeStyle(static_cast<NSDateFormatterStyle>(time));
    EXPECT_EQ(formatter.dateFormat(), pattern) << locale << " " << date << " " << time;
  }
}

TEST(DateFormatter, ARuleBySettingHasOnlyItsOffset) {
  const EnvironmentVariable variable("TZ", "EST5EDT,M3.2.0,M11.1.0");
  NSTimeZone::resetSystemTimeZone();
  NSDateFormatter formatter;
  formatter.setLocale(NSLocale::localeWithLocaleIdentifier("en_US"));
  formatter.setDateFormat("y HH:mm xxx zzzz");
  EXPECT_EQ(formatter.stringFromDate(utc("2024-07-15 12:00:00")), "2024 08:00 -04:00 GMT-04:00");
  // Before the first change that the rule is followed to.
  EXPECT_EQ(formatter.stringFromDate(utc("1850-07-15 12:00:00")), "1850 07:00 -05:00 GMT-05:00");
  NSTimeZone::resetSystemTimeZone();
}

// Pattern, zone, locale and instant alternate on long-lived formatters that share what is compiled
// for a locale: each text must be that of a fresh formatter.
TEST(KeptPatterns, GiveTheTextsOfFreshOnes) {
  const std::vector<const char*> patterns = {"HH:mm:ss", "EEEE d MMMM y", "zzzz", "a h",
                                             "HH:mm:ss"};
  const std::vector<const char*> zones = {"UTC", "Asia/Kolkata", "America/New_York"};
  const std::vector<const char*> locales = {"en_US", "de_DE", "th_TH", "ar_EG"};
  const std::vector<NSDate> dates = {utc("2024-01-31 23:30:00"), utc("2024-07-01 00:30:00")};
  NSDateFormatter first;
  NSDateFormatter second;
  for (size_t step = 0; step < 480; ++step) {
    NSDateFormatter& formatter = step % 3 == 0 ? first : second;
    // Strides without a common divisor, so that all of them meet.
    const char* pattern = patterns[step % patterns.size()];
    const char* zone = zones[step / 2 % zones.size()];
    const char* locale = locales[step / 7 % locales.size()];
    const NSDate& date = dates[step / 5 % dates.size()];
    formatter.setDateFormat(pattern);
    formatter.setTimeZone(zoneNamed(zone));
    formatter.setLocale(NSLocale::localeWithLocaleIdentifier(locale));
    const std::string text = formatter.stringFromDate(date);
    // In a locale of its own, so that nothing is shared.
    const std::string alone = std::string(locale) + "@calendar=gregorian;currency=EUR";
    ASSERT_EQ(text, formatted(pattern, alone, zone, date)) << pattern << zone << locale << step;
  }
}

TEST(DateFormatter, DatesBeyondAllCalendarsLeaveNoTrace) {
  for (const double seconds : {1e18, -1e18, 1e300, std::nan(""), HUGE_VAL}) {
    formatted("y zzzz", "en_US", "Europe/Berlin", NSDate::dateWithTimeIntervalSince1970(seconds));
  }
  EXPECT_EQ(formatted("y", "en_US", "Europe/Berlin", utc("2024-07-05 09:08:07")), "2024");
}

}  // namespace
