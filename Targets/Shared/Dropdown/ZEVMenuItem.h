#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/AppKit/Menus/NSMenuItem.h"
#include "Targets/Shared/Dropdown/RowMarks.h"
#include "Targets/Shared/Dropdown/StatInterfaceTextField.h"
#include "Targets/Shared/Dropdown/StatInterfaceView.h"

class StatInterfaceMenuButton_Time;
class ZEVMenu_Time;

/// A row of the dropdown. It names the parts that are in its view, for the code that fills them,
/// and can stack sub-items in its view: one row of the menu that is made of several. Main thread
/// only.
class ZEVMenuItem_Time : public NSMenuItem {
 public:
  ~ZEVMenuItem_Time() override;

  /// Null for a view or a menu of any other kind.
  std::shared_ptr<StatInterfaceView_Time> view() const;
  std::shared_ptr<ZEVMenu_Time> submenu() const;

  /// What a sub-item shows: its view may not stand in the menu, since its parent's does.
  const std::shared_ptr<StatInterfaceView_Time>& alternateView() const { return alternateView_; }
  void setAlternateView(std::shared_ptr<StatInterfaceView_Time> view);
  /// The view, or the alternate one of an item without a view.
  std::shared_ptr<StatInterfaceView_Time> shownView() const;

  // Parts of the row. Null where it has none.

  const std::shared_ptr<StatInterfaceTextField_Time>& label() const { return label_; }
  void setLabel(std::shared_ptr<StatInterfaceTextField_Time> label) { label_ = std::move(label); }
  const std::shared_ptr<StatInterfaceTextField_Time>& field() const { return field_; }
  void setField(std::shared_ptr<StatInterfaceTextField_Time> field) { field_ = std::move(field); }
  const std::shared_ptr<StatInterfaceTextField_Time>& value2() const { return value2_; }
  void setValue2(std::shared_ptr<StatInterfaceTextField_Time> field) { value2_ = std::move(field); }
  const std::shared_ptr<StatInterfaceMenuButton_Time>& button() const { return button_; }
  void setButton(std::shared_ptr<StatInterfaceMenuButton_Time> button);
  const std::shared_ptr<DotImageView_Time>& legend() const { return legend_; }
  void setLegend(std::shared_ptr<DotImageView_Time> legend) { legend_ = std::move(legend); }
  const std::shared_ptr<TickView_Time>& tick() const { return tick_; }
  void setTick(std::shared_ptr<TickView_Time> tick) { tick_ = std::move(tick); }

  // Where the highlight reaches; `highlightMenuItem` reads it.

  /// Covers `customHighlightRect`, of which y and height count, and not the whole view.
  bool useCustomHighlight() const { return useCustomHighlight_; }
  void setUseCustomHighlight(bool custom) { useCustomHighlight_ = custom; }
  const NSRect& customHighlightRect() const { return customHighlightRect_; }
  void setCustomHighlightRect(NSRect rect) { customHighlightRect_ = rect; }
  /// By how many points it reaches into the row before and into the row behind.
  int64_t previousItemHighlight() const { return previousItemHighlight_; }
  void setPreviousItemHighlight(int64_t points) { previousItemHighlight_ = points; }
  int64_t nextItemHighlight() const { return nextItemHighlight_; }
  void setNextItemHighlight(int64_t points) { nextItemHighlight_ = points; }

  // Sub-items, from the first to the last; the first stands on top in a flipped view.

  const std::vector<std::shared_ptr<ZEVMenuItem_Time>>& menuItemsOrdered() const {
    return menuItemsOrdered_;
  }
  /// The item that this one is a sub-item of; null if there is none.
  ZEVMenuItem_Time* parentItem2() const { return parentItem2_; }
  const std::string& key() const { return key_; }

  /// Its view becomes its alternate view. One that is in an item already leaves that; without a key
  /// nothing is added.
  void addSubMenuItem(const std::shared_ptr<ZEVMenuItem_Time>& item, std::string_view key);
  /// The first with that key; null if there is none.
  std::shared_ptr<ZEVMenuItem_Time> itemWithKey(std::string_view key) const;
  void removeItemWithKey(std::string_view key);
  /// One that is no sub-item of this is ignored.
  void removeItem(ZEVMenuItem_Time& item);
  void removeAllItems();
  /// Stacks the sub-items: the view takes the width of the widest, if it is not wider itself, and
  /// the height of all.
  void updateLayout();

  /// Widens the view to its `field`'s text, and to 225 points at least; never narrows it.
  void resizeToFieldValue();

  /// Title and width, to tell whether a row still is the one that was laid out.
  const std::string& signature() const { return signature_; }
  void createSignature();

 private:
  static void detach(ZEVMenuItem_Time& item);

  std::shared_ptr<StatInterfaceView_Time> alternateView_;
  std::shared_ptr<StatInterfaceTextField_Time> label_;
  std::shared_ptr<StatInterfaceTextField_Time> field_;
  std::shared_ptr<StatInterfaceTextField_Time> value2_;
  std::shared_ptr<StatInterfaceMenuButton_Time> button_;
  std::shared_ptr<DotImageView_Time> legend_;
  std::shared_ptr<TickView_Time> tick_;
  bool useCustomHighlight_ = false;
  NSRect customHighlightRect_;
  int64_t previousItemHighlight_ = 0;
  int64_t nextItemHighlight_ = 0;
  std::string signature_;
  std::string key_;
  ZEVMenuItem_Time* parentItem2_ = nullptr;
  std::vector<std::shared_ptr<ZEVMenuItem_Time>> menuItemsOrdered_;
};
