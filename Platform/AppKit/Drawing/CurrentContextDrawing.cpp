// What colours, paths, texts and pictures do with the graphics context of the drawing in progress.
// Outside any drawing they do nothing.

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSColor.h"
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

void drawAtPointWithAttributes(std::string_view text, NSPoint point,
                               const NSTextAttributes& attributes) {
  if (auto* context = NSGraphicsContext::currentContext()) {
    context->drawText(text, point, attributes);
  }
}
