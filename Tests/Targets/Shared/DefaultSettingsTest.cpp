#include "Targets/Shared/ZEVDefaultSettings.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Platform/Foundation/Text/NSLocale.h"
#include "Tests/Platform/Support/CaseTable.h"

namespace {

using Array = PropertyList::Array;

constexpr const char* Cases = VELMORA_SOURCE_DIR "/Tests/Targets/Shared/Cases/";

TEST(DefaultSettings, AreExactlyTheFamilys) {
  const auto defaults = defaultSettings(false);
  std::istringstream keys(readFile(Cases + std::string("default-keys.txt")));
  std::string key;
  std::getline(keys, key);  // The heading.
  while (keys >> key)
    EXPECT_TRUE(defaults.contains(key)) << key;
  EXPECT_EQ(defaults.size(), 187);
  const auto values = propertyListWithContentsOfFile(Cases + std::string("defaults.plist"));
  ASSERT_TRUE(values && values->dictionary()->size() == 15);
  for (const auto& [name, value] : *values->dictionary())
    EXPECT_EQ(defaults.at(name), value) << name;
}

TEST(DefaultSettings, BatteryDependsOnTheMachine) {
  EXPECT_EQ(defaultSettings(true).at("Battery_MenubarHideBluetooth"), PropertyList(true));
  const auto defaults = defaultSettings(false);
  EXPECT_EQ(defaults.at("Battery_MenubarHideBluetooth"), PropertyList(false));
  const Array& list = *defaults.at("Battery_Notifications").array();
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

TEST(DefaultSettings, FollowTheLocale) {
  using List = std::vector<std::string>;
  for (const auto& [locale, inBar, inDropdown, weeks, isFahrenheit] :
       casesIn<std::string, List, List, int, int>("Targets/Shared/Cases/locale-defaults.txt")) {
    SCOPED_TRACE(locale);
    NSLocale::setCurrentLocale(locale);
    const auto values = defaultSettings(false);
    EXPECT_EQ(values.at("Time_MenubarFormat"), PropertyList(Array(inBar.begin(), inBar.end())));
    EXPECT_EQ(values.at("Time_DropdownFormat"),
              PropertyList(Array(inDropdown.begin(), inDropdown.end())));
    EXPECT_EQ(values.at("Time_WeekNumberFormat"), PropertyList(weeks));
    EXPECT_EQ(values.at("Sensors_TemperatureMode"), PropertyList(isFahrenheit));
  }
}

}  // namespace
