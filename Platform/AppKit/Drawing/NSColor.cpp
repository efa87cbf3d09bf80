#include "Platform/AppKit/Drawing/NSColor.h"

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"

void NSColor::setFill() const {
  if (auto* context = NSGraphicsContext::currentContext()) context->setFillColor(*this);
}
