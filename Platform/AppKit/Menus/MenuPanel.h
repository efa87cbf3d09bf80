#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Platform/AppKit/Menus/NSMenu.h"
#include "Platform/AppKit/Views/NSView.h"

/// One open menu: its rows in a column, scrolled where the column is longer than the panel. Its own
/// coordinates are points with y downwards from its upper left corner.
///
/// While it lives, the rows' views belong to it. What changes is laid out with the next frame, so
/// that several changes are seen as one.
class MenuPanel : private NSWindow {
 public:
  MenuPanel(std::shared_ptr<NSMenu> menu, NSUserInterfaceLayoutDirection direction);
  MenuPanel(const MenuPanel&) = delete;
  MenuPanel& operator=(const MenuPanel&) = delete;
  ~MenuPanel() override;

  const std::shared_ptr<NSMenu>& menu() const { return menu_; }

  /// Called when something is to be laid out or drawn.
  std::function<void()> onNeedsFrame;
  /// Called before a view leaves the panel, with all below it.
  std::function<void(NSView&)> onViewWillGo;
  /// Called when a view of the panel asks for the keyboard.
  std::function<void(NSView&)> onFirstResponder;

  /// Lays the rows out if they have changed; answers whether anything moved.
  bool layOutIfNeeded();
  void setNeedsLayout();
  /// What the rows need.
  NSSize contentSize() const { return contentSize_; }
  double topPadding() const;

  /// On the desktop, in points, y downwards. Its height may be less than that of the content.
  const NSRect& frame() const { return frame_; }
  void setFrame(NSRect frame);

  NSPoint pointFromDesktop(NSPoint point) const {
    return {point.x - frame_.origin.x, point.y - frame_.origin.y};
  }
  /// Null between rows and under the arrows of a scrolled panel.
  NSMenuItem* itemAtPoint(NSPoint point) const;
  /// The foremost view at a point that tracks the mouse itself; null if that is the row's own.
  NSView* trackingViewAtPoint(NSPoint point) const;
  /// In the panel's coordinates; reaches out of the panel where the row is scrolled away.
  NSRect rowFrame(const NSMenuItem& item) const;
  NSView& column() const { return *column_.root(); }
  NSPoint pointInColumn(NSPoint point) const { return {point.x, point.y + scroll_}; }

  /// Which arrow is under a point: -1 for the upper one, 1 for the lower one, 0 for none.
  int arrowAtPoint(NSPoint point) const;
  /// Downwards; answers whether anything moved.
  bool scrollBy(double points);
  void scrollToItem(const NSMenuItem& item);

  /// The view that has the keyboard, shown by a ring around it; null if none has.
  void setFocusedView(const NSView* view);

  /// What looks different since the last call.
  NSRect takeDirtyRect();
  /// Draws a part into the current context, whose origin is the panel's upper left corner, with y
  /// downwards.
  void displayRect(NSRect rect) const;

 private:
  struct Row {
    std::shared_ptr<NSMenuItem> item;
    std::shared_ptr<NSView> view;
    double naturalWidth = 0;  ///< Before it was stretched to the menu's.
    double laidOutWidth = 0;
  };

  void viewNeedsDisplay(NSRect rect) override;
  void viewFrameChanged(NSView& view) override;
  void viewWillGo(NSView& view) override;
  void makeFirstResponder(NSView& view) override;
  NSUserInterfaceLayoutDirection userInterfaceLayoutDirection() const override {
    return direction_;
  }

  void takeRows();
  bool isScrolled() const { return contentSize_.height > frame_.size.height; }
  double furthestScroll() const;
  void drawArrow(int side) const;
  void addDirty(NSRect rect);

  std::shared_ptr<NSMenu> menu_;
  NSUserInterfaceLayoutDirection direction_;
  NSShownView column_;
  std::vector<Row> rows_;
  NSSize contentSize_;
  NSRect frame_;
  double scroll_ = 0;
  bool needsLayout_ = true;
  bool isLayingOut_ = false;
  const NSView* focusedView_ = nullptr;
  NSRect dirty_;
};
