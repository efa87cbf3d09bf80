#pragma once

#include <cairo.h>

#include <memory>
#include <span>

#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"

/// The finished picture of an item. An item tells its width while it draws; by drawing it here,
/// ahead of the window's own pass, the window never shows a picture that was made for another
/// width.
class SlotPicture {
 public:
  /// Draws the slot at `scale` pixels a point. Returns whether the picture has changed.
  bool render(const NSMenuBarSlot& slot, int scale);

  /// Paints the picture with its upper left corner at a point of a surface with y downwards.
  void paint(cairo_t* cairo, double x, double y) const;

  /// In whole points, so that the slot's edges fall on pixels.
  int width() const { return width_; }

 private:
  struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  };
  using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

  void renderSettled(const NSMenuBarSlot& slot, int scale);
  static std::span<const unsigned char> pixelsOf(const Surface& surface);

  Surface surface_;
  int width_ = 0;
};
