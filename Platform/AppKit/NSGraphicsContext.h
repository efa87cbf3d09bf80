#pragma once

#include <string_view>
#include <vector>

#include "Platform/AppKit/NSAffineTransform.h"
#include "Platform/AppKit/NSColor.h"
#include "Platform/AppKit/NSStringDrawing.h"
#include "Platform/Foundation/NSGeometry.h"

class NSBezierPath;
class NSImage;

/// What drawing goes to. Coordinates are points with y upwards from the lower left corner of the
/// surface, unless the context is flipped: then y grows downwards and a text or a picture stands,
/// upright, below its point.
class NSGraphicsContext {
 public:
  virtual ~NSGraphicsContext() = default;

  /// The context of the drawing in progress on this thread; null outside any.
  static NSGraphicsContext* currentContext();

  /// The kind of the context. A host's picture of an item, made for another use than showing it on
  /// its screen, is drawn into a "NSBitmapGraphicsContext".
  virtual std::string_view className() const = 0;
  bool isFlipped() const { return state_.isFlipped; }

  void setFillColor(const NSColor& color) { state_.fillColor = color; }
  const NSColor& fillColor() const { return state_.fillColor; }

  /// The state is the coordinates, the clip and the fill colour. Every save wants its restore.
  virtual void saveGraphicsState() { savedStates_.push_back(state_); }
  virtual void restoreGraphicsState();

  void translateBy(NSPoint by) { concat(NSAffineTransform::translation(by)); }
  /// Anticlockwise where y grows upwards.
  void rotateByRadians(double angle) { concat(NSAffineTransform::rotation(angle)); }
  /// Turns the y axis over within a box of that height that stands on the origin.
  void flip(double height);

  /// Narrows the clip to the inside of a path by the even-odd rule, with a smooth edge.
  virtual void clipToPath(const NSBezierPath& path) = 0;

  /// The nearest point that falls between pixels.
  virtual NSPoint alignedToPixels(NSPoint point) const { return point; }

  virtual void fillPath(const NSBezierPath& path) = 0;
  virtual void drawText(std::string_view text, NSPoint point,
                        const NSTextAttributes& attributes) = 0;
  /// Draws the part `source` of an image (all of it for a zero rectangle) into `target`.
  virtual void drawImage(const NSImage& image, NSRect target, NSRect source, double fraction) = 0;

  /// Puts a transform before the present one.
  virtual void concat(const NSAffineTransform& transform) = 0;

 private:
  struct State {
    NSColor fillColor = NSColor::blackColor();
    bool isFlipped = false;
  };
  State state_;
  std::vector<State> savedStates_;
};

/// Saves a context's state and restores it at the end of the block.
class NSSavedGraphicsState {
 public:
  explicit NSSavedGraphicsState(NSGraphicsContext& context) : context_(context) {
    context_.saveGraphicsState();
  }
  NSSavedGraphicsState(const NSSavedGraphicsState&) = delete;
  NSSavedGraphicsState& operator=(const NSSavedGraphicsState&) = delete;
  ~NSSavedGraphicsState() { context_.restoreGraphicsState(); }

 private:
  NSGraphicsContext& context_;
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
