#include "Platform/SystemUIPlugin/NSMenuExtra.h"

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSColor.h"

void NSMenuExtra::init(NSMenuExtraSlot& slot, const NSBundle& bundle) {
  slot_ = &slot;
  initWithBundle(bundle);
}

void NSMenuExtra::initWithBundle(const NSBundle&) { setView(std::make_shared<NSView>()); }

void NSMenuExtra::setView(std::shared_ptr<NSView> view) {
  view_ = view ? NSShownView(std::move(view), *this) : NSShownView();
}

void NSMenuExtra::setLength(double length) {
  length_ = length;
  if (slot_ != nullptr) slot_->lengthChanged(length);
}

void NSMenuExtra::reload() {
  if (slot_ != nullptr) slot_->reloadExtra();
}

void NSMenuExtra::drawMenuBackground(bool selected) {
  if (!selected || !view()) return;
  NSColor::selectedMenuItemColor().setFill();
  const double margin = NSMenuExtraSlot::SelectionMargin;
  const NSSize size = view()->bounds().size;
  NSBezierPath::bezierPathWithRect(
      NSMakeRect(-margin, -margin, size.width + 2 * margin, size.height + 2 * margin))
      .fill();
}

void NSMenuExtra::viewNeedsDisplay(NSRect) {
  if (slot_ != nullptr) slot_->needsDisplay();
}
