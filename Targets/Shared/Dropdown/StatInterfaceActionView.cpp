#include "Targets/Shared/Dropdown/StatInterfaceActionView.h"

#include <cmath>

#include "Platform/AppKit/Views/NSTextField.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"

namespace {

constexpr double SideMargin = 15;
constexpr double LineHeight = 15;
constexpr double TextSize = 12;

}  // namespace

void StatInterfaceActionView_Time::setTitle(std::string_view title) {
  title_ = title;
  setNeedsDisplay(true);
}

void StatInterfaceActionView_Time::setBold(bool bold) {
  bold_ = bold;
  setNeedsDisplay(true);
}

void StatInterfaceActionView_Time::setActs(bool acts) {
  acts_ = acts;
  setNeedsDisplay(true);
}

void StatInterfaceActionView_Time::drawRect(NSRect rect) {
  StatInterfaceView_Time::drawRect(rect);
  NSTextAttributes attributes;
  attributes.font = bold_ && !dropdownIsDark() ? zevBoldFont(TextSize) : zevNormalFont(TextSize);
  attributes.foregroundColor =
      acts_ && menuItemHighlighted() ? NSColor::whiteColor() : dropdownActionTextColor(acts_);
  const NSSize size = bounds().size;
  const NSRect line = NSMakeRect(SideMargin, std::floor((size.height - LineHeight) / 2),
                                 size.width - 2 * SideMargin, LineHeight);
  NSTextFieldCell::drawLine(title_, line, attributes, userInterfaceLayoutDirection());
}
