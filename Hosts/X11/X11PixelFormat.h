#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <optional>
#include <span>

/// A way in which a server shows pixels as red, green and blue. Owned by the connection.
struct X11Visual {
  uint8_t depth = 0;
  const xcb_visualtype_t* type = nullptr;
};

/// What the screen's root window has. Throws `std::runtime_error` if that is a colour map.
X11Visual rootVisual(const xcb_screen_t& screen);
/// One with eight bits of alpha, premultiplied; null if the screen has none.
std::optional<X11Visual> alphaVisual(const xcb_screen_t& screen);

/// How a visual's pixels lie in the pictures that its server takes.
class X11PixelFormat {
 public:
  /// Throws `std::runtime_error` if the server does not tell it.
  X11PixelFormat(const xcb_setup_t& setup, const X11Visual& visual);

  uint8_t depth() const { return depth_; }
  size_t bytesPerRow(size_t width) const;

  /// Writes a row of 0xAARRGGBB, opaque where the visual has no alpha. `row` has the length told
  /// by `bytesPerRow`.
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
  std::array<Channel, 4> channels_;
};
