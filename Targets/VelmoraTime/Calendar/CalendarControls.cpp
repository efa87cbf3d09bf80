#include "Targets/VelmoraTime/Calendar/CalendarControls.h"

#include "Platform/AppKit/Drawing/NSGradient.h"

void CalendarHeaderView_Time::drawRect(NSRect) {
  // Of the pictures behind it. White has a contrast of 4.6 at the upper edge, and more below.
  constexpr NSColor Upper =
      NSColor::colorWithDeviceRed(0x45 / 255.0, 0x76 / 255.0, 0xBB / 255.0, 1);
  constexpr NSColor Lower =
      NSColor::colorWithDeviceRed(0x2D / 255.0, 0x57 / 255.0, 0x98 / 255.0, 1);
  NSGradient(Upper, Lower).drawInRect(bounds(), -90);
}
