#pragma once

#include <memory>
#include <vector>

#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Targets/Shared/Dropdown/StatInterfaceTextField.h"
#include "Targets/Shared/Dropdown/StatInterfaceView.h"
#include "Targets/Shared/Dropdown/ZEVMenuItem.h"
#include "Targets/VelmoraTime/Classes/MoonData.h"
#include "Targets/VelmoraTime/Classes/SunData.h"

/// The figures below the light map, 320 by 305: where the Sun is, when it and the Moon rise and
/// set, the length of the day and the twilights of one city. Main thread only.
class SunDetailPanel {
 public:
  SunDetailPanel();

  const std::shared_ptr<StatInterfaceView_Time>& view() const { return view_; }

  /// Shows the records and the present time in the formatter's zone; changes its pattern. A setting
  /// "Time_DropdownFormat" that is no format raises `std::invalid_argument`.
  void update(const SunData& sun, const MoonData& moon, NSDateFormatter& formatter);

  /// All lines with their titles, from top to bottom.
  const std::vector<std::shared_ptr<ZEVMenuItem_Time>>& lines() const { return lines_; }
  const std::shared_ptr<StatInterfaceTextField_Time>& dayLength1Label() const {
    return dayLength1Label_;
  }
  const std::shared_ptr<StatInterfaceTextField_Time>& dayLength2Label() const {
    return dayLength2Label_;
  }

 private:
  void addLine(std::shared_ptr<ZEVMenuItem_Time> line);
  void addDayLength();

  std::shared_ptr<StatInterfaceView_Time> view_;
  std::vector<std::shared_ptr<ZEVMenuItem_Time>> lines_;
  std::shared_ptr<StatInterfaceTextField_Time> dayLength1Label_;
  std::shared_ptr<StatInterfaceTextField_Time> dayLength2Label_;
};
