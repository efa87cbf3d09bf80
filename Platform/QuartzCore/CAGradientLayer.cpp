#include "Platform/QuartzCore/CAGradientLayer.h"

#include "Platform/AppKit/Drawing/NSBezierPath.h"

void CAGradientLayer::drawInContext(NSGraphicsContext& context) const {
  const NSBezierPath area = NSBezierPath::bezierPathWithRect(bounds());
  if (colors_.startingColor() == colors_.endingColor()) {
    context.setFillColor(colors_.startingColor());
    context.fillPath(area);
  } else {
    context.fillPath(area, colors_, {0, 0}, {0, bounds().size.height});
  }
}
