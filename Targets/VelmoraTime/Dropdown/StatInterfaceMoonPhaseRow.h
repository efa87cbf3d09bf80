#pragma once

#include <memory>

#include "Targets/Shared/Dropdown/StatInterfaceTextField.h"
#include "Targets/Shared/Dropdown/StatInterfaceView.h"
#include "Targets/VelmoraTime/Classes/MoonPhaseView.h"

/// A line of the Moon's submenu, 320 by 23: a small Moon, a phase's name and, at the far end, its
/// date. Whoever makes one fills it.
class StatInterfaceMoonPhaseRow_Time {
 public:
  StatInterfaceMoonPhaseRow_Time();

  const std::shared_ptr<StatInterfaceView_Time>& view() const { return view_; }
  const std::shared_ptr<MoonPhaseView_Time>& moon() const { return moon_; }
  const std::shared_ptr<StatInterfaceTextField_Time>& name() const { return name_; }
  const std::shared_ptr<StatInterfaceTextField_Time>& date() const { return date_; }

 private:
  std::shared_ptr<StatInterfaceView_Time> view_;
  std::shared_ptr<MoonPhaseView_Time> moon_;
  std::shared_ptr<StatInterfaceTextField_Time> name_;
  std::shared_ptr<StatInterfaceTextField_Time> date_;
};
