#include "Platform/AppKit/Views/NSImageView.h"

#include <algorithm>

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"

void NSImageView::drawRect(NSRect) {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (context == nullptr || !image_) return;
  const NSSize natural = image_->size();
  if (natural.width <= 0 || natural.height <= 0) return;
  const NSSize space = bounds().size;
  const double fit = std::min({1.0, space.width / natural.width, space.height / natural.height});
  const NSSize size{natural.width * fit, natural.height * fit};
  const NSPoint corner =
      context->alignedToPixels({(space.width - size.width) / 2, (space.height - size.height) / 2});
  image_->drawInRect({corner, size});
}
