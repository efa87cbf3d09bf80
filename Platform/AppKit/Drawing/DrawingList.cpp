#include "Platform/AppKit/Drawing/DrawingList.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "Platform/AppKit/Text/TextLine_p.h"

namespace {

template <typename... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

}  // namespace

void DrawingList::drawIn(NSGraphicsContext& context) const {
  const NSSavedGraphicsState saved(context);
  for (const Call& call : calls_) {
    std::visit(
        Overloaded{
            [&](const Fill& fill) {
              context.setFillColor(fill.color);
              context.fillPath(fill.path);
            },
            [&](const GradientFill& fill) {
              context.fillPath(fill.path, fill.gradient, fill.start, fill.end);
            },
            [&](const Text& text) { context.drawText(text.text, text.point, text.attributes); },
            [&](const Picture& picture) {
              context.drawImage(NSImage(picture.content), picture.target, picture.source,
                                picture.fraction);
            },
            [&](const Clip& clip) { context.clipToPath(clip.path); },
            [&](const Mask& mask) { context.clipToMask(NSImage(mask.content), mask.rect); },
            [&](const NSAffineTransform& transform) { context.concat(transform); },
            [&](const Flip& flip) { context.flip(flip.height); },
            [&](const Save&) { context.saveGraphicsState(); },
            [&](const Restore&) { context.restoreGraphicsState(); },
        },
        call);
  }
}

std::string DrawingList::joinedText() const {
  std::string joined;
  for (const Call& call : calls_) {
    if (const auto* text = std::get_if<Text>(&call)) joined += text->text;
  }
  return joined;
}

std::string DrawingList::digits() const {
  std::string digits;
  for (const Call& call : calls_) {
    const auto* text = std::get_if<Text>(&call);
    if (text == nullptr || !text->hasEvenFont()) continue;
    std::ranges::copy_if(text->text, std::back_inserter(digits), isTextDigit);
  }
  return digits;
}

DrawingList DrawingList::withDigits(std::string_view digits) const {
  DrawingList other = *this;
  auto next = digits.begin();
  for (Call& call : other.calls_) {
    auto* text = std::get_if<Text>(&call);
    if (text == nullptr || !text->hasEvenFont()) continue;
    for (char& character : text->text) {
      if (isTextDigit(character)) character = *next++;
    }
  }
  return other;
}

bool DrawingList::hasEvenDigits() const {
  return std::ranges::all_of(calls_, [this](const Call& call) {
    const auto* text = std::get_if<Text>(&call);
    return text == nullptr || !text->hasEvenFont() ||
           std::ranges::none_of(text->text, isTextDigit) ||
           hasExchangeableDigits(text->text, text->attributes.font, scale_);
  });
}

void DrawingList::paintPath(const NSBezierPath& path) {
  calls_.emplace_back(Fill{path, fillColor()});
}

void DrawingList::paintGradient(const NSBezierPath& path, const NSGradient& gradient, NSPoint start,
                                NSPoint end) {
  calls_.emplace_back(GradientFill{path, gradient, start, end});
}

void DrawingList::paintText(std::string_view text, NSPoint point,
                            const NSTextAttributes& attributes) {
  calls_.emplace_back(Text{std::string(text), point, attributes});
}

void DrawingList::paintImage(const NSImage& image, NSRect target, NSRect source, double fraction) {
  calls_.emplace_back(Picture{image.content(), target, source, fraction});
}

void DrawingList::narrowClip(const NSBezierPath& path) { calls_.emplace_back(Clip{path}); }

void DrawingList::narrowClip(const NSImage& mask, NSRect rect) {
  calls_.emplace_back(Mask{mask.content(), rect});
}

void DrawingList::applyTransform(const NSAffineTransform& transform) {
  calls_.emplace_back(transform);
}

void DrawingList::flip(double height) {
  const size_t before = calls_.size();
  NSGraphicsContext::flip(height);
  // In the place of the transform that this consists of.
  if (calls_.size() > before) calls_.back() = Flip{height};
}

NSPoint DrawingList::alignedToPixels(NSPoint point) const {
  const NSPoint device = transform().transformPoint(point);
  const NSPoint whole{std::round(device.x * scale_) / scale_,
                      std::round(device.y * scale_) / scale_};
  return transform().inverted().transformPoint(whole);
}
