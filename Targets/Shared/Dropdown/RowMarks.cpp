#include "Targets/Shared/Dropdown/RowMarks.h"

#include <array>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Targets/Shared/ZEVImageCache.h"

void TickView_Time::setOn(bool on) {
  isOn_ = on;
  setNeedsDisplay(true);
}

void TickView_Time::setMenuItemHighlighted(bool highlighted) {
  isHighlighted_ = highlighted;
  setNeedsDisplay(true);
}

void TickView_Time::drawRect(NSRect) {
  if (!isOn_) return;
  const auto tick = ZEVImageNamed(isHighlighted_ ? "stats-tick-white" : "stats-tick");
  if (tick) tick->drawAtPoint({0, 0});
}

void DotView_Time::setColor(const NSColor& color) {
  color_ = color;
  setNeedsDisplay(true);
}

void DotView_Time::drawRect(NSRect) {
  color_.setFill();
  NSBezierPath::bezierPathWithOvalInRect(NSMakeRect(0, 2, 7, 7)).fill();
  const auto overlay = ZEVImageNamed("menubar-diskactivity-dots-overlay.tiff");
  if (overlay) overlay->drawAtPoint({0, 0});
}

void DotImageView_Time::setTag(int64_t tag) {
  static constexpr std::array Names = {
      "stats-label-blue",   "stats-label-red",   "stats-label-lightgrey", "stats-label-darkgrey",
      "stats-label-purple", "stats-label-green", "stats-label-yellow",    "stats-label-orange",
  };
  NSImageView::setTag(tag);
  const auto index = static_cast<size_t>(tag) - 1;
  setImage(index < Names.size() ? ZEVImageNamed(Names[index]) : nullptr);
}
