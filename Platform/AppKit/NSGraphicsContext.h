#pragma once

#include <string_view>

#include "Platform/AppKit/NSColor.h"
#include "Platform/AppKit/NSStringDrawing.h"
#include "Platform/Foundation/NSGeometry.h"

class NSBezierPath;
class NSImage;

/// What drawing goes to. Coordinates are points with y upwards from the lower left corner of the
/// surface, unless the context is flipped.
class NSGraphicsContext {
 public:
  virtual ~NSGraphicsContext() = default;

  /// The context of the drawing in progress on this thread; null outside any.
  static NSGraphicsContext* currentContext();

  /// The kind of the context. A host's picture of an item, made for another use than showing it on
  /// its screen, is drawn into a "NSBitmapGraphicsContext".
  virtual std::string_view className() const = 0;
  virtual bool isFlipped() const { return false; }

  void setFillColor(const NSColor& color) { fillColor_ = color; }
  const NSColor& fillColor() const { return fillColor_; }

  virtual void fillPath(const NSBezierPath& path) = 0;
  virtual void drawText(std::string_view text, NSPoint point,
                        const NSTextAttributes& attributes) = 0;
  /// Draws the part `source` of an image (all of it for a zero rectangle) into `target`.
  virtual void drawImage(const NSImage& image, NSRect target, NSRect source, double fraction) = 0;

  /// Moves the origin of what is drawn next; `restoreOrigin` undoes the last move.
  virtual void translateOrigin(NSPoint by) = 0;
  virtual void restoreOrigin() = 0;

 private:
  NSColor fillColor_ = NSColor::blackColor();
};

/// Makes a context the current one for as long as this object lives.
class NSCurrentGraphicsContext {
 public:
  explicit NSCurrentGraphicsContext(NSGraphicsContext& context);
  NSCurrentGraphicsContext(const NSCurrentGraphicsContext&) = delete;
  NSCurrentGraphicsContext& operator=(const NSCurrentGraphicsContext&) = delete;
  ~NSCurrentGraphicsContext();

 private:
  NSGraphicsContext* previous_;
};
