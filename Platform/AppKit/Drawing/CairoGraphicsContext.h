#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"

/// Opaque here, so that no library type shows: Cairo's own `cairo_t` and
/// `cairo_pattern_t`.
struct _cairo;
struct _cairo_pattern;

/// Draws on a Cairo surface. The surface's device scale gives the pixels of a point.
class CairoGraphicsContext : public NSGraphicsContext {
 public:
  enum class Purpose { Screen, Snapshot };

  /// `cairo` is used, not owned; its user space has points with y downwards, and `height` points
  /// from its origin down to the lower edge.
  CairoGraphicsContext(_cairo* cairo, double height, Purpose purpose = Purpose::Screen);
  ~CairoGraphicsContext() override;

  std::string_view className() const override;
  NSPoint alignedToPixels(NSPoint point) const override;
  double drawnWidth(std::string_view text, const NSFont& font) const override;

 private:
  void pushState() override;
  void popState() override;
  void applyTransform(const NSAffineTransform& transform) override;
  void narrowClip(const NSBezierPath& path) override;
  void narrowClip(const NSImage& mask, NSRect rect) override;
  void paintPath(const NSBezierPath& path) override;
  void paintGradient(const NSBezierPath& path, const NSGradient& gradient, NSPoint start,
                     NSPoint end) override;
  void paintText(std::string_view text, NSPoint point, const NSTextAttributes& attributes) override;
  void paintImage(const NSImage& image, NSRect target, NSRect source, double fraction) override;
  void tracePath(const NSBezierPath& path);

  /// Of states with at least `depth` saved ones below them.
  void endMasks(size_t depth);

  /// A mask in force: what is drawn goes to a group, which is painted through it in the end.
  struct Mask {
    size_t depth;  ///< Saved states below the one that it belongs to.
    _cairo_pattern* pattern;
  };

  _cairo* cairo_;
  Purpose purpose_;
  std::vector<Mask> masks_;
};

/// A picture in memory to draw into, for files and tests.
class BitmapSurface {
 public:
  /// `scale` is pixels a point; the pixel size is rounded up.
  BitmapSurface(NSSize size, double scale);
  /// Draws over `pixels`, which stay the caller's: rows of premultiplied 0xAARRGGBB from the top
  /// down. The origin is the lower left corner of the last row.
  BitmapSurface(uint32_t* pixels, int width, int height, double scale);
  BitmapSurface(const BitmapSurface&) = delete;
  BitmapSurface& operator=(const BitmapSurface&) = delete;
  ~BitmapSurface();

  CairoGraphicsContext& context() { return *context_; }
  int pixelWidth() const;
  int pixelHeight() const;

  /// The pixel at a column and row counted from the upper left, not premultiplied.
  NSColor pixelAt(int column, int row) const;

  /// Throws `std::runtime_error` with the reason if the file cannot be written.
  void writePng(const std::string& path) const;

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
  std::unique_ptr<CairoGraphicsContext> context_;
};
