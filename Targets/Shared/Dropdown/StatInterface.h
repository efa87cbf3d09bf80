#pragma once

#include <memory>
#include <vector>

#include "Targets/Shared/Dropdown/ZEVMenu.h"
#include "Targets/Shared/Dropdown/ZEVMenuItem.h"

/// What controls a dropdown: owns its menu and fills it. Main thread only.
class StatInterface_Time : public NSObject, public NSMenuDelegate {
 public:
  using MenuItems = std::vector<std::shared_ptr<NSMenuItem>>;

  ~StatInterface_Time() override;

  /// Whether the dropdown is open and follows the time.
  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled) { enabled_ = enabled; }

  const std::shared_ptr<ZEVMenu_Time>& menu() const { return menu_; }
  /// The controller becomes the menu's delegate.
  void setMenu(std::shared_ptr<ZEVMenu_Time> menu);

  /// The row that a combined menu shows for this dropdown; null if there is none.
  const std::shared_ptr<ZEVMenuItem_Time>& combinedItem() const { return combinedItem_; }
  void setCombinedItem(std::shared_ptr<ZEVMenuItem_Time> item) { combinedItem_ = std::move(item); }

  void rebuildMenuWithItems(const MenuItems& items) { rebuildMenu(*menu_, items); }
  /// Makes these the menu's rows, in this order; one that stands in the list twice comes once. Rows
  /// that stay are not touched, so that an open menu shows no more than what changes; only another
  /// order of them has all rows put in anew.
  void rebuildMenu(NSMenu& menu, const MenuItems& items);

 private:
  bool enabled_ = false;
  std::shared_ptr<ZEVMenu_Time> menu_;
  std::shared_ptr<ZEVMenuItem_Time> combinedItem_;
};
