#pragma once

#include "Targets/VelmoraTime/Dropdown/StatInterfaceTime.h"
#include "Tools/velmora-timectl/LoadedCities.h"

/// The dropdown with its clocks, brought up to date as by an opening.
class OpenedDropdown {
 public:
  OpenedDropdown() {
    LoadedCities::collector();
    controller_->loadClocks();
    controller_->menuWillOpen(*controller_->menu());
  }

  StatInterfaceTime_Time& controller() const { return *controller_; }
  const ZEVMenu_Time& menu() const { return *controller_->menu(); }

 private:
  std::shared_ptr<StatInterfaceTime_Time> controller_ = std::make_shared<StatInterfaceTime_Time>();
};
