#include "Shared/WENButton.h"

#include <cmath>
#include <utility>

#include "Platform/AppKit/Views/NSTextField.h"
#include "Shared/Extensions/WENImage.h"

namespace {

constexpr double DisabledOpacity = 0.5;

}  // namespace

WENButton_Time::WENButton_Time(NSRect frame) : NSView(frame) {
  addTrackingArea(std::make_shared<NSTrackingArea>());
}

// --- What it looks like -------------------------------------------------------------------------

void WENButton_Time::setTitle(std::string_view title) {
  title_ = title;
  setNeedsDisplay(true);
}

void WENButton_Time::setFont(const NSFont& font) {
  font_ = font;
  setNeedsDisplay(true);
}

void WENButton_Time::setTextColor(const NSColor& color) {
  textColor_ = color;
  setNeedsDisplay(true);
}

void WENButton_Time::setAlignment(NSTextAlignment alignment) {
  alignment_ = alignment;
  setNeedsDisplay(true);
}

void WENButton_Time::setTextMargins(int64_t left, int64_t right) {
  leftMargin_ = left;
  rightMargin_ = right;
  setNeedsDisplay(true);
}

void WENButton_Time::setTextOffset(NSPoint offset) {
  textOffset_ = offset;
  setNeedsDisplay(true);
}

void WENButton_Time::setUseFullHeight(bool fullHeight) {
  useFullHeight_ = fullHeight;
  setNeedsDisplay(true);
}

void WENButton_Time::setImage(std::shared_ptr<NSImage> image) {
  image_ = std::move(image);
  setNeedsDisplay(true);
}

void WENButton_Time::setAlternateImage(std::shared_ptr<NSImage> image) {
  alternateImage_ = std::move(image);
  setNeedsDisplay(true);
}

void WENButton_Time::setSelectedImage(std::shared_ptr<NSImage> image) {
  selectedImage_ = std::move(image);
  setNeedsDisplay(true);
}

void WENButton_Time::setEnabled(bool enabled) {
  enabled_ = enabled;
  setNeedsDisplay(true);
}

void WENButton_Time::setSelected(bool selected) {
  selected_ = selected;
  setNeedsDisplay(true);
}

// --- Drawing ------------------------------------------------------------------------------------

void WENButton_Time::drawRect(NSRect) {
  if (stretchable_) {
    drawStretchedImage();
  } else {
    drawImage();
  }
  if (!title_.empty()) drawTitle(bounds());
}

void WENButton_Time::drawImage() const {
  const auto draw = [this](const std::shared_ptr<NSImage>& image, double alpha) {
    if (image) image->drawInRect(bounds(), alpha);
  };
  if (!enabled_) {
    draw(image_, DisabledOpacity);
  } else if (looksPressed()) {
    draw(alternateImage_ ? alternateImage_ : image_,
         alternateImage_ ? 1 : static_cast<double>(highlightedOpacity_));
  } else {
    draw(selected_ && selectedImage_ ? selectedImage_ : image_, 1);
  }
}

void WENButton_Time::drawStretchedImage() const {
  const std::shared_ptr<NSImage>& source = looksPressed()                ? alternateImage_
                                           : selected_ && selectedImage_ ? selectedImage_
                                                                         : image_;
  if (!source) return;
  const auto cap = static_cast<double>(leftSize_);
  WENImage_Time(*source, ImagePartsLayout::Row, {0, cap, 0, cap})
      .drawInRect(bounds(), enabled_ ? 1 : DisabledOpacity);
}

void WENButton_Time::drawTitle(NSRect bounds) {
  NSTextAttributes attributes;
  attributes.font = font();
  attributes.alignment = alignment_;
  const auto pressedColor = isHeld() ? alternateTextColor() : std::nullopt;
  attributes.foregroundColor = pressedColor ? *pressedColor : textColor();
  const double height = std::ceil(attributes.font.ascender() + attributes.font.descender());
  NSRect line =
      NSMakeRect(static_cast<double>(leftMargin_), std::ceil((bounds.size.height - height) / 2),
                 bounds.size.width - static_cast<double>(leftMargin_ + rightMargin_), height);
  line.origin.x += textOffset_.x;
  line.origin.y += textOffset_.y;
  if (useFullHeight()) {
    line.origin.y = 0;
    line.size.height = bounds.size.height;
  }
  const auto direction = userInterfaceLayoutDirection();
  if (direction == NSUserInterfaceLayoutDirection::RightToLeft) {
    line.origin.x = bounds.size.width - line.origin.x - line.size.width;
  }
  NSTextFieldCell::drawLine(title_, line, attributes, direction);
}

// --- Input --------------------------------------------------------------------------------------

void WENButton_Time::mouseDown(const NSEvent&) {
  isHighlighted_ = true;
  setNeedsDisplay(true);
}

bool WENButton_Time::endPress() {
  isHighlighted_ = false;
  setNeedsDisplay(true);
  return isMouseInView_;
}

void WENButton_Time::mouseUp(const NSEvent&) {
  if (endPress()) act();
}

void WENButton_Time::act() const {
  if (!enabled_ || !tapaction_) return;
  // A copy: the action may give the button another one.
  const WENTargetItem_Time action = *tapaction_;
  action.performAction();
}

void WENButton_Time::mouseEntered(const NSEvent&) {
  isMouseInView_ = true;
  if (isHighlighted_) setNeedsDisplay(true);
}

void WENButton_Time::mouseExited(const NSEvent&) {
  isMouseInView_ = false;
  if (isHighlighted_) setNeedsDisplay(true);
}

bool WENButton_Time::performKeyEquivalent(const NSEvent& event) {
  for (const NSView* view = this; view != nullptr; view = view->superview()) {
    if (view->isHidden()) return false;
  }
  if (window() == nullptr || keyEquivilentCode_ <= 0 || event.type != NSEventType::KeyDown ||
      event.keyCode != keyEquivilentCode_) {
    return false;
  }
  act();
  return true;
}

bool WENButton_Time::accessibilityPerformPress() {
  if (!enabled_ || !tapaction_) return false;
  act();
  return true;
}
