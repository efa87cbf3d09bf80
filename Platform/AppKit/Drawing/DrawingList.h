#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSGradient.h"
#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSImage.h"

/// What a view has drawn, as a list of calls: two lists tell whether anything looks different, and
/// only then pixels are worth drawing.
class DrawingList : public NSGraphicsContext {
 public:
  /// `scale` is the pixels a point of the context that the list will be drawn in; its own origin
  /// falls between pixels there.
  explicit DrawingList(double scale = 1) : scale_(scale) {}

  /// Draws what is in the list.
  void drawIn(NSGraphicsContext& context) const;

  /// All texts, joined in drawing order.
  std::string joinedText() const;

  /// The digits 0 to 9 of all texts in fonts that have them equally wide, in drawing order.
  std::string digits() const;
  /// The same drawing with others in their places, as many as it has.
  DrawingList withDigits(std::string_view digits) const;
  /// Whether others in their places would move nothing indeed.
  bool hasEvenDigits() const;

  friend bool operator==(const DrawingList& a, const DrawingList& b) {
    return a.calls_ == b.calls_;
  }

  std::string_view className() const override { return "DrawingList"; }
  NSPoint alignedToPixels(NSPoint point) const override;
  void flip(double height) override;

 private:
  struct Fill {
    NSBezierPath path;
    NSColor color;
    bool operator==(const Fill&) const = default;
  };
  struct GradientFill {
    NSBezierPath path;
    NSGradient gradient;
    NSPoint start;
    NSPoint end;
    bool operator==(const GradientFill&) const = default;
  };
  struct Text {
    std::string text;
    NSPoint point;
    NSTextAttributes attributes;
    bool hasEvenFont() const { return attributes.font.hasMonospacedNumbers(); }
    bool operator==(const Text&) const = default;
  };
  struct Picture {
    NSImage::Content content;
    NSRect target;
    NSRect source;
    double fraction;
    bool operator==(const Picture&) const = default;
  };
  struct Clip {
    NSBezierPath path;
    bool operator==(const Clip&) const = default;
  };
  struct Mask {
    NSImage::Content content;
    NSRect rect;
    bool operator==(const Mask&) const = default;
  };
  struct Flip {
    double height;
    bool operator==(const Flip&) const = default;
  };
  struct Save {
    bool operator==(const Save&) const = default;
  };
  struct Restore {
    bool operator==(const Restore&) const = default;
  };
  using Call = std::variant<Fill, GradientFill, Text, Picture, Clip, Mask, NSAffineTransform, Flip,
                            Save, Restore>;

  void pushState() override { calls_.emplace_back(Save{}); }
  void popState() override { calls_.emplace_back(Restore{}); }
  void applyTransform(const NSAffineTransform& transform) override;
  void narrowClip(const NSBezierPath& path) override;
  void narrowClip(const NSImage& mask, NSRect rect) override;
  void paintPath(const NSBezierPath& path) override;
  void paintGradient(const NSBezierPath& path, const NSGradient& gradient, NSPoint start,
                     NSPoint end) override;
  void paintText(std::string_view text, NSPoint point, const NSTextAttributes& attributes) override;
  void paintImage(const NSImage& image, NSRect target, NSRect source, double fraction) override;

  double scale_;
  std::vector<Call> calls_;
};
