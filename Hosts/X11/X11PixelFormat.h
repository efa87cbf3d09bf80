#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <span>

/// How a screen's pixels lie in the pictures that its server takes.
class X11PixelFormat {
 public:
  /// The format of the screen's root window. Throws `std::runtime_error` if that has a colour map
  /// instead of red, green and blue.
  X11PixelFormat(const xcb_setup_t& setup, const xcb_screen_t& screen);

  uint8_t depth() const { return depth_; }
  size_t bytesPerRow(size_t width) const;

  /// Writes a row of opaque 0xAARRGGBB. `row` has the length told by `bytesPerRow`.
  void encodeRow(std::span<const uint32_t> colors, std::span<uint8_t> row) const;

 private:
  struct Channel {
    int sourceShift = 0;
    int shift = 0;
    int width = 0;

    uint32_t encode(uint32_t color) const;
  };

  uint32_t encode(uint32_t color) const;

  uint8_t depth_;
  size_t bitsPerPixel_ = 0;
  size_t rowPadding_ = 0;  ///< Rows are as long as a multiple of these bits.
  bool isMostSignificantByteFirst_;
  bool isOurOwn_ = false;
  std::array<Channel, 3> channels_;
};
