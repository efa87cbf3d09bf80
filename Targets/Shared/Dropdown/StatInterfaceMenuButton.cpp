#include "Targets/Shared/Dropdown/StatInterfaceMenuButton.h"

#include "Targets/Shared/Dropdown/DropdownTheme.h"

StatInterfaceMenuButton_Time::StatInterfaceMenuButton_Time(NSRect frame) : WENButton_Time(frame) {
  constexpr double TextLeft = 10;
  setTextOffset({TextLeft, 0});
}

void StatInterfaceMenuButton_Time::setMenuItemHighlighted(bool highlighted) {
  if (highlighted == menuItemHighlighted_) return;
  menuItemHighlighted_ = highlighted;
  setNeedsDisplay(true);
}

NSFont StatInterfaceMenuButton_Time::font() const {
  constexpr double TextSize = 12;
  return zevNormalFont(TextSize);
}

NSColor StatInterfaceMenuButton_Time::textColor() const {
  return menuItemHighlighted_ ? NSColor::whiteColor() : dropdownLabelColor();
}

std::optional<NSColor> StatInterfaceMenuButton_Time::alternateTextColor() const {
  return tapaction() ? NSColor::whiteColor() : textColor();
}

void StatInterfaceMenuButton_Time::mouseDown(const NSEvent& event) {
  WENButton_Time::mouseDown(event);
  lastEventNumber_ = event.eventNumber;
}

void StatInterfaceMenuButton_Time::mouseUp(const NSEvent& event) {
  if (endPress() && event.eventNumber == lastEventNumber_) act();
}
