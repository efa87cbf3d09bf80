#include <gtest/gtest.h>

#include <array>

#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/VelmoraTime.h"
#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

ZEVDateAndTimeUtilities& utilities() { return ZEVDateAndTimeUtilities::sharedUtilities(); }

struct CutOut {
  const char* name;
  PropertyList::Array setting;
  ClockElements format;  ///< Empty: the locale's short time.
};

TEST(DropdownTimeFormat, IsCutOutOfTheSetting) {
  const CutOut cases[] = {
      {"foreign end",
       {"h", "':'", "mm", "' '", "a", "__RELATIVE_DAY__"},
       {"h", "':'", "mm", "' '", "a"}},
      {"blank at the end", {"h", "':'", "mm", "' '"}, {"h", "':'", "mm"}},
      {"one literal goes", {"h", "':'", "mm", "' '", "'x'"}, {"h", "':'", "mm", "' '"}},
      {"literal before",
       {"'at '", "HH", "'.'", "mm", "'.'", "ss"},
       {"HH", "'.'", "mm", "'.'", "ss"}},
      {"foreign before", {"EE", "' '", "HH", "':'", "mm"}, {"HH", "':'", "mm"}},
      {"apostrophe inside", {"H", "h'x'", "mm"}, {"H", "h'x'", "mm"}},
      {"short minutes", {"h", "':'", "m"}, {}},
      {"no minutes", {"HH", "':'", "ss"}, {}},
      {"no hour", {"mm", "':'", "ss"}, {}},
      {"nothing", {}, {}},
  };
  for (const auto& [name, setting, format] : cases) {
    ZEVSetObjectForKey("Time_DropdownFormat", setting);
    const ClockElements expected = format.empty() ? ClockElements{"h", "':'", "mm ", "a"} : format;
    EXPECT_EQ(utilities().dropdownTimeFormat(), expected) << name;
  }
  ZEVSetObjectForKey("Time_DropdownFormat", PropertyList::Array{"HH", 5});
  EXPECT_THROW(utilities().dropdownTimeFormat(), std::invalid_argument) << "a wrong kind";
}

// CLDR 42: Gujarati and Kannada are among the few whose short time has "hh".
TEST(DropdownTimeFormat, FallsBackOnTheLocalesShortTime) {
  ZEVSetObjectForKey("Time_DropdownFormat", PropertyList::Array{});
  const std::pair<const char*, ClockElements> cases[] = {
      {"en_US", {"h", "':'", "mm ", "a"}},
      {"ja_JP", {"H", "':'", "mm"}},
      {"gu_IN", {"hh", "':'", "mm ", "a"}},
  };
  for (const auto& [locale, format] : cases) {
    NSLocale::setCurrentLocale(locale);
    EXPECT_EQ(utilities().dropdownTimeFormat(), format) << locale;
  }
  NSLocale::setCurrentLocale("");
}

TEST(SharedFormatter, TakesTheLanguageOnceAtItsFirstUse) {
  ZEVSetObjectForKey("language", "fr");
  EXPECT_EQ(utilities().dateFormatter().locale().identifier(), "fr");
  ZEVSetObjectForKey("language", "de");
  EXPECT_EQ(utilities().dateFormatter().locale().identifier(), "fr");
}

/// The two copies whose texts only differ in the spelling of the twenty-fives.
class FuzzyClock : public testing::Test {
 protected:
  FuzzyClock() { NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName("Asia/Kolkata")); }
  ~FuzzyClock() override { NSTimeZone::setSystemTimeZone(std::nullopt); }

  /// Expects a phrase at a time of day in the system's zone, five and a half hours before UTC.
  void expect(int hour, int minute, const std::string& inUtilities, const std::string& inMenubar) {
    const double time = utc(2026, 11, 21, hour, minute, 59.9) - 5.5 * 3600;
    EXPECT_EQ(utilities().fuzzyClock(time), inUtilities) << hour << ":" << minute;
    EXPECT_EQ(view.fuzzyClock(time), inMenubar) << hour << ":" << minute;
  }

  VelmoraTimeMenuExtraView view;
};

TEST_F(FuzzyClock, EachMinuteOfAnHour) {
  struct Bucket {
    int first, last;
    const char* phrase;
    const char* inMenubar;
  };
  const Bucket buckets[] = {{0, 2, "four o'clock", nullptr},
                            {3, 7, "five past four", nullptr},
                            {8, 12, "ten past four", nullptr},
                            {13, 17, "quarter past four", nullptr},
                            {18, 22, "twenty past four", nullptr},
                            {23, 27, "twentyfive past four", "twenty five past four"},
                            {28, 32, "half past four", nullptr},
                            {33, 37, "twentyfive to five", "twenty five to five"},
                            {38, 42, "twenty to five", nullptr},
                            {43, 47, "quarter to five", nullptr},
                            {48, 52, "ten to five", nullptr},
                            {53, 57, "five to five", nullptr},
                            {58, 59, "five o'clock", nullptr}};
  for (const auto& [first, last, phrase, inMenubar] : buckets) {
    for (int minute = first; minute <= last; ++minute) {
      for (const int hour : {4, 16}) {
        expect(hour, minute, phrase, inMenubar != nullptr ? inMenubar : phrase);
      }
    }
  }
}

TEST_F(FuzzyClock, AroundMidnightAndNoon) {
  struct Case {
    int hour, minute;
    const char* phrase;
  };
  // Hours off the dial are those of a further turn.
  constexpr std::array<const char*, 12> Names = {"twelve", "one",  "two", "three",
                                                 "four",   "five", "six", "seven",
                                                 "eight",  "nine", "ten", "eleven"};
  for (int hour = 0; hour <= 24; ++hour)
    EXPECT_EQ(utilities().nameForHour(hour), Names[static_cast<size_t>(hour % 12)]) << hour;
  for (const auto& [hour, minute, phrase] : {Case{0, 0, "midnight"},
                                             {0, 2, "midnight"},
                                             {23, 58, "midnight"},
                                             {23, 59, "midnight"},
                                             {0, 3, "five past twelve"},
                                             {11, 58, "twelve o'clock"},
                                             {12, 0, "twelve o'clock"},
                                             {12, 58, "one o'clock"},
                                             {23, 57, "five to twelve"}}) {
    expect(hour, minute, phrase, phrase);
  }
}

}  // namespace
