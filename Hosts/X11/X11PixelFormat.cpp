#include "Hosts/X11/X11PixelFormat.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <stdexcept>

namespace {

const xcb_visualtype_t* rootVisual(const xcb_screen_t& screen) {
  for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0;
       xcb_depth_next(&depth)) {
    for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0;
         xcb_visualtype_next(&visual)) {
      if (visual.data->visual_id == screen.root_visual) return visual.data;
    }
  }
  return nullptr;
}

}  // namespace

X11PixelFormat::X11PixelFormat(const xcb_setup_t& setup, const xcb_screen_t& screen)
    : depth_(screen.root_depth),
      isMostSignificantByteFirst_(setup.image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST) {
  const xcb_visualtype_t* visual = rootVisual(screen);
  if (visual == nullptr || (visual->_class != XCB_VISUAL_CLASS_TRUE_COLOR &&
                            visual->_class != XCB_VISUAL_CLASS_DIRECT_COLOR)) {
    throw std::runtime_error("the X11 display shows no colours of red, green and blue");
  }
  for (auto format = xcb_setup_pixmap_formats_iterator(&setup); format.rem > 0;
       xcb_format_next(&format)) {
    if (format.data->depth != depth_) continue;
    bitsPerPixel_ = format.data->bits_per_pixel;
    rowPadding_ = format.data->scanline_pad;
  }
  if (rowPadding_ == 0) throw std::runtime_error("the X11 display tells no form of its pictures");
  const auto channel = [](int sourceShift, uint32_t mask) {
    return Channel{sourceShift, std::countr_zero(mask), std::popcount(mask)};
  };
  channels_ = {channel(16, visual->red_mask), channel(8, visual->green_mask),
               channel(0, visual->blue_mask)};
  isOurOwn_ = bitsPerPixel_ == 32 && visual->red_mask == 0xFF0000 &&
              visual->green_mask == 0x00FF00 && visual->blue_mask == 0x0000FF &&
              isMostSignificantByteFirst_ == (std::endian::native == std::endian::big);
}

size_t X11PixelFormat::bytesPerRow(size_t width) const {
  const size_t bits = width * bitsPerPixel_;
  return (bits + rowPadding_ - 1) / rowPadding_ * rowPadding_ / 8;
}

void X11PixelFormat::encodeRow(std::span<const uint32_t> colors, std::span<uint8_t> row) const {
  if (isOurOwn_) {
    std::memcpy(row.data(), colors.data(), colors.size_bytes());
    return;
  }
  const size_t count = bitsPerPixel_ / 8;
  uint8_t* bytes = row.data();
  for (const uint32_t color : colors) {
    const uint32_t pixel = encode(color);
    for (size_t index = 0; index < count; ++index)
      bytes[isMostSignificantByteFirst_ ? count - 1 - index : index] =
          static_cast<uint8_t>(pixel >> (8 * index));
    bytes += count;
  }
}

uint32_t X11PixelFormat::encode(uint32_t color) const {
  uint32_t pixel = 0;
  for (const Channel& channel : channels_)
    pixel |= channel.encode(color);
  return pixel;
}

uint32_t X11PixelFormat::Channel::encode(uint32_t color) const {
  const uint32_t value = (color >> sourceShift) & 0xFF;
  // The upper bits are repeated below, so that white stays white.
  const uint32_t wide = value << 8 | value;
  return wide >> (16 - width) << shift;
}
