#include "Targets/Shared/Dropdown/ZEVMenu.h"

#include <algorithm>
#include <utility>

#include "Targets/Shared/Dropdown/DropdownTheme.h"
#include "Targets/Shared/Dropdown/StatInterfaceView.h"
#include "Targets/Shared/Dropdown/ZEVMenuItem.h"

namespace {

void updateColorsOf(const NSMenuItem& item) {
  if (auto* element = dynamic_cast<DropdownElement*>(item.view().get())) element->updateColors();
}

}  // namespace

ZEVMenu_Time::ZEVMenu_Time() {
  setBackgroundColor(dropdownBackgroundColor());
  themeObservation_ = NSNotificationCenter::defaultCenter().addObserver(
      "DropdownThemeChanged", [this](const NSNotification&) { themeChange(); });
}

std::shared_ptr<ZEVMenuItem_Time> ZEVMenu_Time::cachedItem(std::string_view key) const {
  const auto found = cache_.find(key);
  return found != cache_.end() ? found->second : nullptr;
}

void ZEVMenu_Time::cacheItem(std::string_view key, std::shared_ptr<ZEVMenuItem_Time> item) {
  cache_.insert_or_assign(std::string(key), std::move(item));
}

std::optional<std::string> ZEVMenu_Time::keyOfItem(const NSMenuItem& item) const {
  const auto found =
      std::ranges::find_if(cache_, [&](const auto& kept) { return kept.second.get() == &item; });
  return found != cache_.end() ? std::optional(found->first) : std::nullopt;
}

void ZEVMenu_Time::insertItemAtIndex(std::shared_ptr<NSMenuItem> item, size_t index) {
  // The theme may have changed while the row was in no menu.
  updateColorsOf(*item);
  NSMenu::insertItemAtIndex(std::move(item), index);
  updateIndexes();
}

void ZEVMenu_Time::removeItem(NSMenuItem& item) {
  if (item.menu() != this) return;
  const std::shared_ptr<NSView> view = item.view();  // The item may go with its place.
  NSMenu::removeItem(item);
  // Nobody will tell a row that is in no menu that it is highlighted no more.
  if (auto* row = dynamic_cast<StatInterfaceView_Time*>(view.get())) {
    row->setMenuItemHighlighted(false);
    row->setCustomHighlightRect(false);
  }
  updateIndexes();
}

void ZEVMenu_Time::removeItemWithKey(std::string_view key) {
  if (const auto item = cachedItem(key)) removeItem(*item);
}

void ZEVMenu_Time::updateColors() {
  setBackgroundColor(dropdownBackgroundColor());
  for (const auto& item : itemArray())
    updateColorsOf(*item);
}

void ZEVMenu_Time::updateIndexes() {
  int64_t index = 0;
  for (const auto& item : itemArray()) {
    if (auto* view = dynamic_cast<StatInterfaceView_Time*>(item->view().get())) {
      view->setItemIndex(index);
    }
    ++index;
  }
}
