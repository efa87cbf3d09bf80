#include "Platform/AppKit/Text/NSStringDrawing.h"

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/AppKit/Text/TextLine_p.h"
#include "Platform/Foundation/Text/NSString.h"

void drawAtPointWithAttributes(std::string_view text, NSPoint point,
                               const NSTextAttributes& attributes) {
  if (auto* context = NSGraphicsContext::currentContext()) {
    context->drawText(text, point, attributes);
  }
}

void drawInRectWithAttributes(std::string_view text, NSRect rect,
                              const NSTextAttributes& attributes) {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (context == nullptr) return;
  const std::string shown = truncatedToWidth(text, rect.size.width, attributes);
  double x = rect.origin.x;
  if (attributes.alignment != NSTextAlignment::Left) {
    // As wide as it is drawn, so that lines at the right edge end level with each other.
    const double rest = rect.size.width - context->drawnWidth(shown, attributes.font);
    x += attributes.alignment == NSTextAlignment::Right ? rest : rest / 2;
  }
  const double height = sizeWithAttributes(shown, attributes).height;
  const double y = context->isFlipped() ? rect.origin.y : rect.origin.y + rect.size.height - height;
  context->drawText(shown, context->alignedToPixels({x, y}), attributes);
}

std::string truncatedToWidth(std::string_view text, double width,
                             const NSTextAttributes& attributes) {
  constexpr double Tolerance = 0.01;  // A field that was measured to its text holds it.
  const auto fits = [&](std::string_view candidate) {
    return sizeWithAttributes(candidate, attributes).width <= width + Tolerance;
  };
  if (fits(text)) return std::string(text);
  size_t shorter = 0;
  size_t longer = stringLength(text);
  while (longer - shorter > 1) {
    const size_t middle = (shorter + longer) / 2;
    (fits(substringToIndex(text, middle) + "…") ? shorter : longer) = middle;
  }
  std::string kept = substringToIndex(text, shorter);
  while (kept.ends_with(' '))
    kept.pop_back();
  return kept + "…";
}

NSSize sizeWithAttributes(std::string_view text, const NSTextAttributes& attributes) {
  return {textLineWidth(text, attributes.font),
          attributes.font.ascender() + attributes.font.descender()};
}
