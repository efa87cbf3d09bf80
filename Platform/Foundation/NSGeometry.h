#pragma once

#include <algorithm>

/// Points; y grows upwards unless a view is flipped.
struct NSPoint {
  double x = 0;
  double y = 0;
  friend bool operator==(const NSPoint&, const NSPoint&) = default;
};

struct NSSize {
  double width = 0;
  double height = 0;
  friend bool operator==(const NSSize&, const NSSize&) = default;
};

struct NSRect {
  NSPoint origin;
  NSSize size;
  friend bool operator==(const NSRect&, const NSRect&) = default;
};

constexpr NSRect NSMakeRect(double x, double y, double width, double height) {
  return {{x, y}, {width, height}};
}

constexpr NSRect NSZeroRect{};

constexpr bool NSIsEmptyRect(const NSRect& rect) {
  return !(rect.size.width > 0 && rect.size.height > 0);
}

/// The edges at the origin belong to a rectangle, the others do not.
constexpr bool NSPointInRect(NSPoint point, const NSRect& rect) {
  return point.x >= rect.origin.x && point.x < rect.origin.x + rect.size.width &&
         point.y >= rect.origin.y && point.y < rect.origin.y + rect.size.height;
}

/// What two rectangles share; empty if that is nothing.
constexpr NSRect NSIntersectionRect(const NSRect& a, const NSRect& b) {
  const double left = std::max(a.origin.x, b.origin.x);
  const double bottom = std::max(a.origin.y, b.origin.y);
  const double right = std::min(a.origin.x + a.size.width, b.origin.x + b.size.width);
  const double top = std::min(a.origin.y + a.size.height, b.origin.y + b.size.height);
  if (right <= left || top <= bottom) return NSZeroRect;
  return NSMakeRect(left, bottom, right - left, top - bottom);
}

/// The least rectangle around two; an empty one counts for nothing.
constexpr NSRect NSUnionRect(const NSRect& a, const NSRect& b) {
  if (NSIsEmptyRect(a)) return b;
  if (NSIsEmptyRect(b)) return a;
  const double left = std::min(a.origin.x, b.origin.x);
  const double bottom = std::min(a.origin.y, b.origin.y);
  const double right = std::max(a.origin.x + a.size.width, b.origin.x + b.size.width);
  const double top = std::max(a.origin.y + a.size.height, b.origin.y + b.size.height);
  return NSMakeRect(left, bottom, right - left, top - bottom);
}

/// Without `x` at either side and `y` below and above.
constexpr NSRect NSInsetRect(const NSRect& rect, double x, double y) {
  return NSMakeRect(rect.origin.x + x, rect.origin.y + y, rect.size.width - 2 * x,
                    rect.size.height - 2 * y);
}
