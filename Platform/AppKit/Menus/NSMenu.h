#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Menus/NSMenuItem.h"
#include "Platform/Foundation/NSObject.h"

class MenuTracker;

/// Hears what happens to a menu that is tracked. It may change the menu within each message.
class NSMenuDelegate {
 public:
  virtual ~NSMenuDelegate() = default;

  /// Before the menu is laid out and shown.
  virtual void menuWillOpen(NSMenu&) {}
  virtual void menuDidClose(NSMenu&) {}
  /// Null when no row is highlighted any more.
  virtual void menuWillHighlightItem(NSMenu&, NSMenuItem*) {}
};

/// An ordered list of items; a model, without a window. What is changed while it is open is seen
/// in the next frame. Main thread only.
class NSMenu : public NSObject {
 public:
  ~NSMenu() override;

  const std::vector<std::shared_ptr<NSMenuItem>>& itemArray() const { return items_; }
  size_t numberOfItems() const { return items_.size(); }
  /// `numberOfItems()` if the item is not in this menu.
  size_t indexOfItem(const NSMenuItem& item) const;

  /// An item that is in a menu already raises `std::logic_error`; so does an index beyond the end.
  virtual void addItem(std::shared_ptr<NSMenuItem> item) {
    insertItemAtIndex(std::move(item), items_.size());
  }
  virtual void insertItemAtIndex(std::shared_ptr<NSMenuItem> item, size_t index);
  /// An item that is not in this menu is ignored.
  virtual void removeItem(NSMenuItem& item);
  virtual void removeItemAtIndex(size_t index);
  void removeAllItems();

  /// Not kept: whoever is the delegate sets null before it goes.
  NSMenuDelegate* delegate() const { return delegate_; }
  void setDelegate(NSMenuDelegate* delegate) { delegate_ = delegate; }

  /// The item whose submenu this is; null if there is none.
  NSMenuItem* parentItem() const { return parentItem_; }

  /// Whether 4 points stay free above the first row and below the last.
  bool hasPadding() const { return hasPadding_; }
  void setHasPadding(bool hasPadding) { hasPadding_ = hasPadding; }
  /// What is seen where no row draws.
  const NSColor& backgroundColor() const { return backgroundColor_; }
  void setBackgroundColor(const NSColor& color);

  /// Closes the menu, if it is open, with all that belongs to it.
  void cancelTracking();
  bool isOpen() const { return tracker_ != nullptr; }

 private:
  friend NSMenuItem;
  friend MenuTracker;

  void itemsChanged();

  std::vector<std::shared_ptr<NSMenuItem>> items_;
  NSMenuDelegate* delegate_ = nullptr;
  NSMenuItem* parentItem_ = nullptr;
  NSColor backgroundColor_ = NSColor::whiteColor();
  bool hasPadding_ = true;
  MenuTracker* tracker_ = nullptr;  // While it is open.
};
