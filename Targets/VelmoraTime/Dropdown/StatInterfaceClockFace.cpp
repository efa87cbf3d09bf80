#include "Targets/VelmoraTime/Dropdown/StatInterfaceClockFace.h"

#include <numbers>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Targets/Shared/ZEVImageCache.h"

namespace {

constexpr NSRect Dial = {{0, 0}, {32, 32}};
constexpr NSPoint Centre = {16, 16};

// How far the tips are from the upper edge.
constexpr double MinuteTip = 5;
constexpr double HourTip = 8;

/// Of the shadow, on the screen: y downwards, as in the view.
constexpr NSPoint ShadowOffset = {0.1, 1.1};

/// A blade from the centre up, round at its foot.
NSBezierPath handWithTip(double tip) {
  NSBezierPath path;
  path.moveToPoint({16, 17});
  path.curveToPoint({15, 16}, {15.45, 17}, {15, 16.55});
  path.lineToPoint({15.5, tip});
  path.lineToPoint({16.5, tip});
  path.lineToPoint({17, 16});
  path.curveToPoint({16, 17}, {17, 16.55}, {16.55, 17});
  path.closePath();
  return path;
}

void fillTurned(NSGraphicsContext& context, const NSBezierPath& path, double degrees) {
  const NSSavedGraphicsState saved(context);
  context.translateBy(Centre);
  context.rotateByRadians(degrees * std::numbers::pi / 180);
  context.translateBy({-Centre.x, -Centre.y});
  path.fill();
}

void drawHand(NSGraphicsContext& context, double tip, double degrees) {
  const NSBezierPath path = handWithTip(tip);
  {
    // Moved before it is turned: the shadow falls downwards from every hand.
    const NSSavedGraphicsState saved(context);
    context.translateBy(ShadowOffset);
    NSColor::colorWithDeviceWhite(0, 0.3).setFill();
    fillTurned(context, path, degrees);
  }
  NSColor::colorWithDeviceWhite(1, 1).setFill();
  fillTurned(context, path, degrees);
}

void drawPicture(std::string_view name, double alpha) {
  if (const auto picture = ZEVImageNamed(name)) picture->drawAtPoint({0, 0}, alpha);
}

}  // namespace

void StatInterfaceClockFace_Time::setReading(const Reading& reading) {
  const bool looksTheSame = reading.day == reading_.day &&
                            reading.lightPercentage == reading_.lightPercentage &&
                            reading.hour == reading_.hour && reading.minute == reading_.minute;
  reading_ = reading;
  if (!looksTheSame) setNeedsDisplay(true);
}

void StatInterfaceClockFace_Time::drawRect(NSRect) {
  auto* context = NSGraphicsContext::currentContext();
  if (context == nullptr) return;
  {
    const NSSavedGraphicsState saved(*context);
    if (const auto mask = ZEVImageNamed("stats-calendar-clock-mask")) {
      context->clipToMask(*mask, Dial);
    }
    drawDial();
  }
  const auto minute = static_cast<double>(reading_.minute);
  drawHand(*context, MinuteTip, minute * 6);
  drawHand(*context, HourTip, static_cast<double>(reading_.hour) * 30 + minute * 0.5);
}

void StatInterfaceClockFace_Time::drawDial() const {
  const bool isAllDark = !reading_.day && reading_.lightPercentage >= 1;
  if (!isAllDark) drawPicture("stats-calendar-clock-light", 1);
  if (!reading_.day) drawPicture("stats-calendar-clock-dark", reading_.lightPercentage);
}
