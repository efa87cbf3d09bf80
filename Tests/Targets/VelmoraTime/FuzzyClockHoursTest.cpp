// Runs from inside a bundle of its own, so that its translations are those beside this program.

#include <gtest/gtest.h>
#include <stdlib.h>

#include "Platform/Foundation/SharedInstance.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/FuzzyClock.h"
#include "Tests/Platform/Support/CaseTable.h"

namespace {

TEST(FuzzyClockHours, AreCountedAsTheLanguageSays) {
  for (const auto& [setting, environment, time, elements, text] :
       casesIn<std::string, std::string, NSDate, ClockElements, std::string>(
           "Targets/VelmoraTime/Cases/languages.txt")) {
    resetSharedInstances();
    setenv("LANGUAGE", environment.c_str(), 1);
    ZEVSetObjectForKey("language", setting.empty() ? PropertyList() : PropertyList(setting));
    NSDateFormatter formatter;
    EXPECT_EQ(dateString(elements, formatter, time.timeIntervalSince1970()), text)
        << setting << " in " << environment << ", " << time.description();
    EXPECT_EQ(ZEVTranslations_Time::sharedTranslations().hasLanguage(setting),
              !setting.empty() && setting != "qad");
  }
  EXPECT_EQ(fuzzyHourNameOfCity(24), "midnight");
}

}  // namespace
