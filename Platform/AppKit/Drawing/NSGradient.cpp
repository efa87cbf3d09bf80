#include "Platform/AppKit/Drawing/NSGradient.h"

#include <cmath>
#include <numbers>

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"

void NSGradient::drawInRect(NSRect rect, double angle) const {
  drawInBezierPath(NSBezierPath::bezierPathWithRect(rect), angle);
}

void NSGradient::drawInBezierPath(const NSBezierPath& path, double angle) const {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (context == nullptr) return;
  const NSRect box = path.bounds();
  const double radians = angle * std::numbers::pi / 180;
  const NSPoint direction{std::cos(radians), std::sin(radians)};
  // So far that the corners behind and before have the first and the last colour.
  const double reach =
      (std::abs(direction.x) * box.size.width + std::abs(direction.y) * box.size.height) / 2;
  const NSPoint centre{box.origin.x + box.size.width / 2, box.origin.y + box.size.height / 2};
  context->fillPath(path, *this, {centre.x - direction.x * reach, centre.y - direction.y * reach},
                    {centre.x + direction.x * reach, centre.y + direction.y * reach});
}
