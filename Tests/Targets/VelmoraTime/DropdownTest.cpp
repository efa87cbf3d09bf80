// The dropdown of the running clock, opened and followed by its rows.

#include <gtest/gtest.h>
#include <stdlib.h>

#include "Platform/AppKit/Menus/RowText.h"
#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Tests/Targets/VelmoraTime/OpenDropdown.h"

namespace {

class Dropdown : public OpenDropdown {
 protected:
  Dropdown() {
    ZEVSetObjectForKey("Time_Cities", Array{"2643743", "1850147"});
    ZEVSetObjectForKey("Time_CalendarEnabled", 0);
  }

  void start(double now) {
    clock.emplace(now);
    clock->waitForCities();
  }

  /// A line for the rows: each one's key or first text, height, and "+" for a submenu.
  std::string rows() {
    std::string line;
    for (const auto& item : menu()->itemArray()) {
      const auto texts = rowTexts(*item);
      line += line.empty() ? "" : "|";
      line += menu()->keyOfItem(*item).value_or(texts.empty() ? "?" : texts.front());
      line += " " + std::to_string(std::lround(item->view()->frame().size.height));
      line += item->submenu() ? "+" : "";
    }
    return line;
  }
  std::string secondText(size_t row) { return rowTexts(*menu()->itemArray()[row]).at(1); }
  /// Name and date of a phase, from the nearest one.
  std::vector<std::string> phase(size_t index) {
    const auto texts = rowTexts(*menu()->itemArray()[1]->submenu()->itemArray()[2]);
    return {texts.at(2 * index), texts.at(2 * index + 1)};
  }
};

// Every change is seen in the open menu.
TEST_F(Dropdown, RowsFollowTheSettings) {
  start(Saturday);
  open(menu());
  const auto changes = propertyListWithContentsOfFile(
      VELMORA_SOURCE_DIR "/Tests/Targets/VelmoraTime/Cases/dropdown-changes.plist");
  ASSERT_TRUE(changes.has_value() && changes->array()->size() == 9);
  for (const PropertyList& entry : *changes->array()) {
    const PropertyList::Dictionary& step = *entry.dictionary();
    const auto value = step.find("value");
    change(*step.at("key").string(), value != step.end() ? value->second : PropertyList(),
           *step.at("resetKey").string());
    EXPECT_EQ(rows(), *step.at("rows").string()) << *step.at("key").string();
  }
}

TEST_F(Dropdown, FollowsTheTickAndTheFormatWhileItIsOpen) {
  start(Saturday);
  int stateChanges = 0;
  const NSObservation observation = NSNotificationCenter::defaultCenter().addObserver(
      "ZEVMenuStateChanged", [&](const NSNotification&) { ++stateChanges; });
  open(menu());
  EXPECT_EQ(secondText(2), "03:04 PM");
  EXPECT_TRUE(menu()->isVisible());
  clock->time.loop.advance(55);
  EXPECT_EQ(secondText(2), "03:05 PM");
  change("Time_DropdownFormat", Array{"HH", "':'", "mm"}, "");
  EXPECT_EQ(secondText(4), "00:05");
  EXPECT_EQ(phase(0).at(1), "24 Nov, 14:55");
  change("Time_DropdownFormat", "no list", "");
  screen.tracker().close();
  clock->time.loop.advance(3600);
  EXPECT_EQ(secondText(4), "00:05") << "a closed one stands still";
  EXPECT_FALSE(menu()->isVisible());
  EXPECT_EQ(stateChanges, 2);
  open(menu());
  change("Time_DropdownFormat", Array{"HH"}, "");
  EXPECT_EQ(secondText(4), "01") << "a faulty format is mended";
}

// Phases of the USNO for 2026: full Moon on 24 November at 14:53, last quarter on 1 December at
// 06:09. The rows go on five minutes later at the earliest, and at once in a new zone.
TEST_F(Dropdown, TellsThePhasesToCome) {
  start(utc(2026, 11, 24, 14, 53, 10));
  using Texts = std::vector<std::string>;
  EXPECT_EQ(secondText(1), "Nov 24 - Full Moon");
  clock->time.loop.advance(295);
  EXPECT_EQ(phase(0), (Texts{"Full Moon", "24 Nov, 2:55 PM"}));
  clock->time.loop.advance(6);
  EXPECT_EQ(secondText(1), "Dec 1 - Last Quarter");
  EXPECT_EQ(phase(0), (Texts{"Last Quarter", "1 Dec, 6:10 AM"}));
  EXPECT_EQ(phase(7).at(0), "Full Moon") << "the eighth";
  setenv("TZ", "Asia/Tokyo", 1);
  clock->post("NSSystemTimeZoneDidChangeNotification");
  clock->time.loop.advance(1);
  EXPECT_EQ(phase(1).at(1), "1 Dec, 3:10 PM") << "behind one past by less than the offset";
}

TEST_F(Dropdown, StartsWithoutCitiesAndWithAFaultyFormat) {
  const EnvironmentVariable support("VELMORA_SUPPORT_DIR", freshFolder().string());
  ZEVSetObjectForKey("Time_DropdownFormat", "no list");
  start(Saturday);
  EXPECT_EQ(rows(), "filler-moon-before 3|Waxing Gibbous 42+|filler-base 5");
}

// Would catch: an open menu of a clock that has gone, and whatever keeps one alive.
TEST_F(Dropdown, GoesWithItsClock) {
  start(Saturday);
  clock->slot.onMenuShouldClose = [this] { screen.tracker().close(); };
  for (int count = 0; count < 50; ++count) {
    open(menu());
    const std::weak_ptr<ZEVMenu_Time> gone = menu();
    clock->slot.unload();
    EXPECT_FALSE(screen.tracker().isTracking());
    clock->extra = std::make_shared<VelmoraTime>();
    clock->slot.setExtra(clock->extra);
    clock->extra->init(clock->slot, NSBundle());
    clock->waitForCities();
    clock->time.loop.advance(1.5);
    EXPECT_TRUE(gone.expired()) << count;
  }
}

}  // namespace
