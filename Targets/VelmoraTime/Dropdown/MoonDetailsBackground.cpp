#include "Targets/VelmoraTime/Dropdown/MoonDetailsBackground.h"

#include "Platform/AppKit/Drawing/NSImage.h"
#include "Targets/Shared/ZEVImageCache.h"

void MoonDetailsBackground_Time::drawRect(NSRect) {
  if (const auto sky = ZEVImageNamed("stats-calendar-moon-header")) sky->drawAtPoint({0, 0});
}
