#include "Targets/Shared/ZEVDefaultSettings.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>

#include "Platform/Foundation/Text/NSLocale.h"

namespace {

using Array = PropertyList::Array;

const PropertyList::Dictionary& defaults() {
  static const PropertyList::Dictionary values = defaultSettings(false);
  return values;
}

TEST(DefaultSettings, AreExactlyTheFamilysKeys) {
  std::ifstream file(VELMORA_SOURCE_DIR "/Tests/Targets/Shared/default_keys.txt");
  std::set<std::string> expected;
  std::string word;
  std::getline(file, word);  // The heading.
  while (file >> word)
    expected.insert(word);
  ASSERT_EQ(expected.size(), 187);
  EXPECT_EQ(defaults().size(), 187);
  for (const std::string& key : expected)
    EXPECT_TRUE(defaults().contains(key)) << key;
  for (const auto& [key, value] : defaults())
    EXPECT_TRUE(expected.contains(key)) << key;
}

TEST(DefaultSettings, OfTimeAndTheFamily) {
  const PropertyList::Dictionary expected = {
      {"Time_TextSize", 13},
      {"Time_TextColor", "0.11 0.11 0.11 1.0"},
      {"Time_TextShadowColor-Dark", "1.0 1.0 1.0 0.0"},
      {"Time_DropdownCityLayout", 1},
      {"Time_DropdownShowMoon", 1},
      {"Time_Cities", Array{"5128581", "2643743", "2988507", "2147714"}},
      {"Time_CalendarEnabled", 1},
      {"Time_CalendarShowEvents", 1},
      {"Time_CalendarShowWeeks", 0},
      {"Theme-SeperateStyles", false},
      {"DropdownTheme-Dark", 1},
      {"MenubarGraphOpacity", 0.5},
      {"MenubarGraphOpacity-Dark", 1.0},
      {"TimerFrequency", 1},
      {"StatusItems-FixedPosition", true},
  };
  for (const auto& [key, value] : expected) {
    const auto found = defaults().find(key);
    ASSERT_NE(found, defaults().end()) << key;
    EXPECT_EQ(found->second, value) << key;
  }
}

TEST(DefaultSettings, BatteryDependsOnTheMachine) {
  EXPECT_EQ(defaultSettings(true).at("Battery_MenubarHideBluetooth"), PropertyList(true));
  EXPECT_EQ(defaultSettings(false).at("Battery_MenubarHideBluetooth"), PropertyList(false));
  const Array& list = *defaults().at("Battery_Notifications").array();
  ASSERT_EQ(list.size(), 1);
  auto notification = *list[0].dictionary();
  const std::string uuid = *notification.at("uuid").string();
  EXPECT_TRUE(std::regex_match(uuid, std::regex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")))
      << uuid;
  notification.erase("uuid");
  EXPECT_EQ(notification, (PropertyList::Dictionary{{"level", 10}, {"style", 0}, {"type", 0}}));
  const auto again = defaultSettings(false);
  const Array& others = *again.at("Battery_Notifications").array();
  EXPECT_NE(*others[0].dictionary()->at("uuid").string(), uuid) << "a fresh one each time";
}

// Short time patterns and measurement systems: CLDR 42, supplemental data and the locales' own.
TEST(DefaultSettings, FollowTheLocale) {
  struct Case {
    const char* locale;
    const char* hour;
    bool isMetric;
  };
  for (const auto& [locale, hour, isMetric] : {Case{"en_US", "hh", false},
                                               {"en_GB", "HH", true},
                                               {"ja_JP", "H", true},
                                               {"hi_IN", "hh", true}}) {
    SCOPED_TRACE(locale);
    NSLocale::setCurrentLocale(locale);
    const auto values = defaultSettings(false);
    EXPECT_EQ(values.at("Time_MenubarFormat"), PropertyList(Array{"EE", "' '", hour, ":", "mm"}));
    Array dropdown = {hour, ":", "mm"};
    if (std::string_view(hour) == "hh") dropdown.insert(dropdown.end(), {" ", "a"});
    EXPECT_EQ(values.at("Time_DropdownFormat"), PropertyList(dropdown));
    EXPECT_EQ(values.at("Time_WeekNumberFormat"), PropertyList(isMetric ? 1 : 0));
    EXPECT_EQ(values.at("Sensors_TemperatureMode"), PropertyList(isMetric ? 0 : 1));
  }
  NSLocale::setCurrentLocale("");
}

}  // namespace
