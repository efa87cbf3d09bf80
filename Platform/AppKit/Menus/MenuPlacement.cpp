#include "Platform/AppKit/Menus/MenuPlacement.h"

#include <algorithm>

namespace {

double right(const NSRect& rect) { return rect.origin.x + rect.size.width; }
double bottom(const NSRect& rect) { return rect.origin.y + rect.size.height; }

/// The start of a length within a range; what is longer begins with the range.
double keptWithin(double start, double length, double from, double to) {
  return std::max(from, std::min(start, to - length));
}

}  // namespace

NSRect menuFrameBelow(NSRect slot, NSSize size, NSRect area,
                      NSUserInterfaceLayoutDirection direction) {
  const bool isFromRight = direction == NSUserInterfaceLayoutDirection::RightToLeft;
  const double x = isFromRight ? right(slot) - size.width : slot.origin.x;
  const double y = std::max(bottom(slot), area.origin.y);
  const double height = std::min(size.height, std::max(0.0, bottom(area) - y));
  return NSMakeRect(keptWithin(x, size.width, area.origin.x, right(area)), y, size.width, height);
}

SubmenuPlace submenuPlace(NSRect menu, NSRect row, NSSize size, NSRect area, bool prefersLeft,
                          double firstRow) {
  const double roomLeft = menu.origin.x - area.origin.x;
  const double roomRight = right(area) - right(menu);
  const bool fitsLeft = roomLeft >= size.width;
  const bool fitsRight = roomRight >= size.width;
  bool isLeft = prefersLeft;
  if (isLeft ? !fitsLeft : !fitsRight) {
    // Where it fits on neither side it covers as little as it can.
    isLeft = fitsLeft != fitsRight ? fitsLeft : roomLeft > roomRight;
  }
  const double x = isLeft ? menu.origin.x - size.width : right(menu);
  const double height = std::min(size.height, area.size.height);
  const double y = keptWithin(row.origin.y - firstRow, height, area.origin.y, bottom(area));
  return {NSMakeRect(keptWithin(x, size.width, area.origin.x, right(area)), y, size.width, height),
          isLeft};
}

bool isHeadingTo(NSRect submenu, NSPoint from, NSPoint to) {
  const bool isLeft = submenu.origin.x < from.x;
  const double edge = isLeft ? right(submenu) : submenu.origin.x;
  const double distance = edge - from.x;
  const double step = to.x - from.x;
  // Sideways, and towards it; a step back or along the row leads elsewhere.
  if (step == 0 || (step > 0) != (distance > 0)) return false;
  const double share = step / distance;
  if (share >= 1) return true;
  // The wedge is a little wider than the edge, for hands that are not rulers.
  constexpr double Slack = 8;
  const double top = from.y + (submenu.origin.y - Slack - from.y) * share;
  const double low = from.y + (bottom(submenu) + Slack - from.y) * share;
  return to.y >= top && to.y <= low;
}
