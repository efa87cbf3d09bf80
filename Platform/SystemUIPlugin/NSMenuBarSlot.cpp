#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"

#include "Platform/Foundation/CFPreferences.h"
#include "Platform/Foundation/NSRunLoop.h"

void NSMenuBarSlot::setMenuDown(bool isDown) {
  if (isDown == isMenuDown_) return;
  isMenuDown_ = isDown;
  needsDisplay();
}

void NSMenuBarSlot::draw(NSGraphicsContext& context) const {
  if (!extra_ || !extra_->view()) return;
  // Kept through the pass: drawing may change the slot's width, and a host may act on that.
  const auto view = extra_->view();
  const NSCurrentGraphicsContext current(context);
  NSRunLoop::guarded([&] { view->drawRect(view->bounds()); });
}

void NSMenuBarSlot::lengthChanged(double length) {
  length_ = length;
  if (onLengthChanged) onLengthChanged();
}

void NSMenuBarSlot::needsDisplay() {
  if (onNeedsDisplay) onNeedsDisplay();
}

NSColor menuBarBackgroundColor(bool isDark) {
  return isDark ? NSColor::colorWithDeviceRed(0.145, 0.149, 0.161, 1)
                : NSColor::colorWithDeviceRed(0.937, 0.941, 0.949, 1);
}

bool menuBarIsDark() {
  const PropertyList style = CFPreferencesCopyAppValue("AppleInterfaceStyle", ".GlobalPreferences");
  return style.string() != nullptr && *style.string() == "Dark";
}
