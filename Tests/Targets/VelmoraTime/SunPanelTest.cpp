// The figures below the light map, and the submenu that both stand in.

#include <gtest/gtest.h>

#include <sstream>

#include "Platform/AppKit/Menus/MenuAccessibility.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTimeItem.h"
#include "Targets/VelmoraTime/Dropdown/SunDetailPanel.h"
#include "Targets/VelmoraTime/Dropdown/SunPanelTexts.h"
#include "Targets/VelmoraTime/Map/StatInterfaceLightMap.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/VelmoraTime/OpenDropdown.h"

namespace {

TEST(SunPanel, Texts) {
  NSDateFormatter formatter;
  formatter.setTimeZone(*NSTimeZone::timeZoneWithName("Asia/Kolkata"));
  for (const auto& [kind, value, text] :
       casesIn<std::string, double, std::string>("Targets/VelmoraTime/Cases/sun-panel.txt")) {
    const std::string shown = kind == "length"       ? dayLengthFromValue(value)
                              : kind == "difference" ? dayLengthDifference(40000 + value, 40000)
                              : kind == "degrees"
                                  ? degreesFromValue(value)
                                  : timeFromValue(value, {"HH", ":", "mm"}, formatter);
    EXPECT_EQ(shown, text) << kind << " " << value;
  }
}

class CitySubmenu : public OpenDropdown {
 protected:
  CitySubmenu() {
    clock.emplace(Saturday);
    ZEVSetObjectForKey("Time_DropdownFormat", PropertyList::Array{"H", "':'", "mm"});
  }
  static std::shared_ptr<StatInterfaceTimeItem> city(const char* name, const char* zone,
                                                     double latitude, double longitude) {
    const auto item = std::make_shared<StatInterfaceTimeItem>();
    item->setDetails({7, name, name, "", "Land", zone, latitude, longitude});
    item->loadLocale();
    item->updateMode();
    item->updateStaticInfo();
    return item;
  }
  void openSubmenu(const StatInterfaceTimeItem& item) {
    open(item.submenu());
    screen.tracker().prepareFrame();
  }
  static std::string presentTime(StatInterfaceTimeItem& item) {
    return item.sunPanel().lines()[1]->value2()->stringValue();
  }
};

TEST_F(CitySubmenu, FollowsTheMinutesWhileItIsOpen) {
  const auto tokyo = city("Tokyo", "Asia/Tokyo", 35.69, 139.69);
  const auto lima = city("Lima", "America/Lima", -12.05, -77.04);
  openSubmenu(*tokyo);
  EXPECT_EQ(presentTime(*tokyo), "0:04");
  clock->time.loop.advance(60);
  EXPECT_EQ(presentTime(*tokyo), "0:05");
  EXPECT_FALSE(lima->lightMap()->isLoaded());
  openSubmenu(*lima);
  clock->time.loop.advance(600);
  EXPECT_EQ(presentTime(*lima), "10:15");
  EXPECT_EQ(presentTime(*tokyo), "0:05") << "closed";
  EXPECT_FALSE(tokyo->lightMap()->isLoaded());
  clock->time.clock.setTimeIntervalSince1970(utc(2026, 11, 22, 3));
  lima->updateSoonAndMoon();
  EXPECT_EQ(presentTime(*lima), "22:00") << "the clock was set";
}

void describe(const AccessibleElement& element, const std::string& indent, std::ostream& text) {
  static constexpr const char* Roles[] = {"menu",   "item",  "text", "image",
                                          "button", "table", "row",  "cell"};
  text << indent << Roles[static_cast<size_t>(element.role)] << ' ' << element.name << '\n';
  for (const auto& child : element.children)
    describe(child, indent + ' ', text);
}

// Sunrise, sunset and the altitude agree with PyEphem's (6:23:05, 16:30:08, -72.4 degrees).
TEST_F(CitySubmenu, IsReadAloudAsATable) {
  const auto tokyo = city("Tokyo", "Asia/Tokyo", 35.69, 139.69);
  openSubmenu(*tokyo);
  std::ostringstream text;
  describe(*accessibleMenu(screen.tracker()), "", text);
  const std::string all = text.str();
  EXPECT_TRUE(all.starts_with(
      "menu Tokyo, Land\n text Tokyo\n  image Day and night map: the Sun is over South "
      "America, night in Tokyo\n  table \n   row \n    cell AZIMUTH\n"
      "    cell TIME\n   row Current Time\n    cell 29.9º\n"))
      << all;
  for (const char* part :
       {"   row Sunrise\n    cell 114.4º\n    cell 6:23\n", "   row Moonrise\n    cell \n    cell ",
        "   text 10 hours and 7 minutes of daylight\n   text 1 minute less than yesterday\n"
        "   row Current Altitude\n"})
    EXPECT_NE(all.find(part), std::string::npos) << part << all;
}

}  // namespace
