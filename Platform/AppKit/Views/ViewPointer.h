#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/AppKit/Views/NSView.h"

/// Tells the views of a tree what the pointer does: tracking areas of its coming and going, and the
/// view that was pressed of all until the release. Places are in window coordinates. Views may go
/// within each message.
class ViewPointer {
 public:
  /// The pointer is at a place of the tree under `root`.
  void moveOver(NSView& root, NSPoint place, NSEventModifierFlags modifiers);
  /// It is over no part of the tree any more.
  void leave();

  void press(NSView& view, NSPoint place, NSEventModifierFlags modifiers);
  /// Whether a view is being pressed; it may have gone meanwhile.
  bool isPressing() const { return isPressing_; }
  void drag(NSPoint place);
  void release(NSPoint place);
  /// The press ends without a release on any view.
  void cancel();

 private:
  struct Tracked {
    std::weak_ptr<NSView> view;
    std::weak_ptr<NSTrackingArea> area;
  };

  void enterAndExit(std::vector<Tracked> now, NSPoint place);
  static void collect(NSView& view, NSPoint place, std::vector<Tracked>& found);
  NSEvent event(NSEventType type, NSPoint place) const;

  std::vector<Tracked> under_;
  std::weak_ptr<NSView> pressed_;
  bool isPressing_ = false;
  int64_t eventNumber_ = 0;
  NSEventModifierFlags modifiers_ = 0;
};
