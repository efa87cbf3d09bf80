#include "Platform/AppKit/Drawing/ScaledBitmaps_p.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>

#include "Platform/Foundation/LibraryHandle.h"

namespace {

/// One or two screens, a snapshot, and a stretched form.
constexpr size_t MaximumBitmaps = 4;

/// Scales that differ by less give the same pixels in any picture of a panel.
constexpr double ScaleTolerance = 1e-4;

/// In pixels: a screen of 8K.
constexpr double LargestSide = 8192;

/// Sizes within a rounding error of whole pixels are whole.
int wholePixels(double points, double scale) {
  constexpr double Tolerance = 1e-6;
  return std::max(1, static_cast<int>(std::ceil(points * scale - Tolerance)));
}

bool isAxisAligned(const cairo_matrix_t& matrix) {
  constexpr double Tolerance = 1e-9;
  return std::abs(matrix.xy) < Tolerance && std::abs(matrix.yx) < Tolerance;
}

void paintVectors(cairo_t* cairo, double fraction, const ScaledBitmaps::Renderer& render) {
  if (fraction >= 1) {
    render(cairo);
    return;
  }
  cairo_push_group(cairo);
  render(cairo);
  cairo_pop_group_to_source(cairo);
  cairo_paint_with_alpha(cairo, fraction);
}

/// Whether what is drawn is recorded as vectors, for any later scale.
bool recordsVectors(cairo_t* cairo) {
  // A group's target is what counts: alpha groups of a recording are recordings themselves.
  return cairo_surface_get_type(cairo_get_group_target(cairo)) == CAIRO_SURFACE_TYPE_RECORDING;
}

}  // namespace

void ScaledBitmaps::paint(_cairo* cairo, NSSize size, double fraction, const Renderer& render) {
  if (recordsVectors(cairo)) {
    paintVectors(cairo, fraction, render);
    return;
  }
  cairo_matrix_t matrix;
  cairo_get_matrix(cairo, &matrix);
  double deviceX = 1;
  double deviceY = 1;
  cairo_surface_get_device_scale(cairo_get_target(cairo), &deviceX, &deviceY);
  const NSSize scale{std::hypot(matrix.xx, matrix.yx) * deviceX,
                     std::hypot(matrix.xy, matrix.yy) * deviceY};
  // Too large to be kept: drawn anew each time. A bitmap that cannot be made, put on the surface,
  // would end all drawing there.
  if (!(std::max(size.width * scale.width, size.height * scale.height) <= LargestSide)) {
    paintVectors(cairo, fraction, render);
    return;
  }
  cairo_surface_t* surface = bitmap(size, scale, render);
  if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) return;

  cairo_save(cairo);
  const bool isAligned = isAxisAligned(matrix);
  if (isAligned) {
    matrix.x0 = std::round(matrix.x0 * deviceX) / deviceX;
    matrix.y0 = std::round(matrix.y0 * deviceY) / deviceY;
    cairo_set_matrix(cairo, &matrix);
  }
  cairo_set_source_surface(cairo, surface, 0, 0);
  if (isAligned) cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_NEAREST);
  cairo_paint_with_alpha(cairo, fraction);
  cairo_restore(cairo);
}

_cairo_surface* ScaledBitmaps::bitmap(NSSize size, NSSize scale, const Renderer& render) {
  const auto found = std::find_if(bitmaps_.begin(), bitmaps_.end(), [&](const Bitmap& bitmap) {
    return std::abs(bitmap.scale.width - scale.width) < ScaleTolerance &&
           std::abs(bitmap.scale.height - scale.height) < ScaleTolerance;
  });
  if (found != bitmaps_.end()) {
    std::rotate(bitmaps_.begin(), found, found + 1);
    return bitmaps_.front().surface.get();
  }

  const std::shared_ptr<cairo_surface_t> surface(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, wholePixels(size.width, scale.width),
                                 wholePixels(size.height, scale.height)),
      cairo_surface_destroy);
  cairo_surface_set_device_scale(surface.get(), scale.width, scale.height);
  render(LibraryHandle<cairo_t, cairo_destroy>(cairo_create(surface.get())).get());
  if (bitmaps_.size() == MaximumBitmaps) bitmaps_.pop_back();
  bitmaps_.insert(bitmaps_.begin(), {scale, surface});
  return surface.get();
}
