#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Platform/AppKit/Events/NSEvent.h"
#include "Platform/AppKit/Views/NSAccessibility.h"
#include "Platform/AppKit/Views/NSTrackingArea.h"
#include "Platform/AppKit/Views/NSWindow.h"
#include "Platform/Foundation/NSGeometry.h"
#include "Platform/Foundation/NSObject.h"

/// What of a view's frame gives way when its superview is resized.
using NSAutoresizingMask = uint32_t;
constexpr NSAutoresizingMask NSViewMinXMargin = 1;
constexpr NSAutoresizingMask NSViewWidthSizable = 2;
constexpr NSAutoresizingMask NSViewMaxXMargin = 4;
constexpr NSAutoresizingMask NSViewMinYMargin = 8;
constexpr NSAutoresizingMask NSViewHeightSizable = 16;
constexpr NSAutoresizingMask NSViewMaxYMargin = 32;

/// A rectangle that draws itself and holds others. Its own coordinates start at its lower left
/// corner, or at its upper left one with y downwards if it is flipped. Nothing of it is seen
/// outside of it. Main thread only.
class NSView : public NSObject {
 public:
  explicit NSView(NSRect frame = NSZeroRect) : frame_(frame) {}
  ~NSView() override;

  // Geometry.

  /// In the superview's coordinates, laid out from the left.
  const NSRect& frame() const { return frame_; }
  NSRect bounds() const { return {{0, 0}, frame_.size}; }
  void setFrame(NSRect frame);
  void setFrameSize(NSSize size) { setFrame({frame_.origin, size}); }
  void setFrameOrigin(NSPoint origin) { setFrame({origin, frame_.size}); }
  /// Where the view stands in its superview: its frame, mirrored where the window is laid out from
  /// the right.
  NSRect placedFrame() const;
  virtual bool isFlipped() const { return false; }
  /// False for a view whose subviews stand on a picture that is the same for every reader.
  virtual bool mirrorsSubviews() const { return true; }
  NSUserInterfaceLayoutDirection userInterfaceLayoutDirection() const;

  NSAutoresizingMask autoresizingMask() const { return autoresizingMask_; }
  void setAutoresizingMask(NSAutoresizingMask mask) { autoresizingMask_ = mask; }

  /// Resizes the subviews by their masks, after this view's size was `old`.
  virtual void resizeSubviewsWithOldSize(NSSize old);

  /// From and to another view of the tree; null stands for the window.
  NSPoint convertPointFromView(NSPoint point, const NSView* view) const;
  NSPoint convertPointToView(NSPoint point, const NSView* view) const;
  NSRect convertRectToView(NSRect rect, const NSView* view) const;

  // The tree. A view keeps its subviews; the last stands in front.

  NSView* superview() const { return superview_; }
  const std::vector<std::shared_ptr<NSView>>& subviews() const { return subviews_; }
  /// Takes the view from where it was.
  void addSubview(std::shared_ptr<NSView> view);
  void removeFromSuperview();
  bool isDescendantOf(const NSView& view) const;
  /// Null while the tree is not shown.
  NSWindow* window() const;

  bool isHidden() const { return isHidden_; }
  void setHidden(bool hidden);

  /// The foremost view of this tree at a point of the superview's coordinates; null if there is
  /// none.
  NSView* hitTest(NSPoint point);

  // Drawing.

  /// Asks for the view, or a part of it, to be drawn soon. A tree that nobody shows stays silent.
  void setNeedsDisplay(bool needsDisplay);
  void setNeedsDisplayInRect(NSRect rect);

  /// Draws into the current graphics context, which has the view's coordinates. `rect` is what of
  /// it is wanted.
  virtual void drawRect(NSRect) {}

  /// Draws what lies in `rect`, with all subviews, into the current graphics context, which has the
  /// view's coordinates. A view that throws is reported and keeps nothing from the others.
  void displayRect(NSRect rect);

  // Input.

  /// Whether a press on this view is its own: else it is that of the view around it, and at last of
  /// the menu's row. Such a view gets the release, too, wherever that happens.
  virtual bool tracksMouse() const { return false; }
  virtual bool acceptsFirstMouse() const { return false; }
  /// Whether the keyboard can rest on this view.
  virtual bool acceptsFirstResponder() const { return false; }
  /// Whether the keyboard comes to this view also by the arrow down from its highlighted row.
  virtual bool isEnteredByArrowKeys() const { return false; }
  virtual void mouseDown(const NSEvent&) {}
  virtual void mouseDragged(const NSEvent&) {}
  virtual void mouseUp(const NSEvent&) {}
  virtual void mouseEntered(const NSEvent&) {}
  virtual void mouseExited(const NSEvent&) {}
  /// Answers whether the view has used the scrolling, which else is the menu's.
  virtual bool scrollWheel(const NSEvent&) { return false; }
  /// Answers whether the view, on which the keyboard rests, has used the key.
  virtual bool keyDown(const NSEvent&) { return false; }
  /// A key that works wherever the keyboard rests; answers whether this view or one below used it.
  virtual bool performKeyEquivalent(const NSEvent& event);

  void addTrackingArea(std::shared_ptr<NSTrackingArea> area);
  void removeTrackingArea(const NSTrackingArea& area);
  const std::vector<std::shared_ptr<NSTrackingArea>>& trackingAreas() const {
    return trackingAreas_;
  }

  // What assistive technologies are told.

  virtual NSAccessibilityRole accessibilityRole() const { return NSAccessibilityRole::None; }
  /// Empty for a view that has no words of its own.
  virtual std::string accessibilityLabel() const { return {}; }
  /// The words that are seen in the view; mostly those that are read aloud.
  virtual std::string writtenText() const { return accessibilityLabel(); }
  virtual bool isAccessibilitySelected() const { return false; }
  virtual bool isAccessibilityEnabled() const { return true; }
  virtual bool canAccessibilityPerformPress() const { return acceptsFirstResponder(); }
  /// Does what a click on the view does; false if that is nothing.
  virtual bool accessibilityPerformPress() { return false; }

 private:
  friend NSShownView;

  NSPoint pointInSuperview(NSPoint point) const;
  NSPoint pointFromSuperview(NSPoint point) const;
  NSPoint pointInWindow(NSPoint point) const;
  NSPoint pointFromWindow(NSPoint point) const;
  void resizeWithOldSuperviewSize(NSSize old);

  NSRect frame_;
  NSView* superview_ = nullptr;
  std::vector<std::shared_ptr<NSView>> subviews_;
  std::vector<std::shared_ptr<NSTrackingArea>> trackingAreas_;
  NSAutoresizingMask autoresizingMask_ = 0;
  bool isHidden_ = false;
  NSWindow* window_ = nullptr;  // Of a root.
};
