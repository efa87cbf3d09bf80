#pragma once

#include "Platform/AppKit/Events/NSApplication.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/VelmoraTime.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTime.h"
#include "Tools/velmora-timectl/CalendarFolder.h"
#include "Tools/velmora-timectl/LoadedCities.h"

/// The dropdown with its clocks and events, brought up to date as by an opening.
class OpenedDropdown {
 public:
  /// Calendars come from where the option `CalendarFolderOption` says.
  explicit OpenedDropdown(const Arguments& arguments) {
    useCalendars(arguments);
    LoadedCities::collector();
    controller_->loadClocks();
    const bool wantsEvents =
        ZEVBoolForKey("Time_CalendarEnabled") && ZEVBoolForKey("Time_CalendarShowEvents");
    if (wantsEvents) CalendarStatCollector::sharedCalendarCollector()->checkCalendarAccess();
    controller_->menuWillOpen(*controller_->menu());
    if (wantsEvents) controller_->calendar().fetchNow();
  }

  StatInterfaceTime_Time& controller() const { return *controller_; }
  const ZEVMenu_Time& menu() const { return *controller_->menu(); }

 private:
  static std::shared_ptr<StatInterfaceTime_Time> makeController() {
    NSApplication::sharedApplication().setUserInterfaceLayoutDirection(
        VelmoraTime::layoutDirection());
    return std::make_shared<StatInterfaceTime_Time>();
  }

  std::shared_ptr<StatInterfaceTime_Time> controller_ = makeController();
};
