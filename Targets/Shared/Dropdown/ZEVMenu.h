#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/AppKit/Menus/NSMenu.h"
#include "Platform/Foundation/Notifications/NSNotificationCenter.h"

class ZEVMenuItem_Time;

/// A menu of the dropdown: its rows know their positions and wear the theme's colours. It keeps the
/// rows that are made under a key, so that the same key gives the same row as long as the menu
/// lives. Main thread only.
class ZEVMenu_Time : public NSMenu {
 public:
  ZEVMenu_Time();

  /// Whether it is on the screen, as its delegate has noted.
  bool isVisible() const { return visible_; }
  void setVisible(bool visible) { visible_ = visible; }

  /// The row kept under a key; null if there is none.
  std::shared_ptr<ZEVMenuItem_Time> cachedItem(std::string_view key) const;
  void cacheItem(std::string_view key, std::shared_ptr<ZEVMenuItem_Time> item);
  /// The key that a row is kept under; nothing for any other row.
  std::optional<std::string> keyOfItem(const NSMenuItem& item) const;

  void insertItemAtIndex(std::shared_ptr<NSMenuItem> item, size_t index) override;
  /// The row loses its highlight.
  void removeItem(NSMenuItem& item) override;
  /// Takes out the row kept under a key, which stays kept.
  void removeItemWithKey(std::string_view key);

  void themeChange() { updateColors(); }
  /// Of the menu and of all rows.
  void updateColors();

 private:
  void updateIndexes();

  bool visible_ = false;
  std::map<std::string, std::shared_ptr<ZEVMenuItem_Time>, std::less<>> cache_;
  NSObservation themeObservation_;
};
