#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "Platform/AppKit/Menus/MenuSnapshot.h"
#include "Targets/Shared/Dropdown/ZEVMenu.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Targets/VelmoraTime/RunningClock.h"

/// A running clock whose dropdown is opened on a screen of 800 by 600 points.
class OpenDropdown : public testing::Test {
 protected:
  using Array = PropertyList::Array;

  /// Another process writes a setting.
  void change(const std::string& key, const PropertyList& value, const std::string& resetKey) {
    ZEVSetObjectForKey(key, value);
    clock->post("VelmoraTimePreferencesChanged", {{"key", key}, {"resetKey", resetKey}});
  }

  std::shared_ptr<ZEVMenu_Time> menu() {
    return std::static_pointer_cast<ZEVMenu_Time>(clock->module().menu());
  }
  void open(const std::shared_ptr<NSMenu>& menu, MenuOpening opening = MenuOpening::Press) {
    screen.tracker().open(menu, NSMakeRect(700, 0, 60, 22), opening,
                          NSUserInterfaceLayoutDirection::LeftToRight);
  }

  std::optional<RunningClock> clock;
  MenuSnapshot screen{NSMakeRect(0, 22, 800, 578)};
};
