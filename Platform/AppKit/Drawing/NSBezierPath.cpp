#include "Platform/AppKit/Drawing/NSBezierPath.h"

#include <algorithm>

namespace {

/// The handles of the cubic curve nearest to a quarter of a circle of radius 1: 4/3 (√2 - 1).
constexpr double Handle = 0.5522847498307936;

}  // namespace

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

NSBezierPath NSBezierPath::bezierPathWithOvalInRect(NSRect rect) {
  const double width = rect.size.width / 2;
  const double height = rect.size.height / 2;
  const NSPoint centre{rect.origin.x + width, rect.origin.y + height};
  const auto at = [&](double x, double y) {
    return NSPoint{centre.x + x * width, centre.y + y * height};
  };
  NSBezierPath path;
  path.moveToPoint(at(1, 0));
  path.curveToPoint(at(0, 1), at(1, Handle), at(Handle, 1));
  path.curveToPoint(at(-1, 0), at(-Handle, 1), at(-1, Handle));
  path.curveToPoint(at(0, -1), at(-1, -Handle), at(-Handle, -1));
  path.curveToPoint(at(1, 0), at(Handle, -1), at(1, -Handle));
  path.closePath();
  return path;
}

NSBezierPath NSBezierPath::bezierPathWithRoundedRect(NSRect rect, double radius) {
  radius = std::min({radius, rect.size.width / 2, rect.size.height / 2});
  const double handle = radius * (1 - Handle);
  const double left = rect.origin.x;
  const double bottom = rect.origin.y;
  const double right = left + rect.size.width;
  const double top = bottom + rect.size.height;
  NSBezierPath path;
  path.moveToPoint({left + radius, bottom});
  path.lineToPoint({right - radius, bottom});
  path.curveToPoint({right, bottom + radius}, {right - handle, bottom}, {right, bottom + handle});
  path.lineToPoint({right, top - radius});
  path.curveToPoint({right - radius, top}, {right, top - handle}, {right - handle, top});
  path.lineToPoint({left + radius, top});
  path.curveToPoint({left, top - radius}, {left + handle, top}, {left, top - handle});
  path.lineToPoint({left, bottom + radius});
  path.curveToPoint({left + radius, bottom}, {left, bottom + handle}, {left + handle, bottom});
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

void NSBezierPath::appendBezierPath(const NSBezierPath& path) {
  elements_.insert(elements_.end(), path.elements_.begin(), path.elements_.end());
}

void NSBezierPath::closePath() { elements_.push_back({Element::Kind::Close, {}, {}, {}}); }

NSRect NSBezierPath::bounds() const {
  if (elements_.empty()) return NSZeroRect;
  NSPoint low = elements_.front().point;
  NSPoint high = low;
  const auto reach = [&](NSPoint point) {
    low = {std::min(low.x, point.x), std::min(low.y, point.y)};
    high = {std::max(high.x, point.x), std::max(high.y, point.y)};
  };
  for (const Element& element : elements_) {
    if (element.kind == Element::Kind::Close) continue;
    reach(element.point);
    if (element.kind != Element::Kind::CurveTo) continue;
    reach(element.controlPoint1);
    reach(element.controlPoint2);
  }
  return NSMakeRect(low.x, low.y, high.x - low.x, high.y - low.y);
}
