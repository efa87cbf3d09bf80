// What colours, paths, texts and pictures do with the graphics context of the drawing in progress.
// Outside any drawing they do nothing.

#include <cmath>
#include <numbers>
#include <string>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Drawing/NSGradient.h"
#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/AppKit/Text/NSStringDrawing.h"

void NSColor::setFill() const {
  if (auto* context = NSGraphicsContext::currentContext()) context->setFillColor(*this);
}

void NSBezierPath::fill() const {
  if (auto* context = NSGraphicsContext::currentContext()) context->fillPath(*this);
}

void NSImage::drawInRect(NSRect target, NSRect source, double fraction) const {
  if (auto* context = NSGraphicsContext::currentContext()) {
    context->drawImage(*this, target, source, fraction);
  }
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

void NSGradient::drawInRect(NSRect rect, double angle) const {
  drawInBezierPath(NSBezierPath::bezierPathWithRect(rect), angle);
}

void drawInRectWithAttributes(std::string_view text, NSRect rect,
                              const NSTextAttributes& attributes) {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (context == nullptr) return;
  const std::string shown = truncatedToWidth(text, rect.size.width, attributes);
  const NSSize size{context->drawnWidth(shown, attributes),
                    sizeWithAttributes(shown, attributes).height};
  double x = rect.origin.x;
  if (attributes.alignment == NSTextAlignment::Right) x += rect.size.width - size.width;
  if (attributes.alignment == NSTextAlignment::Center) x += (rect.size.width - size.width) / 2;
  const double y =
      context->isFlipped() ? rect.origin.y : rect.origin.y + rect.size.height - size.height;
  context->drawText(shown, context->alignedToPixels({x, y}), attributes);
}

void drawAtPointWithAttributes(std::string_view text, NSPoint point,
                               const NSTextAttributes& attributes) {
  if (auto* context = NSGraphicsContext::currentContext()) {
    context->drawText(text, point, attributes);
  }
}
