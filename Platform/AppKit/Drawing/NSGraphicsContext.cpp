#include "Platform/AppKit/Drawing/NSGraphicsContext.h"

#include <algorithm>
#include <cmath>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/AppKit/Text/TextLine_p.h"

namespace {

/// In points. At the largest scale it still fits the 24 bits that libraries have for whole pixels.
constexpr double Furthest = 262'144;

/// Whether what is drawn through a transform has an area on a surface.
bool hasArea(const NSAffineTransform& transform) {
  constexpr double Smallest = 1e-9;
  constexpr double Largest = 1e9;
  const double area = std::abs(transform.m11 * transform.m22 - transform.m12 * transform.m21);
  return area >= Smallest && area <= Largest && std::abs(transform.tX) <= Furthest &&
         std::abs(transform.tY) <= Furthest;
}

thread_local NSGraphicsContext* current = nullptr;

}  // namespace

NSGraphicsContext* NSGraphicsContext::currentContext() { return current; }

void NSGraphicsContext::saveGraphicsState() {
  savedStates_.push_back(state_);
  pushState();
}

void NSGraphicsContext::restoreGraphicsState() {
  if (savedStates_.empty()) return;
  state_ = savedStates_.back();
  savedStates_.pop_back();
  popState();
}

void NSGraphicsContext::flip(double height) {
  concat(NSAffineTransform::flip(height));
  state_.isFlipped = !state_.isFlipped;
}

void NSGraphicsContext::concat(const NSAffineTransform& transform) {
  const NSAffineTransform joined = state_.transform.after(transform);
  if (!hasArea(joined)) state_.showsNothing = true;
  if (state_.showsNothing) return;
  state_.transform = joined;
  applyTransform(transform);
}

void NSGraphicsContext::clipToPath(const NSBezierPath& path) {
  if (!reaches(path)) state_.showsNothing = true;
  if (!state_.showsNothing) narrowClip(path);
}

void NSGraphicsContext::clipToMask(const NSImage& mask, NSRect rect) {
  if (!hasPlace(mask, rect, NSZeroRect)) state_.showsNothing = true;
  if (!state_.showsNothing) narrowClip(mask, rect);
}

double NSGraphicsContext::drawnWidth(std::string_view text, const NSFont& font) const {
  return textLineWidth(text, font);
}

void NSGraphicsContext::fillPath(const NSBezierPath& path) {
  if (!state_.showsNothing && reaches(path)) paintPath(path);
}

void NSGraphicsContext::fillPath(const NSBezierPath& path, const NSGradient& gradient,
                                 NSPoint start, NSPoint end) {
  if (state_.showsNothing || !reaches(path) || !reaches(start) || !reaches(end)) return;
  paintGradient(path, gradient, start, end);
}

void NSGraphicsContext::drawText(std::string_view text, NSPoint point,
                                 const NSTextAttributes& attributes) {
  const NSSize shadow = attributes.shadow ? attributes.shadow->shadowOffset : NSSize{};
  const bool hasPlace =
      reaches(point) && reaches(NSPoint{point.x + shadow.width, point.y + shadow.height});
  if (!state_.showsNothing && hasPlace) paintText(text, point, attributes);
}

void NSGraphicsContext::drawImage(const NSImage& image, NSRect target, NSRect source,
                                  double fraction) {
  if (state_.showsNothing || !(fraction > 0) || !hasPlace(image, target, source)) return;
  paintImage(image, target, source, fraction);
}

bool NSGraphicsContext::hasPlace(const NSImage& image, NSRect target, NSRect source) const {
  const NSSize part = source == NSZeroRect ? image.size() : source.size;
  const bool hasPart = part.width > 0 && part.height > 0 && std::isfinite(source.origin.x) &&
                       std::isfinite(source.origin.y);
  const bool isWide = target.size.width > 0 && target.size.height > 0;
  const NSPoint end{target.origin.x + target.size.width, target.origin.y + target.size.height};
  if (!hasPart || !isWide || !reaches(target.origin) || !reaches(end)) return false;
  const NSAffineTransform stretch{target.size.width / part.width,
                                  0,
                                  0,
                                  target.size.height / part.height,
                                  target.origin.x,
                                  target.origin.y};
  return hasArea(state_.transform.after(stretch));
}

bool NSGraphicsContext::reaches(NSPoint point) const {
  const NSPoint place = state_.transform.transformPoint(point);
  return std::abs(place.x) <= Furthest && std::abs(place.y) <= Furthest;
}

bool NSGraphicsContext::reaches(const NSBezierPath& path) const {
  const auto& elements = path.elements();
  return std::all_of(elements.begin(), elements.end(), [this](const auto& element) {
    return reaches(element.point) && reaches(element.controlPoint1) &&
           reaches(element.controlPoint2);
  });
}

NSCurrentGraphicsContext::NSCurrentGraphicsContext(NSGraphicsContext& context)
    : previous_(current) {
  current = &context;
}

NSCurrentGraphicsContext::~NSCurrentGraphicsContext() { current = previous_; }
