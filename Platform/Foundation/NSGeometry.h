#pragma once

#include <cstdint>

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
