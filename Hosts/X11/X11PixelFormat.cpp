#include "Hosts/X11/X11PixelFormat.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <stdexcept>

namespace {

constexpr uint32_t RedMask = 0xFF0000;
constexpr uint32_t GreenMask = 0x00FF00;
constexpr uint32_t BlueMask = 0x0000FF;
constexpr uint8_t DepthWithAlpha = 32;

/// The first that `isFitting` approves.
template <typename Test>
std::optional<X11Visual> findVisual(const xcb_screen_t& screen, Test isFitting) {
  for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0;
       xcb_depth_next(&depth)) {
    for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0;
         xcb_visualtype_next(&visual)) {
      const X11Visual found{depth.data->depth, visual.data};
      if (isFitting(found)) return found;
    }
  }
  return std::nullopt;
}

}  // namespace

X11Visual rootVisual(const xcb_screen_t& screen) {
  const auto visual = findVisual(screen, [&](const X11Visual& candidate) {
    return candidate.type->visual_id == screen.root_visual;
  });
  if (!visual || (visual->type->_class != XCB_VISUAL_CLASS_TRUE_COLOR &&
                  visual->type->_class != XCB_VISUAL_CLASS_DIRECT_COLOR)) {
    throw std::runtime_error("the X11 display shows no colours of red, green and blue");
  }
  return *visual;
}

std::optional<X11Visual> alphaVisual(const xcb_screen_t& screen) {
  return findVisual(screen, [](const X11Visual& visual) {
    return visual.depth == DepthWithAlpha && visual.type->_class == XCB_VISUAL_CLASS_TRUE_COLOR &&
           visual.type->red_mask == RedMask && visual.type->green_mask == GreenMask &&
           visual.type->blue_mask == BlueMask;
  });
}

X11PixelFormat::X11PixelFormat(const xcb_setup_t& setup, const X11Visual& visual)
    : depth_(visual.depth),
      isMostSignificantByteFirst_(setup.image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST) {
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
  const xcb_visualtype_t& type = *visual.type;
  channels_ = {channel(16, type.red_mask), channel(8, type.green_mask), channel(0, type.blue_mask)};
  const bool hasOurMasks =
      type.red_mask == RedMask && type.green_mask == GreenMask && type.blue_mask == BlueMask;
  if (depth_ == DepthWithAlpha && hasOurMasks) channels_[3] = channel(24, 0xFF000000);
  isOurOwn_ = bitsPerPixel_ == 32 && hasOurMasks &&
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
