#include "Platform/AppKit/NSColor.h"

#include "Platform/AppKit/NSGraphicsContext.h"

void NSColor::setFill() const {
  if (auto* context = NSGraphicsContext::currentContext()) context->setFillColor(*this);
}
