#include "Platform/AppKit/Drawing/NSBezierPath.h"

NSBezierPath NSBezierPath::bezierPathWithRect(NSRect rect) {
  const double right = rect.origin.x + rect.size.width;
  const double top = rect.origin.y + rect.size.height;
  NSBezierPath path;
  path.moveToPoint(rect.origin);
  path.lineToPoint({right, rect.origin.y});
  path.lineToPoint({right, top});
  path.lineToPoint({rect.origin.x, top});
  path.closePath();
  return path;
}

void NSBezierPath::moveToPoint(NSPoint point) {
  elements_.push_back({Element::Kind::MoveTo, point, {}, {}});
}

void NSBezierPath::lineToPoint(NSPoint point) {
  elements_.push_back({Element::Kind::LineTo, point, {}, {}});
}

void NSBezierPath::curveToPoint(NSPoint point, NSPoint controlPoint1, NSPoint controlPoint2) {
  elements_.push_back({Element::Kind::CurveTo, point, controlPoint1, controlPoint2});
}

void NSBezierPath::closePath() { elements_.push_back({Element::Kind::Close, {}, {}, {}}); }
