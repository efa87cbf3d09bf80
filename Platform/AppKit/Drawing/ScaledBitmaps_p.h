#pragma once

// For the platform's own sources only: what keeps a vector picture cheap to draw again.

#include <functional>
#include <memory>
#include <vector>

#include "Platform/Foundation/NSGeometry.h"

struct _cairo;
struct _cairo_surface;

/// A picture's bitmaps at the scales at which it was drawn last. Only a few are kept, so that a
/// picture stretched to ever new sizes does not fill the memory.
class ScaledBitmaps {
 public:
  using Renderer = std::function<void(_cairo* cairo)>;

  /// Paints a picture of `size` points with its upper left corner at the origin of a user space
  /// with y downwards, moved by less than a pixel to where its pixels fall on the surface's.
  /// `render` draws it if there is no bitmap for the present scale yet, and where there can be
  /// none: into a recording, which keeps vectors for any later scale, and beyond a screen's size.
  void paint(_cairo* cairo, NSSize size, double fraction, const Renderer& render);

  /// Forgets all bitmaps, for a picture that has changed.
  void clear() { bitmaps_.clear(); }

 private:
  struct Bitmap {
    NSSize scale;  ///< Pixels of a point.
    std::shared_ptr<_cairo_surface> surface;
  };

  _cairo_surface* bitmap(NSSize size, NSSize scale, const Renderer& render);

  std::vector<Bitmap> bitmaps_;  ///< The one used last comes first.
};
