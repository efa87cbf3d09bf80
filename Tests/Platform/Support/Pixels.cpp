#include "Tests/Platform/Support/Pixels.h"

#include <algorithm>

#include "Platform/AppKit/Drawing/NSBezierPath.h"

Ink inkOf(const BitmapSurface& surface) {
  Ink ink{surface.pixelWidth(), -1, surface.pixelHeight(), -1};
  for (int row = 0; row < surface.pixelHeight(); ++row) {
    for (int column = 0; column < surface.pixelWidth(); ++column) {
      const double alpha = surface.pixelAt(column, row).alphaComponent();
      if (alpha == 0) continue;
      ink.left = std::min(ink.left, column);
      ink.right = std::max(ink.right, column);
      ink.top = std::min(ink.top, row);
      ink.bottom = std::max(ink.bottom, row);
      ink.area += alpha;
      ink.isCrisp = ink.isCrisp && alpha == 1;
    }
  }
  return ink;
}

void fill(NSRect rect) { NSBezierPath::bezierPathWithRect(rect).fill(); }
