#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Targets/Shared/Dropdown/ZEVMenu.h"
#include "Targets/Shared/Dropdown/ZEVMenuItem.h"
#include "Targets/VelmoraTime/Classes/MoonData.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceMoonPhaseRow.h"

/// The Moon in the dropdown: a large row and a small one, of which the dropdown shows one, and the
/// submenu of that row with the phases to come. Main thread only.
class DropdownMoon final : public NSObject {
 public:
  DropdownMoon();

  /// The row for a layout, which has the submenu from now on.
  const std::shared_ptr<ZEVMenuItem_Time>& itemWithSubmenu(bool isLarge);
  const std::shared_ptr<ZEVMenuItem_Time>& moonItem() const { return moonItem_; }
  const std::shared_ptr<ZEVMenuItem_Time>& moonItemSmall() const { return moonItemSmall_; }
  const std::shared_ptr<ZEVMenu_Time>& moonMenu() const { return moonMenu_; }

  /// Shows the phase of the present moment.
  void updateCurrentPhase();
  /// Shows the phases to come, in the large row the next one, and does so again when that has
  /// passed, after five minutes at the earliest. A setting "Time_DropdownFormat" that is no format
  /// raises `std::invalid_argument` and leaves the rows of the submenu as they are.
  void updateMoonPhase();
  void stopTimers();

  /// The English name of a phase by its index, from 0, the new moon, to 7; empty for any other.
  static std::string nameOfPhase(int64_t phase);

 private:
  void loadLargeRow();
  void loadSmallRow();
  void createPhasesMenu();
  void showNextPhase(const MoonPhaseRecord& record);

  std::vector<StatInterfaceMoonPhaseRow_Time> phaseRows_;
  std::shared_ptr<MoonPhaseView_Time> moonDetailsMoon_;
  std::shared_ptr<ZEVMenu_Time> moonMenu_;
  std::shared_ptr<ZEVMenuItem_Time> moonItem_;
  std::shared_ptr<ZEVMenuItem_Time> moonItemSmall_;
  std::shared_ptr<StatInterfaceTextField_Time> moonItemPhase_;
  std::shared_ptr<StatInterfaceTextField_Time> moonItemPhaseSmall_;
  std::shared_ptr<StatInterfaceTextField_Time> moonItemNextPhase_;
  std::shared_ptr<MoonPhaseView_Time> moon_;
  std::shared_ptr<MoonPhaseView_Time> moonSmall_;
};
