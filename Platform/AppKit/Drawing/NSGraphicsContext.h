#pragma once

#include <string_view>
#include <vector>

#include "Platform/AppKit/Drawing/NSAffineTransform.h"
#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Text/NSStringDrawing.h"
#include "Platform/Foundation/NSGeometry.h"

class NSBezierPath;
class NSGradient;
class NSImage;

/// What drawing goes to. Coordinates are points with y upwards from the lower left corner of the
/// surface, unless the context is flipped: then y grows downwards and a text or a picture stands,
/// upright, below its point.
///
/// What has no place on a surface is refused here, for every kind of context: an empty rectangle, a
/// coordinate that is no number or lies out of all reach, a restore without its save. Under a
/// transform that leaves no area, nothing is drawn until the state is restored.
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
  void saveGraphicsState();
  void restoreGraphicsState();

  void translateBy(NSPoint by) { concat(NSAffineTransform::translation(by)); }
  /// Anticlockwise where y grows upwards.
  void rotateByRadians(double angle) { concat(NSAffineTransform::rotation(angle)); }
  /// Turns the y axis over within a box of that height that stands on the origin.
  virtual void flip(double height);
  /// Puts a transform before the present one.
  void concat(const NSAffineTransform& transform);

  /// Narrows the clip to the inside of a path by the even-odd rule, with a smooth edge.
  void clipToPath(const NSBezierPath& path);
  /// Lets what is drawn until the state is restored show only as far as a picture, stretched into
  /// `rect`, covers the surface.
  void clipToMask(const NSImage& mask, NSRect rect);

  /// The nearest point that falls between pixels.
  virtual NSPoint alignedToPixels(NSPoint point) const { return point; }
  /// The advance of a line of text as it comes out at the context's scale, in points.
  virtual double drawnWidth(std::string_view text, const NSFont& font) const;

  void fillPath(const NSBezierPath& path);
  /// With the gradient's first colour up to `start` and its last from `end` on.
  void fillPath(const NSBezierPath& path, const NSGradient& gradient, NSPoint start, NSPoint end);
  void drawText(std::string_view text, NSPoint point, const NSTextAttributes& attributes);
  /// Draws the part `source` of an image (all of it for a zero rectangle) into `target`.
  void drawImage(const NSImage& image, NSRect target, NSRect source, double fraction);

 protected:
  /// From the present coordinates to those of the context's first state.
  const NSAffineTransform& transform() const { return state_.transform; }
  size_t savedStateCount() const { return savedStates_.size(); }

 private:
  // What a kind of context does with what has a place.
  virtual void pushState() {}
  virtual void popState() {}
  virtual void applyTransform(const NSAffineTransform&) {}
  virtual void narrowClip(const NSBezierPath& path) = 0;
  virtual void narrowClip(const NSImage& mask, NSRect rect) = 0;
  virtual void paintPath(const NSBezierPath& path) = 0;
  virtual void paintGradient(const NSBezierPath& path, const NSGradient& gradient, NSPoint start,
                             NSPoint end) = 0;
  virtual void paintText(std::string_view text, NSPoint point,
                         const NSTextAttributes& attributes) = 0;
  virtual void paintImage(const NSImage& image, NSRect target, NSRect source, double fraction) = 0;

  bool reaches(NSPoint point) const;
  bool hasPlace(const NSImage& image, NSRect target, NSRect source) const;
  bool reaches(const NSBezierPath& path) const;

  struct State {
    NSColor fillColor = NSColor::blackColor();
    NSAffineTransform transform = {};
    bool isFlipped = false;
    bool showsNothing = false;
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
