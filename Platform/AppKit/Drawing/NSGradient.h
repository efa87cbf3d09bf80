#pragma once

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSColor.h"

/// A smooth change from one colour to another along a straight line.
class NSGradient {
 public:
  NSGradient(NSColor startingColor, NSColor endingColor)
      : startingColor_(startingColor), endingColor_(endingColor) {}

  const NSColor& startingColor() const { return startingColor_; }
  const NSColor& endingColor() const { return endingColor_; }

  /// Fills a shape. `angle` is in degrees, in the current coordinates: 0 goes along x, 90 along y;
  /// the first and the last colour stand where the shape's box begins and ends that way.
  void drawInBezierPath(const NSBezierPath& path, double angle) const;
  void drawInRect(NSRect rect, double angle) const;

  friend bool operator==(const NSGradient&, const NSGradient&) = default;

 private:
  NSColor startingColor_;
  NSColor endingColor_;
};
