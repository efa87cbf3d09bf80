#include <gtest/gtest.h>

#include <array>

#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/NSDateOrdinalDays.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

struct Place {
  const char* locale = "en_US";
  const char* zone = "UTC";
};

std::string shown(const ClockElements& elements, double time, Place place = {}) {
  NSDateFormatter formatter;
  formatter.setLocale(NSLocale::localeWithLocaleIdentifier(place.locale));
  formatter.setTimeZone(*NSTimeZone::timeZoneWithName(place.zone));
  return dateString(elements, formatter, time);
}

// CLDR 42: Finnish weekdays have a form of their own inside dates ("lauantaina", on Saturday),
// which a clock must not show.
TEST(DateString, WeekdaysStandAlone) {
  EXPECT_EQ(shown({"EEEE d"}, Saturday, {"fi_FI"}), "lauantai 21");
}

TEST(DateString, WeekdayLetterIsTodaysNotTheTimes) {
  constexpr std::string_view Letters = "UMTWRFS";
  SimulatedTime time(utc(2026, 11, 15, 23, 59, 59));  // A Sunday.
  for (size_t day = 0; day < 7; ++day) {
    EXPECT_EQ(shown({"__DAY_MTWRFSU__"}, 0), Letters.substr(day, 1));
    time.clock.advanceMicroseconds(86'400'000'000);
  }
}

// AM/PM markers of CLDR 42.
TEST(DateString, MarkersInSeveralLanguages) {
  struct Case {
    const char* locale;
    std::array<const char*, 3> morning, evening;  // aaa, aa, a.
  };
  const Case cases[] = {{"en_US", {"a", "A", "AM"}, {"p", "P", "PM"}},
                        {"en_GB", {"a", "A", "am"}, {"p", "P", "pm"}},
                        {"ja_JP", {"午", "午", "午前"}, {"午", "午", "午後"}},
                        {"ar_EG", {"ص", "ص", "ص"}, {"م", "م", "م"}}};
  const std::array<const char*, 3> elements = {"aaa", "aa", "a"};
  for (const auto& [locale, morning, evening] : cases) {
    SCOPED_TRACE(locale);
    for (size_t index = 0; index < 3; ++index) {
      EXPECT_EQ(shown({elements[index]}, Saturday - 6 * 3600, {locale}), morning[index]);
      EXPECT_EQ(shown({elements[index]}, Saturday, {locale}), evening[index]);
    }
  }
}

TEST(DateString, TwelveHourDial) {
  struct Case {
    int hour;
    const char* h;
    const char* hh;
  };
  for (const auto& [hour, h, hh] : {Case{0, "12", "12"},
                                    {1, "1", "01"},
                                    {10, "10", "10"},
                                    {12, "12", "12"},
                                    {13, "1", "01"},
                                    {23, "11", "11"}}) {
    EXPECT_EQ(shown({"h"}, hour * 3600.0), h);
    EXPECT_EQ(shown({"hh"}, hour * 3600.0), hh);
  }
  // Counted anew in the language's digits.
  for (const auto& [locale, time] :
       {std::pair{"ar_EG", "٠٣:٠٤"}, {"fa_IR", "۰۳:۰۴"}, {"my", "၀၃:၀၄"}})
    EXPECT_EQ(shown({"hh", ":", "mm"}, Saturday, {locale}), time);
  for (const auto& [text, hour] : {std::pair{"24", "12"},
                                   {"13", "01"},
                                   {"", "12"},
                                   {"noon", "12"},
                                   {"٠٩", "٠٩"},
                                   {"۱۳", "۰۱"}})
    EXPECT_EQ(validateHourString(text, "hh"), hour) << text;
}

// In a list without minutes the second hour shows them; "H" is none of the hours that count.
TEST(DateString, SecondHourShowsTheMinutes) {
  struct Case {
    ClockElements list;
    const char* text;
  };
  const double time = utc(2026, 11, 21, 9, 41);
  for (const auto& [list, text] : {Case{{"h", "':'", "h"}, "9:41"},
                                   {{"H", "':'", "H"}, "9:9"},
                                   {{"HH", "':'", "HH"}, "09:41"},
                                   {{"hh", "h", "HH"}, "094141"},
                                   {{"h", "h", "mm"}, "9941"},
                                   {{"h", "h", "mm:"}, "94141:"}}) {
    EXPECT_EQ(shown(list, time), text);
  }
}

TEST(DateString, ALoneApostropheRaises) {
  EXPECT_THROW(shown({"HH", "'"}, Saturday), std::out_of_range);
  EXPECT_EQ(shown({"'ö'"}, Saturday), "ö");
  EXPECT_EQ(shown({"''", ""}, Saturday), "");
  EXPECT_EQ(shown({"'a"}, Saturday), "") << "the last character goes unseen";
}

// The week of the local date, where UTC is already, or still, in another year's week. ISO weeks:
// Python's isocalendar. Sunday weeks counted by hand: the one of January 1 is the first.
TEST(DateString, WeekOfTheLocalDate) {
  struct Case {
    double time;
    const char* zone;
    const char* isoWeek;
    const char* sundayWeek;
  };
  const Case cases[] = {
      {utc(2026, 12, 27, 12), "UTC", "52", "1"},                 // Sunday, December 27.
      {utc(2026, 12, 26, 11), "Pacific/Kiritimati", "52", "1"},  // Sunday, December 27, 01:00.
      {utc(2027, 1, 3, 12), "UTC", "53", "2"},                   // Sunday, January 3.
      {utc(2027, 1, 4, 5), "Pacific/Pago_Pago", "53", "2"},      // Sunday, January 3, 18:00.
      {utc(2027, 1, 3, 5), "Pacific/Pago_Pago", "53", "1"},      // Saturday, January 2, 18:00.
  };
  const SimulatedTime now(utc(2027, 1, 1));
  // Back and forth: the calendar is adjusted in place at each call.
  for (const int format : {1, 0, 1, 7}) {
    ZEVSetIntegerForKey("Time_WeekNumberFormat", format);
    for (const auto& [time, zone, isoWeek, sundayWeek] : cases) {
      EXPECT_EQ(shown({"w"}, time, {"en_US", zone}), format == 1 ? isoWeek : sundayWeek)
          << zone << " " << NSDate::dateWithTimeIntervalSince1970(time).description();
    }
  }
}

// The offset is that of the present instant: in July New York is an hour nearer to UTC.
TEST(DateString, WeekUsesThePresentOffset) {
  const double time = utc(2027, 1, 4, 4, 30);
  ZEVSetIntegerForKey("Time_WeekNumberFormat", 1);
  {
    const SimulatedTime winter(utc(2027, 1, 10));
    EXPECT_EQ(shown({"w"}, time, {"en_US", "America/New_York"}), "53") << "Sunday, 23:30";
  }
  const SimulatedTime summer(utc(2027, 7, 10));
  EXPECT_EQ(shown({"w"}, time, {"en_US", "America/New_York"}), "1") << "as if Monday, 00:30";
}

TEST(DateString, OrdinalSuffixes) {
  for (int day = -1; day <= 101; ++day) {
    const char* suffix = day == 1 || day == 21 || day == 31 ? "st"
                         : day == 2 || day == 22            ? "nd"
                         : day == 3 || day == 23            ? "rd"
                                                            : "th";
    EXPECT_EQ(ordinalSuffixFromDay(day), suffix) << day;
  }
  // The day is that of the system's zone.
  NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName("Asia/Tokyo"));
  EXPECT_EQ(shown({"d", "__DAY_SUFFIX__"}, utc(2026, 11, 21, 23), {"en_US", "Asia/Tokyo"}), "22nd");
  NSTimeZone::setSystemTimeZone(std::nullopt);
}

}  // namespace
