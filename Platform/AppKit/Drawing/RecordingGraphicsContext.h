#pragma once

#include <string>
#include <vector>

#include "Platform/AppKit/Drawing/NSAffineTransform.h"
#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSGraphicsContext.h"

/// One drawing call, with what it was given. Coordinates are those of the context's first state.
struct DrawingRecord {
  enum class Kind { Text, Image, Path };
  Kind kind;
  std::string name;  ///< The text, or the image's name.
  NSRect rect;       ///< Where: a text has no size; a path has that of its points.
  NSColor color = NSColor::blackColor();  ///< Of a text or a path; the first of a gradient.
  double fraction = 1;                    ///< Of an image.
  bool hasShadow = false;                 ///< Of a text.
};

/// A context without pixels: it keeps what is drawn as a list, for reading the words on an item
/// aloud and for tests.
class RecordingGraphicsContext : public NSGraphicsContext {
 public:
  std::string_view className() const override { return "RecordingGraphicsContext"; }
  const std::vector<DrawingRecord>& records() const { return records_; }

  /// All texts, joined in drawing order.
  std::string joinedText() const;

 private:
  void narrowClip(const NSBezierPath&) override {}
  void narrowClip(const NSImage&, NSRect) override {}
  void paintPath(const NSBezierPath& path) override;
  void paintGradient(const NSBezierPath& path, const NSGradient& gradient, NSPoint start,
                     NSPoint end) override;
  void paintText(std::string_view text, NSPoint point, const NSTextAttributes& attributes) override;
  void paintImage(const NSImage& image, NSRect target, NSRect source, double fraction) override;
  void record(const NSBezierPath& path, const NSColor& color);
  NSRect boxAround(NSPoint corner, NSPoint opposite) const;

  std::vector<DrawingRecord> records_;
};
