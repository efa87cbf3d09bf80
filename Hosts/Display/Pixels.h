#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// A rectangle of whole pixels, y downwards.
struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool isEmpty() const { return width <= 0 || height <= 0; }
  bool operator==(const PixelRect&) const = default;
};

/// A finished picture: rows from the top down of premultiplied 0xAARRGGBB, owned by whoever drew
/// it.
struct PixelPicture {
  std::span<const uint32_t> pixels;
  int width = 0;
  int height = 0;
  int stride = 0;  ///< Pixels from one row to the next.

  const uint32_t* row(int y) const {
    return pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(stride);
  }
};

/// The smallest rectangle around both; an empty one adds nothing.
PixelRect united(const PixelRect& a, const PixelRect& b);
bool intersect(const PixelRect& a, const PixelRect& b);

/// The smallest rectangle around all pixels in which two pictures differ; all of the second if
/// their sizes do.
PixelRect difference(const PixelPicture& before, const PixelPicture& after);
