#pragma once

#include <cmath>

#include "Platform/Foundation/NSGeometry.h"

/// A map of points: x' = m11 x + m21 y + tX, y' = m12 x + m22 y + tY.
struct NSAffineTransform {
  double m11 = 1;
  double m12 = 0;
  double m21 = 0;
  double m22 = 1;
  double tX = 0;
  double tY = 0;

  static NSAffineTransform translation(NSPoint by) { return {1, 0, 0, 1, by.x, by.y}; }

  /// Anticlockwise where y grows upwards, in radians.
  static NSAffineTransform rotation(double angle) {
    return {std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0};
  }

  /// Turns the y axis over within a height.
  static NSAffineTransform flip(double height) { return {1, 0, 0, -1, 0, height}; }

  NSPoint transformPoint(NSPoint point) const {
    return {m11 * point.x + m21 * point.y + tX, m12 * point.x + m22 * point.y + tY};
  }

  /// This transform with `inner` done before it.
  NSAffineTransform after(const NSAffineTransform& inner) const {
    const NSPoint origin = transformPoint({inner.tX, inner.tY});
    return {m11 * inner.m11 + m21 * inner.m12,
            m12 * inner.m11 + m22 * inner.m12,
            m11 * inner.m21 + m21 * inner.m22,
            m12 * inner.m21 + m22 * inner.m22,
            origin.x,
            origin.y};
  }

  /// The transform that undoes this one, which must not squeeze the plane to a line.
  NSAffineTransform inverted() const {
    const double determinant = m11 * m22 - m12 * m21;
    const NSAffineTransform linear{
        m22 / determinant, -m12 / determinant, -m21 / determinant, m11 / determinant, 0, 0};
    const NSPoint origin = linear.transformPoint({tX, tY});
    return {linear.m11, linear.m12, linear.m21, linear.m22, -origin.x, -origin.y};
  }

  bool operator==(const NSAffineTransform&) const = default;
};
