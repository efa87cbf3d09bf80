#include "Platform/AppKit/Text/NSStringDrawing.h"

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/AppKit/Text/TextLine_p.h"

void drawAtPointWithAttributes(std::string_view text, NSPoint point,
                               const NSTextAttributes& attributes) {
  if (auto* context = NSGraphicsContext::currentContext()) {
    context->drawText(text, point, attributes);
  }
}

NSSize sizeWithAttributes(std::string_view text, const NSTextAttributes& attributes) {
  return {textLineWidth(text, attributes.font),
          attributes.font.ascender() + attributes.font.descender()};
}
