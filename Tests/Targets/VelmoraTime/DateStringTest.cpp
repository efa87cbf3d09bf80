#include <gtest/gtest.h>

#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/NSDateOrdinalDays.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

TEST(DateString, ShowsAListOfElements) {
  for (const auto& [locale, zone, today, time, week, elements, text] :
       casesIn<std::string, std::string, NSDate, NSDate, int, ClockElements, std::string>(
           "Targets/VelmoraTime/Cases/date-strings.txt")) {
    const SimulatedTime now(today.timeIntervalSince1970());
    ZEVSetIntegerForKey("Time_WeekNumberFormat", week);
    NSDateFormatter formatter;
    formatter.setLocale(NSLocale::localeWithLocaleIdentifier(locale));
    formatter.setTimeZone(*NSTimeZone::timeZoneWithName(zone));
    EXPECT_EQ(dateString(elements, formatter, time.timeIntervalSince1970()), text)
        << locale << " " << zone << " " << time.description() << " on " << today.description();
  }
}

TEST(DateString, ALoneApostropheRaises) {
  NSDateFormatter formatter;
  EXPECT_THROW(dateString({"HH", "'"}, formatter, Saturday), std::out_of_range);
}

TEST(DateString, HoursThatAreNoneOfADayGoOnTheDial) {
  for (const auto& [text, hour] : {std::pair{"24", "12"},
                                   {"13", "01"},
                                   {"", "12"},
                                   {"noon", "12"},
                                   {"٠٩", "٠٩"},
                                   {"۱۳", "۰۱"}})
    EXPECT_EQ(validateHourString(text, "hh"), hour) << text;
}

TEST(DateString, OrdinalSuffixes) {
  std::string suffixes;
  for (const int day : {-1, 0, 1, 2, 3, 4, 11, 12, 13, 20, 21, 22, 23, 24, 30, 31, 32, 101})
    suffixes += ordinalSuffixFromDay(day) + " ";
  EXPECT_EQ(suffixes, "th th st nd rd th th th th th st nd rd th th st th th ");
  // The day is that of the system's zone.
  NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName("Asia/Tokyo"));
  NSDateFormatter formatter;
  EXPECT_EQ(dateString({"d", "__DAY_SUFFIX__"}, formatter, utc(2026, 11, 21, 23)), "22nd");
}

}  // namespace
