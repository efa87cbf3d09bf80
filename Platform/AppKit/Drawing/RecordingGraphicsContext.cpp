#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"

#include <algorithm>
#include <cmath>

#include "Platform/AppKit/Drawing/NSGradient.h"
#include "Platform/AppKit/Drawing/NSImage.h"

NSRect RecordingGraphicsContext::boxAround(NSPoint corner, NSPoint opposite) const {
  const NSPoint a = transform().transformPoint(corner);
  const NSPoint b = transform().transformPoint(opposite);
  return {{std::min(a.x, b.x), std::min(a.y, b.y)}, {std::abs(a.x - b.x), std::abs(a.y - b.y)}};
}

void RecordingGraphicsContext::record(const NSBezierPath& path, const NSColor& color) {
  bool isFirst = true;
  NSPoint low;
  NSPoint high;
  for (const auto& element : path.elements()) {
    if (element.kind == NSBezierPath::Element::Kind::Close) continue;
    const NSPoint point = element.point;
    low = isFirst ? point : NSPoint{std::min(low.x, point.x), std::min(low.y, point.y)};
    high = isFirst ? point : NSPoint{std::max(high.x, point.x), std::max(high.y, point.y)};
    isFirst = false;
  }
  records_.push_back({DrawingRecord::Kind::Path, "", boxAround(low, high), color});
}

void RecordingGraphicsContext::paintPath(const NSBezierPath& path) { record(path, fillColor()); }

void RecordingGraphicsContext::paintGradient(const NSBezierPath& path, const NSGradient& gradient,
                                             NSPoint, NSPoint) {
  record(path, gradient.startingColor());
}

void RecordingGraphicsContext::paintText(std::string_view text, NSPoint point,
                                         const NSTextAttributes& attributes) {
  records_.push_back({DrawingRecord::Kind::Text,
                      std::string(text),
                      {transform().transformPoint(point), {}},
                      attributes.foregroundColor,
                      1,
                      attributes.shadow.has_value()});
}

void RecordingGraphicsContext::paintImage(const NSImage& image, NSRect target, NSRect,
                                          double fraction) {
  const NSPoint end{target.origin.x + target.size.width, target.origin.y + target.size.height};
  records_.push_back({DrawingRecord::Kind::Image, image.name(), boxAround(target.origin, end),
                      NSColor::blackColor(), fraction});
}

std::string RecordingGraphicsContext::joinedText() const {
  std::string text;
  for (const auto& record : records_) {
    if (record.kind == DrawingRecord::Kind::Text) text += record.name;
  }
  return text;
}
