#pragma once

#include "Platform/AppKit/Drawing/NSGradient.h"
#include "Platform/QuartzCore/CALayer.h"

/// A smooth change of colour from the layer's upper edge down to its lower one.
class CAGradientLayer : public CALayer {
 public:
  void setColors(const NSGradient& colors) { colors_ = colors; }

 private:
  void drawInContext(NSGraphicsContext& context) const override;

  NSGradient colors_{NSColor::colorWithDeviceWhite(0, 0), NSColor::colorWithDeviceWhite(0, 0)};
};
