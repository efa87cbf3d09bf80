#include <gtest/gtest.h>

#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

ZEVDateAndTimeUtilities& utilities() { return ZEVDateAndTimeUtilities::sharedUtilities(); }

TEST(DropdownTimeFormat, IsCutOutOfTheSetting) {
  for (const auto& [locale, setting, bareTime] : casesIn<std::string, ClockElements, ClockElements>(
           "Targets/VelmoraTime/Cases/dropdown-formats.txt")) {
    NSLocale::setCurrentLocale(locale);
    const PropertyList::Array list(setting.begin(), setting.end());
    ZEVSetObjectForKey("Time_DropdownFormat", list);
    EXPECT_EQ(utilities().dropdownTimeFormat(), bareTime)
        << testing::PrintToString(setting) << " in " << locale;
  }
  ZEVSetObjectForKey("Time_DropdownFormat", PropertyList::Array{"HH", 5});
  EXPECT_THROW(utilities().dropdownTimeFormat(), std::invalid_argument) << "a wrong kind";
}

TEST(SharedFormatter, TakesTheLanguageOnceAtItsFirstUse) {
  ZEVSetObjectForKey("language", "fr");
  EXPECT_EQ(utilities().dateFormatter().locale().identifier(), "fr");
  ZEVSetObjectForKey("language", "de");
  EXPECT_EQ(utilities().dateFormatter().locale().identifier(), "fr");
}

// In the system's zone, five and a half hours before UTC.
TEST(FuzzyClock, EachMinuteOfAnHour) {
  NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName("Asia/Kolkata"));
  const VelmoraTimeMenuExtraView view;
  for (const auto& [hour, from, to, inUtilities, inBar] :
       casesIn<int, int, int, std::string, std::string>(
           "Targets/VelmoraTime/Cases/fuzzy-clock.txt")) {
    for (int minute = from; minute <= to; ++minute) {
      const double time = utc(2026, 11, 21, hour, minute, 59.9) - 5.5 * 3600;
      EXPECT_EQ(utilities().fuzzyClock(time), inUtilities) << hour << ":" << minute;
      EXPECT_EQ(view.fuzzyClock(time), inBar) << hour << ":" << minute;
    }
  }
}

TEST(FuzzyClock, HoursOffTheDialAreThoseOfAFurtherTurn) {
  std::string names;
  for (int hour = 0; hour <= 24; ++hour)
    names += utilities().nameForHour(hour) + " ";
  const std::string dial = "twelve one two three four five six seven eight nine ten eleven ";
  EXPECT_EQ(names, dial + dial + "twelve ");
}

}  // namespace
