#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"

#include <utility>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Settings/CFPreferences.h"

void NSMenuBarSlot::load(NSMenuExtraBundle bundle) {
  bundle_ = std::move(bundle);
  makeExtra();
  showOnceStarted();
}

void NSMenuBarSlot::makeExtra() {
  startingLength_ = 0;
  extra_ = bundle_->makeExtra(*this);
}

void NSMenuBarSlot::showOnceStarted() {
  // Behind the extra's own start, which waits for the same pass.
  performSelectorAfterDelay("showOnceStarted", 0, [this] {
    // An item tells its width while it draws: this drawing is for the width alone.
    RecordingGraphicsContext measuring;
    draw(measuring);
    const double length = startingLength_.value_or(length_);
    startingLength_.reset();
    if (length != length_) lengthChanged(length);
    needsDisplay();
  });
}

void NSMenuBarSlot::unload() {
  setMenuDown(false);
  cancelPreviousPerformRequests("reload");
  cancelPreviousPerformRequests("showOnceStarted");
  // A menu that stayed open would show a time that stands still.
  if (onMenuShouldClose) onMenuShouldClose();
  // Dropped first: what it still asks for while it ends must not have it drawn.
  if (const auto extra = std::exchange(extra_, nullptr)) {
    NSRunLoop::guarded([&] { extra->willUnload(); });
  }
}

void NSMenuBarSlot::reloadExtra() {
  if (!bundle_) return;
  // On another pass: the extra asks from within its own work.
  cancelPreviousPerformRequests("reload");
  performSelectorAfterDelay("reload", 0, [this] {
    startingLength_ = 0;
    unload();
    NSRunLoop::guarded([this] { makeExtra(); });
    showOnceStarted();
  });
}

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
  if (startingLength_) {
    startingLength_ = length;
    return;
  }
  length_ = length;
  if (onLengthChanged) onLengthChanged();
}

void NSMenuBarSlot::needsDisplay() {
  if (onNeedsDisplay && !startingLength_) onNeedsDisplay();
}

NSColor menuBarBackgroundColor(bool isDark) {
  return isDark ? NSColor::colorWithDeviceRed(0.145, 0.149, 0.161, 1)
                : NSColor::colorWithDeviceRed(0.937, 0.941, 0.949, 1);
}

bool isMenuBarDark() {
  const PropertyList style = CFPreferencesCopyAppValue("AppleInterfaceStyle", ".GlobalPreferences");
  return style.string() != nullptr && *style.string() == "Dark";
}
