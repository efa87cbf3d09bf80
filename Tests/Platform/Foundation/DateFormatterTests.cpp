#include "Platform/Foundation/Time/NSDateFormatter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
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

// Long-lived formatters share what is kept for a locale: each text must be that of a fresh one, as
// instants follow each other in a zone and zones at an instant.
TEST(KeptPatterns, GiveTheTextsOfFreshOnes) {
  // London's clocks show UTC in winter; Kolkata's were 5:53:28 ahead once, so that their minutes
  // began within the world's.
  const char* const zones[] = {"UTC", "Europe/London", "Asia/Kolkata", "America/New_York"};
  const double seconds[] = {0, 0.75, 1, 2, 3.5, 60};
  std::vector<std::pair<const char*, NSDate>> moments;
  for (const char* date : {"2024-01-31 23:59:58", "2024-07-01 00:30:00", "1850-06-01 12:06:30"}) {
    const auto add = [&](const char* zone, double later) {
      moments.emplace_back(zone, utc(date).dateByAddingTimeInterval(later));
    };
    for (const char* zone : zones)
      for (const double later : seconds)
        add(zone, later);
    for (const double later : seconds)
      for (const char* zone : zones)
        add(zone, later);
  }
  for (const char* locale : {"en_US", "de_DE", "th_TH", "ar_EG"}) {
    NSDateFormatter first;
    NSDateFormatter second;
    first.setLocale(NSLocale::localeWithLocaleIdentifier(locale));
    second.setLocale(NSLocale::localeWithLocaleIdentifier(locale));
    // In a locale of its own, so that nothing is shared.
    const std::string alone = std::string(locale) + "@calendar=gregorian;currency=EUR";
    for (const char* pattern : {"ss", "EEEE d MMMM y", "zzzz", "a h", "HH:mm", "HH 'ss' s",
                                "mm 's' m ss", "HH:mm:ss", "SSS", "A", "'' m ''"}) {
      first.setDateFormat(pattern);
      second.setDateFormat(pattern);
      for (const auto& [zone, date] : moments) {
        first.setTimeZone(zoneNamed(zone));
        const std::string fresh = formatted(pattern, alone, zone, date);
        ASSERT_EQ(first.stringFromDate(date), fresh) << pattern << zone << date.description();
        std::swap(first, second);
      }
    }
  }
}

TEST(DateFormatter, DatesBeyondAllCalendarsLeaveNoTrace) {
  for (const double seconds : {1e18, -1e18, 1e300, std::nan(""), HUGE_VAL}) {
    formatted("y zzzz", "en_US", "Europe/Berlin", NSDate::dateWithTimeIntervalSince1970(seconds));
  }
  EXPECT_EQ(formatted("y", "en_US", "Europe/Berlin", utc("2024-07-05 09:08:07")), "2024");
}

}  // namespace
