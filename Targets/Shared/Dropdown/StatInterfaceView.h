#pragma once

#include <cstdint>
#include <memory>

#include "Platform/AppKit/Views/NSView.h"
#include "Targets/Shared/Dropdown/DropdownElement.h"

/// A row of the dropdown: draws the theme's background and the highlight behind its subviews, and
/// hands the theme and the highlight down to them.
class StatInterfaceView_Time : public NSView, public DropdownElement {
 public:
  explicit StatInterfaceView_Time(NSRect frame = NSZeroRect) : NSView(frame) {}

  /// A row that holds one view as large as itself, for parts that come and go together. That view
  /// draws no background, so the highlight is the row's.
  static std::shared_ptr<StatInterfaceView_Time> containerWithFrame(NSRect frame);

  /// Whether the row takes the highlight.
  bool isHighlightable() const { return highlightable_; }
  void setHighlightable(bool highlightable) { highlightable_ = highlightable; }
  bool menuItemHighlighted() const { return menuItemHighlighted_; }
  void setMenuItemHighlighted(bool highlighted) override;

  /// Draws neither background nor highlight.
  bool isBackgroundDisabled() const { return backgroundDisabled_; }
  void setBackgroundDisabled(bool disabled);

  /// A highlight of its own: it stands in `highlightRect`, of which y and height count, whether or
  /// not the row is highlighted. What reaches out of the row shows in its neighbours if they have
  /// such a one, too.
  bool customHighlightRect() const { return customHighlightRect_; }
  void setCustomHighlightRect(bool custom);
  const NSRect& highlightRect() const { return highlightRect_; }
  void setHighlightRect(NSRect rect);

  /// The position in the menu, from 0.
  int64_t itemIndex() const { return itemIndex_; }
  void setItemIndex(int64_t index) { itemIndex_ = index; }

  /// Of all views below. An override goes on to this one.
  void updateColors() override;

  void drawRect(NSRect rect) override;

 private:
  static void updateColorsForView(NSView& view);
  void drawHighlight() const;

  bool highlightable_ = false;
  bool menuItemHighlighted_ = false;
  bool backgroundDisabled_ = false;
  bool customHighlightRect_ = false;
  int64_t itemIndex_ = 0;
  NSRect highlightRect_;
};

/// The same with y downwards from its upper edge.
class StatInterfaceFlippedView_Time : public StatInterfaceView_Time {
 public:
  using StatInterfaceView_Time::StatInterfaceView_Time;
  bool isFlipped() const override { return true; }
};
