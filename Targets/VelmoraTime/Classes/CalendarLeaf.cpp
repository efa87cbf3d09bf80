#include "Targets/VelmoraTime/Classes/CalendarLeaf.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Targets/Shared/ZEVImageCache.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

namespace {

constexpr std::string_view TransparentType = "___ICON__TRANSPARENT___";

/// The pictures' upper edge.
constexpr double LeafTop = 20;

struct HeadColor {
  std::string_view type;
  NSColor color;
};

constexpr HeadColor HeadColors[] = {
    {"___ICON__RED___", NSColor::colorWithDeviceRed(1.0, 0.254, 0.254, 1.0)},
    {"___ICON__BLUE___", NSColor::colorWithDeviceRed(0.098, 0.58, 0.941, 1.0)},
    {"___ICON__GEAPHITE___", NSColor::colorWithDeviceRed(0.568, 0.639, 0.768, 1.0)},
    {"___ICON__GREEN___", NSColor::colorWithDeviceRed(0.513, 0.8, 0.113, 1.0)},
    {"___ICON__ORANGE___", NSColor::colorWithDeviceRed(1.0, 0.462, 0.168, 1.0)},
    {"___ICON__PINK___", NSColor::colorWithDeviceRed(1.0, 0.305, 1.0, 1.0)},
    {"___ICON__BLACK___", NSColor::colorWithDeviceWhite(0.2, 1.0)},
};

/// The head of the leaf: 15 wide, 4 high, with two rounded upper corners.
NSBezierPath headPath(NSPoint point) {
  const auto at = [point](double x, double y) { return NSPoint{point.x + x, point.y + y}; };
  NSBezierPath path;
  path.moveToPoint(at(16, 15));
  path.lineToPoint(at(1, 15));
  path.lineToPoint(at(1, 17.5));
  path.curveToPoint(at(2.5, 19), at(1, 18.33), at(1.67, 19));
  path.lineToPoint(at(14.5, 19));
  path.curveToPoint(at(16, 17.5), at(15.33, 19), at(16, 18.33));
  path.lineToPoint(at(16, 15));
  path.closePath();
  return path;
}

void drawNamed(const std::string& name, NSPoint point) {
  if (const auto image = ZEVImageNamed(name)) image->drawAtPoint(point);
}

}  // namespace

int64_t calendarLeafDay(const NSDate& date) {
  return ZEVDateAndTimeUtilities::sharedUtilities().currentCalendar().ordinalityOfUnit(
      NSCalendarUnitDay, NSCalendarUnitMonth, date);
}

void drawCalendarLeaf(NSPoint point, std::string_view type, int64_t day, bool white) {
  auto* context = NSGraphicsContext::currentContext();
  if (context == nullptr) return;
  const bool isTransparent = type == TransparentType;
  const std::string number = "menubar-date-" + std::to_string(day);
  const double x = std::round(point.x);

  // Pictures go to whole pixels by themselves; at a scale between, the head has to go with them.
  const NSSavedGraphicsState saved(*context);
  const NSPoint corner{x, point.y + LeafTop};
  const NSPoint aligned = context->alignedToPixels(corner);
  context->translateBy({aligned.x - corner.x, aligned.y - corner.y});
  if (isTransparent) {
    drawNamed(white ? "menubar-date-transparent-white" : "menubar-date-transparent",
              {x, point.y + 2});
    drawNamed(white ? number + "-white" : number, {x, point.y + 3});
    return;
  }
  drawNamed("menubar-date", {x, point.y + 2});
  const auto head =
      std::find_if(std::begin(HeadColors), std::end(HeadColors),
                   [&](const HeadColor& candidate) { return candidate.type == type; });
  if (head != std::end(HeadColors)) {
    head->color.setFill();
    headPath(point).fill();
  }
  drawNamed(number, {x, point.y + 2});
}
