#include "Targets/Shared/Dropdown/HeaderView.h"

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Views/NSTextField.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"

namespace {

// From the lower edge up.
constexpr double BandHeight = 20;
constexpr double TitleBottom = 5;
constexpr double TitleHeight = 15;

constexpr double TitleSize = 10;
constexpr double HighlightedTitleSize = 12;

}  // namespace

void HeaderView_Time::setTitle(std::string_view title) {
  title_ = title;
  setNeedsDisplay(true);
}

void HeaderView_Time::setType(int64_t type) {
  type_ = type;
  setNeedsDisplay(true);
}

void HeaderView_Time::drawRect(NSRect) {
  const double width = bounds().size.width;
  if (type_ == Highlighted) {
    dropdownHighlightGradient().drawInRect(bounds(), -90);
    drawTitle(NSMakeRect(0, 0, width, BandHeight), zevNormalFont(HighlightedTitleSize),
              NSColor::whiteColor());
    return;
  }
  dropdownBackgroundColor().setFill();
  NSBezierPath::bezierPathWithRect(bounds()).fill();
  dropdownHeaderGradient().drawInRect(NSMakeRect(0, 0, width, BandHeight), 90);
  dropdownHeaderRuleColor().setFill();
  NSBezierPath::bezierPathWithRect(NSMakeRect(0, 0, width, 1)).fill();
  drawTitle(NSMakeRect(0, TitleBottom, width, TitleHeight), zevMediumFont(TitleSize),
            dropdownHeaderTextColor());
}

void HeaderView_Time::drawTitle(NSRect rect, const NSFont& font, const NSColor& color) const {
  NSTextAttributes attributes;
  attributes.font = font;
  attributes.foregroundColor = color;
  attributes.alignment = NSTextAlignment::Center;
  NSTextFieldCell::drawLine(title_, rect, attributes, userInterfaceLayoutDirection());
}
