#include "Platform/AppKit/RecordingGraphicsContext.h"

#include <algorithm>

#include "Platform/AppKit/NSImage.h"

NSPoint RecordingGraphicsContext::moved(NSPoint point) const {
  return {point.x + origins_.back().x, point.y + origins_.back().y};
}

void RecordingGraphicsContext::fillPath(const NSBezierPath& path) {
  bool isFirst = true;
  NSPoint low;
  NSPoint high;
  for (const auto& element : path.elements()) {
    if (element.kind == NSBezierPath::Element::Kind::Close) continue;
    const NSPoint point = moved(element.point);
    low = isFirst ? point : NSPoint{std::min(low.x, point.x), std::min(low.y, point.y)};
    high = isFirst ? point : NSPoint{std::max(high.x, point.x), std::max(high.y, point.y)};
    isFirst = false;
  }
  records_.push_back({DrawingRecord::Kind::Path, "",
                      NSMakeRect(low.x, low.y, high.x - low.x, high.y - low.y), fillColor()});
}

void RecordingGraphicsContext::drawText(std::string_view text, NSPoint point,
                                        const NSTextAttributes& attributes) {
  records_.push_back({DrawingRecord::Kind::Text,
                      std::string(text),
                      {moved(point), {}},
                      attributes.foregroundColor,
                      1,
                      attributes.shadow.has_value()});
}

void RecordingGraphicsContext::drawImage(const NSImage& image, NSRect target, NSRect,
                                         double fraction) {
  records_.push_back({DrawingRecord::Kind::Image,
                      image.name(),
                      {moved(target.origin), target.size},
                      NSColor::blackColor(),
                      fraction});
}

void RecordingGraphicsContext::translateOrigin(NSPoint by) { origins_.push_back(moved(by)); }

void RecordingGraphicsContext::restoreOrigin() { origins_.pop_back(); }

std::string RecordingGraphicsContext::joinedText() const {
  std::string text;
  for (const auto& record : records_) {
    if (record.kind == DrawingRecord::Kind::Text) text += record.name;
  }
  return text;
}
