// Runs from inside a bundle of its own, so that its translations are those beside this program.

#include <gtest/gtest.h>

#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/FuzzyClock.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

std::string phrase(int hour, int minute) {
  return ZEVDateAndTimeUtilities::sharedUtilities().fuzzyClock(utc(2026, 11, 21, hour, minute));
}

std::string today() {
  NSDateFormatter formatter;
  return dateString({"__RELATIVE_DAY__"}, formatter, 0);
}

TEST(FuzzyClockHours, ElevenPartsCount) {
  ZEVSetObjectForKey("language", "qaa");
  EXPECT_EQ(phrase(4, 30), "halb fünf");
  EXPECT_EQ(phrase(4, 15), "quarter past four") << "\"x\" counts as 0";
  EXPECT_EQ(phrase(4, 55), "five to six");
  EXPECT_EQ(phrase(4, 40), "twenty to fünf") << "an empty translation is none";
  EXPECT_EQ(today(), "Heute");
}

TEST(FuzzyClockHours, TenPartsGiveTheDefault) {
  ZEVSetObjectForKey("language", "qab");
  EXPECT_EQ(phrase(4, 5), "five past four");
  EXPECT_EQ(phrase(4, 40), "twenty to five");
}

TEST(FuzzyClockHours, HoursOffTheDialAreNamedToo) {
  ZEVSetObjectForKey("language", "qac");
  EXPECT_EQ(phrase(0, 5), "five past eleven");
  EXPECT_EQ(phrase(4, 10), "ten past eleven");
  EXPECT_EQ(phrase(4, 15), "quarter past eleven") << "25 hours before noon";
  EXPECT_EQ(phrase(4, 20), "twenty past twelve") << "from 24 on";
}

TEST(FuzzyClockHours, AnUnknownLanguageGivesTheKeys) {
  ZEVSetObjectForKey("language", "qad");
  EXPECT_EQ(fuzzyHourNameOfCity(24), "midnight");
  EXPECT_EQ(phrase(4, 40), "twenty to five");
  EXPECT_EQ(today(), "Today");
}

}  // namespace
