#include "Platform/Foundation/Time/NSDateFormatter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

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

struct Pattern {
  const char* locale;
  const char* pattern;
  const char* text;
};

// Friday 5 July 2024, day 187 of a leap year; week 27 by the American and by the ISO rule. Names
// of months, days and day periods: CLDR 42. The Buddhist year is 543 ahead; the day is 15 Tir 1403.
TEST(DatePatterns, GiveTheLanguagesTexts) {
  for (const auto& [locale, pattern, text] :
       {Pattern{"en_US", "EEEE, MMMM d, y", "Friday, July 5, 2024"},
        Pattern{"en_US", "EEEEE LLL", "F Jul"}, Pattern{"en_US", "HH:mm:ss.SSS", "09:08:07.125"},
        Pattern{"en_US", "K k D w e Q G", "9 9 187 27 6 3 AD"},
        Pattern{"en_US", "hh 'o''clock' ''yy", "09 o'clock '24"},
        Pattern{"de_DE", "EEEE, d. MMMM y", "Freitag, 5. Juli 2024"},
        Pattern{"de_DE", "ccc e w", "Fr 5 27"},
        Pattern{"ja_JP", "y年M月d日EEEE aK:mm", "2024年7月5日金曜日 午前9:08"},
        Pattern{"ar_EG", "d MMMM y", "٥ يوليو ٢٠٢٤"},
        Pattern{"th_TH", "d MMMM y", "5 กรกฎาคม 2567"}, Pattern{"fa_IR", "y/M/d", "۱۴۰۳/۴/۱۵"},
        Pattern{"en_US", "yyyy-MM-dd'T'HH:mm:ssxxx", "2024-07-05T09:08:07+00:00"}}) {
    EXPECT_EQ(formatted(pattern, locale, "UTC", utc("2024-07-05 09:08:07.125"), locale), text)
        << locale;
  }
}

// The same day by the user's calendar in other languages, and by one that was set.
TEST(DatePatterns, CountByTheUsersCalendar) {
  struct Case {
    const char* current;
    const char* locale;
    const char* text;
  };
  const NSDate date = utc("2024-07-05 09:08:07");
  for (const auto& [current, locale, text] :
       {Case{"fa_IR", "en_US", "15 Tir 1403"}, Case{"en_US", "fa_IR", "۵ ژوئیهٔ ۲۰۲۴"},
        Case{"th_TH", "de", "5 Juli 2567"}, Case{"ja_JP", "en_US@calendar=buddhist", "5 July 2024"},
        Case{"ja_JP", "en_US@calendar=nonsense;numbers=nonsense", "5 July 2024"}}) {
    EXPECT_EQ(formatted("d MMMM y", locale, "UTC", date, current), text) << current << locale;
  }
  NSDateFormatter formatter;
  NSLocale::setCurrentLocale("fa_IR");
  formatter.setCalendar(NSCalendar::currentCalendar());
  NSLocale::setCurrentLocale("");
  formatter.setDateFormat("d MMMM y");
  EXPECT_EQ(formatter.stringFromDate(date), "15 Tir 1403");
}

struct Styles {
  const char* locale;
  NSDateFormatterStyle date;
  NSDateFormatterStyle time;
  const char* pattern;
};

// CLDR 42, dateFormats and timeFormats of the languages; ICU 72 puts U+202F before the day period.
TEST(DateStyles, GiveTheLanguagesPatterns) {
  using enum NSDateFormatterStyle;
  for (const auto& [locale, date, time, pattern] :
       {Styles{"en_US", Short, None, "M/d/yy"}, Styles{"en_US", Medium, None, "MMM d, y"},
        Styles{"en_US", Long, None, "MMMM d, y"}, Styles{"en_US", Full, None, "EEEE, MMMM d, y"},
        Styles{"en_US", None, Short, "h:mm\u202Fa"},
        Styles{"en_US", None, Medium, "h:mm:ss\u202Fa"},
        Styles{"ja_JP", Full, None, "y年M月d日EEEE"}, Styles{"de_DE", None, Short, "HH:mm"},
        Styles{"en_US", None, None, ""}}) {
    NSDateFormatter formatter;
    formatter.setLocale(NSLocale::localeWithLocaleIdentifier(locale));
    formatter.setDateStyle(date);
    formatter.setTimeStyle(time);
    EXPECT_EQ(formatter.dateFormat(), pattern) << locale;
  }
}

struct ZoneName {
  const char* locale;
  const char* zone;
  const char* winter;
  const char* summer;
};

// CLDR 42, time zone names of the languages. English as spoken in the United States knows no short
// names of European zones.
TEST(ZoneNamesInText, InWinterAndInSummer) {
  for (const auto& [locale, zone, winter, summer] :
       {ZoneName{"en_US", "Europe/Berlin",
                 "Central European Standard Time|GMT+1|Europe/Berlin|+01:00",
                 "Central European Summer Time|GMT+2|Europe/Berlin|+02:00"},
        ZoneName{"de_DE", "Europe/Berlin", "Mitteleuropäische Normalzeit|MEZ|Europe/Berlin|+01:00",
                 "Mitteleuropäische Sommerzeit|MESZ|Europe/Berlin|+02:00"},
        ZoneName{"en_IE", "Europe/Dublin", "Greenwich Mean Time|GMT|Europe/Dublin|+00:00",
                 "Irish Standard Time|IST|Europe/Dublin|+01:00"},
        ZoneName{"en_US", "Australia/Lord_Howe",
                 "Lord Howe Daylight Time|GMT+11|Australia/Lord_Howe|+11:00",
                 "Lord Howe Standard Time|GMT+10:30|Australia/Lord_Howe|+10:30"}}) {
    EXPECT_EQ(formatted("zzzz|zzz|VV|xxx", locale, zone, utc("2024-01-15 12:00:00")), winter);
    EXPECT_EQ(formatted("zzzz|zzz|VV|xxx", locale, zone, utc("2024-07-15 12:00:00")), summer);
  }
}

TEST(ZoneNamesInText, ARuleBySettingHasOnlyItsOffset) {
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

struct GenericName {
  const char* locale;
  const char* zone;
  const char* moment;
  const char* text;
};

// Short identifiers, generic names and names by the season: CLDR 42 (timezone.xml, timeZoneNames).
// Generic names are those of the whole year also in winter. The last summer before a zone keeps its
// offset is a summer (Yukon, 2020), and so is one of two hours (London, 1945).
TEST(ZoneNamesInText, OfTheWholeYear) {
  for (const auto& [locale, zone, moment, text] :
       {GenericName{"de_DE", "Europe/Berlin", "2024-01-15 12:00:00",
                    "deber|MEZ|Mitteleuropäische Zeit|Mitteleuropäische Normalzeit"},
        {"de_DE", "Europe/Berlin", "2024-07-15 12:00:00",
         "deber|MEZ|Mitteleuropäische Zeit|Mitteleuropäische Sommerzeit"},
        {"en_US", "America/New_York", "2024-12-01 12:00:00",
         "usnyc|ET|Eastern Time|Eastern Standard Time"},
        {"en_US", "Africa/Cairo", "2024-01-15 12:00:00",
         "egcai|Egypt Time|Eastern European Time|Eastern European Standard Time"},
        {"en_US", "Asia/Calcutta", "2024-01-15 12:00:00",
         "inccu|India Time|India Standard Time|India Standard Time"},
        {"en_US", "America/Whitehorse", "2020-07-15 12:00:00",
         "cayxy|PT|Pacific Time|Pacific Daylight Time"},
        {"en_US", "America/Whitehorse", "2024-07-15 12:00:00",
         "cayxy|Whitehorse Time|Yukon Time|Yukon Time"},
        {"en_GB", "Europe/London", "1945-06-15 12:00:00",
         "gblon|United Kingdom Time|United Kingdom Time|British Summer Time"}}) {
    EXPECT_EQ(formatted("V|v|vvvv|zzzz", locale, zone, utc(moment)), text) << zone << moment;
  }
}

// The system's zone files, not the older ones inside the library: Cairo has summer time again
// since 2023.
TEST(ZoneNamesInText, RulesAreTheSystems) {
  EXPECT_EQ(formatted("HH:mm xxx", "en_US", "Africa/Cairo", utc("2023-07-15 12:00:00")),
            "15:00 +03:00");
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

TEST(DateFormatter, AnUnknownLetterEndsTheText) {
  EXPECT_EQ(formatted("HH:mm nss", "en_US", "UTC", utc("2024-07-05 09:08:07")), "09:08 ");
  EXPECT_EQ(formatted("", "en_US", "UTC", utc("2024-07-05 09:08:07")), "");
}

// 9999-12-31 is a Friday by the proleptic calendar; 4 October 1582 was a Thursday, the last day of
// the Julian calendar.
TEST(DateFormatter, FarDates) {
  EXPECT_EQ(formatted("EEE y-MM-dd HH:mm", "en_US", "Europe/Berlin", utc("9999-12-31 22:30:00")),
            "Fri 9999-12-31 23:30");
  EXPECT_EQ(formatted("EEE y-MM-dd", "en_US", "UTC", utc("1582-10-14 00:00:00")), "Thu 1582-10-04");
  for (const double seconds : {1e18, -1e18, 1e300, std::nan(""), HUGE_VAL}) {
    formatted("y zzzz", "en_US", "Europe/Berlin", NSDate::dateWithTimeIntervalSince1970(seconds));
  }
  // What was asked before must not stick.
  EXPECT_EQ(formatted("y", "en_US", "Europe/Berlin", utc("2024-07-05 09:08:07")), "2024");
}

}  // namespace
