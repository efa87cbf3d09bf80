#include "Targets/Shared/Dropdown/StatInterface.h"

#include <algorithm>
#include <utility>

namespace {

bool contains(const StatInterface_Time::MenuItems& items, const std::shared_ptr<NSMenuItem>& item) {
  return std::ranges::find(items, item) != items.end();
}

}  // namespace

StatInterface_Time::~StatInterface_Time() { setMenu(nullptr); }

void StatInterface_Time::setMenu(std::shared_ptr<ZEVMenu_Time> menu) {
  if (menu_ && menu_->delegate() == this) menu_->setDelegate(nullptr);
  menu_ = std::move(menu);
  if (menu_) menu_->setDelegate(this);
}

void StatInterface_Time::rebuildMenu(NSMenu& menu, const MenuItems& items) {
  MenuItems wanted;
  for (const auto& item : items) {
    if (item && !contains(wanted, item)) wanted.push_back(item);
  }
  const MenuItems before = menu.itemArray();
  for (const auto& item : before) {
    if (!contains(wanted, item)) menu.removeItem(*item);
  }
  for (size_t index = 0; index < wanted.size(); ++index) {
    if (wanted[index]->menu() != &menu) menu.insertItemAtIndex(wanted[index], index);
  }
  if (menu.itemArray() == wanted) return;
  menu.removeAllItems();
  for (const auto& item : wanted)
    menu.addItem(item);
}
