#include "Platform/QuartzCore/CALayer.h"

#include "Platform/QuartzCore/CAShapeLayer.h"

void CALayer::renderInContext(NSGraphicsContext& context) const {
  const NSSavedGraphicsState saved(context);
  context.translateBy(frame_.origin);
  if (mask_) {
    const auto coverage = mask_->coverage();
    if (!coverage) return;
    context.clipToMask(*coverage, bounds());
  }
  drawInContext(context);
  for (const auto& layer : sublayers_)
    layer->renderInContext(context);
}

void CALayer::drawInContext(NSGraphicsContext& context) const {
  if (contents_) context.drawImage(*contents_, bounds(), NSZeroRect, 1);
}
