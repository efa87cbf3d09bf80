#pragma once

#include <optional>

#include "Platform/Foundation/NSGeometry.h"

/// A part of a view whose `mouseEntered` and `mouseExited` are called as the pointer comes and
/// goes.
class NSTrackingArea {
 public:
  /// All that is seen of the view.
  NSTrackingArea() = default;
  /// A rectangle of the view's coordinates.
  explicit NSTrackingArea(NSRect rect) : rect_(rect) {}

  const std::optional<NSRect>& rect() const { return rect_; }

 private:
  std::optional<NSRect> rect_;
};
