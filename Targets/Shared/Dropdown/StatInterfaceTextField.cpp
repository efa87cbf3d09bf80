#include "Targets/Shared/Dropdown/StatInterfaceTextField.h"

#include "Targets/Shared/Dropdown/DropdownTheme.h"

namespace {

constexpr double TextSize = 12;
constexpr double AlternateTextSize = 10;

}  // namespace

void StatInterfaceTextField_Time::updateColors() {
  resetColor();
  normalColor_ = defaultColor();
  // The theme may change under an open menu.
  if (menuItemHighlighted_) setTextColor(NSColor::whiteColor());
}

void StatInterfaceTextField_Time::setNormalTextColor(const NSColor& color) {
  normalColor_ = color;
  if (!menuItemHighlighted_) setTextColor(color);
}

void StatInterfaceTextField_Time::setMenuItemHighlighted(bool highlighted) {
  if (highlighted == menuItemHighlighted_) return;
  menuItemHighlighted_ = highlighted;
  setTextColor(highlighted ? NSColor::whiteColor() : normalColor_);
}

NSColor StatInterfaceTextFieldLabel_Time::defaultColor() const { return dropdownLabelColor(); }

void StatInterfaceTextFieldLabel_Time::resetColor() {
  setTextColor(defaultColor());
  setFont(alternateFont() ? zevMediumFont(AlternateTextSize) : zevNormalFont(TextSize));
}

NSColor StatInterfaceTextFieldValue_Time::defaultColor() const { return dropdownValueColor(); }

void StatInterfaceTextFieldValue_Time::resetColor() {
  setTextColor(defaultColor());
  if (alternateFont()) {
    setFont(zevMediumFont(AlternateTextSize));
  } else {
    setFont(isBold() && !dropdownIsDark() ? zevBoldFont(TextSize) : zevNormalFont(TextSize));
  }
}

NSColor StatInterfaceTextFieldHeader_Time::defaultColor() const { return dropdownValueColor(); }

void StatInterfaceTextFieldHeader_Time::resetColor() { setTextColor(defaultColor()); }
