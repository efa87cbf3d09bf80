#include "Targets/VelmoraTime/Calendar/CalendarControls.h"

#include <utility>

#include "Platform/AppKit/Drawing/NSGradient.h"
#include "Targets/Shared/ZEVImageCache.h"

void CalendarHeaderView_Time::drawRect(NSRect) {
  // Of the pictures behind it. White has a contrast of 4.6 at the upper edge, and more below.
  constexpr NSColor Upper =
      NSColor::colorWithDeviceRed(0x45 / 255.0, 0x76 / 255.0, 0xBB / 255.0, 1);
  constexpr NSColor Lower =
      NSColor::colorWithDeviceRed(0x2D / 255.0, 0x57 / 255.0, 0x98 / 255.0, 1);
  NSGradient(Upper, Lower).drawInRect(bounds(), -90);
}

void CalendarButton_Time::drawRect(NSRect rect) {
  if (!std::exchange(hasPictures_, true)) {
    setImage(ZEVImageNamed(pictures_.usual));
    setAlternateImage(ZEVImageNamed(pictures_.pressed));
  }
  WENButton_Time::drawRect(rect);
}

void CalendarShadowView_Time::drawRect(NSRect) {
  if (const auto image = ZEVImageNamed("stats-calendar-shadow")) image->drawAtPoint({0, 0});
}
