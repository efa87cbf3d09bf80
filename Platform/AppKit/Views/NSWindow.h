#pragma once

#include <memory>

#include "Platform/AppKit/Events/NSApplication.h"
#include "Platform/Foundation/NSGeometry.h"

class NSView;

/// What shows a tree of views: told when a part of it wants to be drawn again. Its coordinates are
/// points with y downwards from the upper left corner of the tree's root.
class NSWindow {
 public:
  virtual ~NSWindow() = default;

  /// A part of the tree looks different now.
  virtual void viewNeedsDisplay(NSRect rect) = 0;
  /// A view of the tree has another frame or is hidden or shown. Its place is to be drawn anyway.
  virtual void viewFrameChanged(NSView&) {}
  /// A view is about to leave the tree, with all below it.
  virtual void viewWillGo(NSView&) {}

  /// Has the keyboard rest on a view of the tree, where that is shown.
  virtual void makeFirstResponder(NSView&) {}

  /// From the right, subviews stand mirrored in their superviews.
  virtual NSUserInterfaceLayoutDirection userInterfaceLayoutDirection() const {
    return NSUserInterfaceLayoutDirection::LeftToRight;
  }
};

/// Shows a tree of views in a window as long as it lives. The window must live as long; the root is
/// kept.
class [[nodiscard]] NSShownView {
 public:
  NSShownView() = default;
  NSShownView(std::shared_ptr<NSView> root, NSWindow& window);
  NSShownView(NSShownView&& other) noexcept = default;
  NSShownView& operator=(NSShownView&& other) noexcept;
  ~NSShownView() { end(); }

  const std::shared_ptr<NSView>& root() const { return root_; }

 private:
  void end();

  std::shared_ptr<NSView> root_;
};
