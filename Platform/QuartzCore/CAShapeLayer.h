#pragma once

#include <memory>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/QuartzCore/CALayer.h"

/// A path as the mask of another layer. What it covers is the shadow of the path, so its edge is
/// soft: the path filled and blurred, and half covered on the path itself. At the layer's sides the
/// blur goes on as if what stands there went on for ever.
///
/// The blur is worked out when the layer is first drawn after a change, once for all scales, with
/// one sample a point: enough for radii of a point and more.
class CAShapeLayer : public CALayer {
 public:
  void setFrame(NSRect frame) override;

  const NSBezierPath& path() const { return path_; }
  /// Figures that are open are closed.
  void setPath(NSBezierPath path);

  double shadowRadius() const { return shadowRadius_; }
  /// The standard deviation of the blur in points; with 0 the edge is sharp.
  void setShadowRadius(double radius);

  /// Makes the left and the right side one line, as on a map of the whole Earth: the blur goes on
  /// from one to the other.
  void setWrapsHorizontally(bool wraps);

  /// How much of each point is covered; null if nothing is.
  std::shared_ptr<NSImage> coverage() const;

 private:
  NSBezierPath path_;
  double shadowRadius_ = 3;
  bool wrapsHorizontally_ = false;
  mutable std::shared_ptr<NSImage> coverage_;  ///< Null until it is asked for.
};
