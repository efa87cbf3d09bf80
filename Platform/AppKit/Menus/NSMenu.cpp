#include "Platform/AppKit/Menus/NSMenu.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Platform/AppKit/Menus/MenuTracker.h"

NSMenu::~NSMenu() {
  for (const auto& item : items_)
    item->menu_ = nullptr;
}

size_t NSMenu::indexOfItem(const NSMenuItem& item) const {
  return static_cast<size_t>(std::ranges::find(items_, &item, &std::shared_ptr<NSMenuItem>::get) -
                             items_.begin());
}

void NSMenu::insertItemAtIndex(std::shared_ptr<NSMenuItem> item, size_t index) {
  if (item->menu_ != nullptr) throw std::logic_error("the item is in a menu already");
  if (index > items_.size()) throw std::logic_error("the menu has no such place");
  item->menu_ = this;
  items_.insert(items_.begin() + static_cast<ptrdiff_t>(index), std::move(item));
  itemsChanged();
}

void NSMenu::removeItem(NSMenuItem& item) {
  const size_t index = indexOfItem(item);
  if (index == items_.size()) return;
  const auto place = items_.begin() + static_cast<ptrdiff_t>(index);
  const std::shared_ptr<NSMenuItem> kept = std::move(*place);  // Until this call is over.
  items_.erase(place);
  kept->menu_ = nullptr;
  itemsChanged();
}

void NSMenu::removeItemAtIndex(size_t index) {
  if (index < items_.size()) removeItem(*items_[index]);
}

void NSMenu::removeAllItems() {
  while (!items_.empty())
    removeItem(*items_.back());
}

void NSMenu::setBackgroundColor(const NSColor& color) {
  if (color == backgroundColor_) return;
  backgroundColor_ = color;
  itemsChanged();
}

void NSMenu::cancelTracking() {
  if (tracker_ != nullptr) tracker_->close();
}

void NSMenu::itemsChanged() {
  if (tracker_ != nullptr) tracker_->menuChanged(*this);
}
