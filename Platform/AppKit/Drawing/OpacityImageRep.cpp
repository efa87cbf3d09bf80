#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>

#include "Platform/AppKit/Drawing/NSImageRep_p.h"

namespace {

/// Between which two samples of a line a pixel lies, and how far it is from the first.
struct Position {
  size_t before;
  size_t behind;
  float share;
};

/// Where the pixels of a line are among its samples; those beyond the outermost take these.
std::vector<Position> positionsOfPixels(int pixels, int samples) {
  std::vector<Position> positions;
  positions.reserve(static_cast<size_t>(pixels));
  for (int pixel = 0; pixel < pixels; ++pixel) {
    const double middle = (pixel + 0.5) * samples / pixels - 0.5;
    const double place = std::clamp(middle, 0.0, samples - 1.0);
    const double before = std::floor(place);
    positions.push_back({static_cast<size_t>(before),
                         static_cast<size_t>(std::min(before + 1, samples - 1.0)),
                         static_cast<float>(place - before)});
  }
  return positions;
}

float between(float before, float behind, float share) {
  return before + (behind - before) * share;
}

}  // namespace

OpacityImageRep::OpacityImageRep(int width, int height, std::vector<uint8_t> samples)
    : width_(width), height_(height), samples_(std::move(samples)) {
  constexpr int LargestSide = 4096;
  if (width < 1 || height < 1 || width > LargestSide || height > LargestSide ||
      samples_.size() != static_cast<size_t>(width) * static_cast<size_t>(height)) {
    throw std::invalid_argument("NSImage: the samples do not fill the picture");
  }
}

void OpacityImageRep::paint(cairo_t* cairo, double fraction) const {
  bitmaps_.paint(cairo, size(), fraction, [this](cairo_t* target) { paintSamples(target); });
}

void OpacityImageRep::paintSamples(cairo_t* cairo) const {
  cairo_surface_t* target = cairo_get_target(cairo);
  if (cairo_surface_get_type(target) == CAIRO_SURFACE_TYPE_IMAGE &&
      cairo_image_surface_get_format(target) == CAIRO_FORMAT_ARGB32) {
    enlargeInto(target);
    return;
  }
  const Surface bitmap(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width_, height_));
  enlargeInto(bitmap.get());
  cairo_set_source_surface(cairo, bitmap.get(), 0, 0);
  cairo_paint(cairo);
}

// By hand, as the library enlarges at some tenth of this speed.
void OpacityImageRep::enlargeInto(cairo_surface_t* bitmap) const {
  cairo_surface_flush(bitmap);
  unsigned char* data = cairo_image_surface_get_data(bitmap);
  const int stride = cairo_image_surface_get_stride(bitmap);
  const auto columns = positionsOfPixels(cairo_image_surface_get_width(bitmap), width_);
  const auto rows = positionsOfPixels(cairo_image_surface_get_height(bitmap), height_);
  const auto width = static_cast<size_t>(width_);
  std::vector<float> line(width);
  for (size_t y = 0; y < rows.size(); ++y) {
    const uint8_t* above = samples_.data() + rows[y].before * width;
    const uint8_t* below = samples_.data() + rows[y].behind * width;
    for (size_t x = 0; x < width; ++x)
      line[x] = between(above[x], below[x], rows[y].share);
    auto* pixels = reinterpret_cast<uint32_t*>(data + static_cast<ptrdiff_t>(y) * stride);
    for (size_t x = 0; x < columns.size(); ++x) {
      const Position& column = columns[x];
      const float opacity = between(line[column.before], line[column.behind], column.share);
      pixels[x] = static_cast<uint32_t>(opacity + 0.5F) << 24;
    }
  }
  cairo_surface_mark_dirty(bitmap);
}
