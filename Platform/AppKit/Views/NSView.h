#pragma once

#include "Platform/Foundation/NSGeometry.h"
#include "Platform/Foundation/NSObject.h"

class NSView;

/// Who shows a view: told when it wants to be drawn again.
class NSViewHost {
 public:
  virtual ~NSViewHost() = default;
  virtual void viewNeedsDisplay(NSView& view) = 0;
};

/// A rectangle that draws itself. Its own coordinates start at its lower left corner.
class NSView : public NSObject {
 public:
  explicit NSView(NSRect frame = NSZeroRect) : frame_(frame) {}

  const NSRect& frame() const { return frame_; }
  NSRect bounds() const { return {{0, 0}, frame_.size}; }
  void setFrame(NSRect frame) { frame_ = frame; }
  void setFrameSize(NSSize size) { frame_.size = size; }

  /// Asks whoever shows this view to draw it soon. A view that nobody shows stays silent.
  void setNeedsDisplay(bool needsDisplay);

  /// Draws into the current graphics context, whose origin is the view's.
  virtual void drawRect(NSRect) {}

  /// `host` is not owned; null when the view is not shown any more.
  void setHost(NSViewHost* host) { host_ = host; }

 private:
  NSRect frame_;
  NSViewHost* host_ = nullptr;
};
