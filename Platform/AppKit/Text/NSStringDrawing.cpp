#include "Platform/AppKit/Text/NSStringDrawing.h"

#include "Platform/AppKit/Text/TextLine_p.h"

NSSize sizeWithAttributes(std::string_view text, const NSTextAttributes& attributes) {
  return {textLineWidth(text, attributes.font),
          attributes.font.ascender() + attributes.font.descender()};
}
