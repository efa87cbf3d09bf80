#include "Platform/AppKit/Views/NSTextField.h"

#include <algorithm>
#include <utility>

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"

namespace {

/// Between a field's frame and its text, at either side.
constexpr double Inset = 2;

/// The height that frames of fields are made for, by the size of the font.
constexpr double LineHeight = 1.25;

}  // namespace

void NSTextFieldCell::setStringValue(std::string_view text) {
  text_ = text;
  fitted_.reset();
}

void NSTextFieldCell::setFont(const NSFont& font) {
  attributes_.font = font;
  fitted_.reset();
}

void NSTextFieldCell::drawInterior(NSRect frame, NSUserInterfaceLayoutDirection direction) {
  if (NSGraphicsContext::currentContext() == nullptr || text_.empty()) return;
  const NSRect line = NSInsetRect(frame, Inset, 0);
  if (!fitted_ || fitted_->width != line.size.width) {
    fitted_ = {line.size.width, truncatedToWidth(text_, line.size.width, attributes_)};
  }
  drawLine(fitted_->text, line, attributes_, direction);
}

void NSTextFieldCell::drawLine(std::string_view text, NSRect line, NSTextAttributes attributes,
                               NSUserInterfaceLayoutDirection direction) {
  const NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (context == nullptr) return;
  if (direction == NSUserInterfaceLayoutDirection::RightToLeft &&
      attributes.alignment != NSTextAlignment::Center) {
    attributes.alignment = attributes.alignment == NSTextAlignment::Left ? NSTextAlignment::Right
                                                                         : NSTextAlignment::Left;
  }
  // Frames know nothing of the machine's fonts: a line box of another height is centred where
  // theirs would have been.
  const NSFont& font = attributes.font;
  const double slot = std::min(line.size.height, font.pointSize() * LineHeight);
  const double drop = (slot - font.ascender() - font.descender()) / 2;
  line.origin.y += context->isFlipped() ? drop : -drop;
  drawInRectWithAttributes(text, line, attributes);
}

void NSTextField::setStringValue(std::string_view text) {
  if (text == stringValue()) return;
  cell_->setStringValue(text);
  setNeedsDisplay(true);
}

void NSTextField::setFont(const NSFont& font) {
  if (font == this->font()) return;
  cell_->setFont(font);
  setNeedsDisplay(true);
}

void NSTextField::setTextColor(const NSColor& color) {
  if (color == textColor()) return;
  cell_->setTextColor(color);
  setNeedsDisplay(true);
}

void NSTextField::setAlignment(NSTextAlignment alignment) {
  if (alignment == this->alignment()) return;
  cell_->setAlignment(alignment);
  setNeedsDisplay(true);
}

double NSTextField::textWidth() const {
  return sizeWithAttributes(stringValue(), cell_->attributes()).width;
}

void NSTextField::drawRect(NSRect) {
  cell_->drawInterior(bounds(), userInterfaceLayoutDirection());
}
