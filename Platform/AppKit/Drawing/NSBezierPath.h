#pragma once

#include <vector>

#include "Platform/Foundation/NSGeometry.h"

/// A path of straight lines and cubic curves.
class NSBezierPath {
 public:
  struct Element {
    enum class Kind { MoveTo, LineTo, CurveTo, Close };
    Kind kind = Kind::MoveTo;
    NSPoint point;          ///< Where the element ends.
    NSPoint controlPoint1;  ///< Of a curve.
    NSPoint controlPoint2;

    bool operator==(const Element&) const = default;
  };

  static NSBezierPath bezierPathWithRect(NSRect rect);
  static NSBezierPath bezierPathWithOvalInRect(NSRect rect);
  /// With quarter circles of `radius`, of half a side at most.
  static NSBezierPath bezierPathWithRoundedRect(NSRect rect, double radius);

  void moveToPoint(NSPoint point);
  void lineToPoint(NSPoint point);
  void curveToPoint(NSPoint point, NSPoint controlPoint1, NSPoint controlPoint2);
  void closePath();
  void appendBezierPath(const NSBezierPath& path);

  /// Fills the path with the current graphics context's fill colour.
  void fill() const;

  /// The box around all points of the path.
  NSRect bounds() const;
  const std::vector<Element>& elements() const { return elements_; }

  bool operator==(const NSBezierPath&) const = default;

 private:
  std::vector<Element> elements_;
};
