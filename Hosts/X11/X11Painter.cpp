#include "Hosts/X11/X11Painter.h"

#include <algorithm>

X11Painter::X11Painter(X11Connection& connection, xcb_window_t window, const X11Visual& visual)
    : connection_(connection),
      window_(window),
      format_(connection.setup(), visual),
      context_(xcb_generate_id(connection.get())) {
  xcb_create_gc(connection.get(), context_, window, 0, nullptr);
}

X11Painter::~X11Painter() { xcb_free_gc(connection_.get(), context_); }

void X11Painter::setBackground(std::span<const uint32_t> rows) {
  xcb_connection_t* const x11 = connection_.get();
  const auto height = static_cast<int>(rows.size());
  const xcb_pixmap_t column = xcb_generate_id(x11);
  xcb_create_pixmap(x11, format_.depth(), column, window_, 1, static_cast<uint16_t>(height));
  put(column, {rows, 1, height, 1}, {0, 0, 1, height}, 0);
  xcb_change_window_attributes(x11, window_, XCB_CW_BACK_PIXMAP, &column);
  xcb_free_pixmap(x11, column);  // The window keeps it.
}

void X11Painter::clearAround(const PixelRect& area, const PixelRect& hole) {
  const int right = area.x + area.width;
  const int bottom = area.y + area.height;
  const int holeLeft = std::clamp(hole.x, area.x, right);
  const int holeRight = std::clamp(hole.x + hole.width, holeLeft, right);
  const int holeBottom = std::clamp(hole.y + hole.height, area.y, bottom);
  clear({area.x, area.y, holeLeft - area.x, area.height});
  clear({holeRight, area.y, right - holeRight, area.height});
  clear({holeLeft, holeBottom, holeRight - holeLeft, bottom - holeBottom});
}

void X11Painter::clear(const PixelRect& area) {
  // A width or height of 0 would mean all that follows.
  if (area.isEmpty()) return;
  constexpr uint8_t WithoutExposure = 0;
  xcb_clear_area(connection_.get(), WithoutExposure, window_, static_cast<int16_t>(area.x),
                 static_cast<int16_t>(area.y), static_cast<uint16_t>(area.width),
                 static_cast<uint16_t>(area.height));
}

void X11Painter::paint(const PixelPicture& picture, const PixelRect& part, int x) {
  put(window_, picture, part, x);
}

void X11Painter::paintOnto(xcb_pixmap_t pixmap, const PixelPicture& picture,
                           const PixelRect& part) {
  put(pixmap, picture, part, 0);
}

void X11Painter::put(xcb_drawable_t target, const PixelPicture& picture, const PixelRect& part,
                     int x) {
  if (part.isEmpty()) return;
  // A request has a greatest length, so large pictures go in several.
  constexpr size_t LengthUnit = 4;
  const size_t maximumBytes =
      connection_.setup().maximum_request_length * LengthUnit - sizeof(xcb_put_image_request_t);
  const auto width = static_cast<size_t>(part.width);
  const size_t rowBytes = format_.bytesPerRow(width);
  const auto maximumRows = static_cast<int>(std::max<size_t>(1, maximumBytes / rowBytes));
  const int bottom = part.y + part.height;
  for (int top = part.y; top < bottom; top += maximumRows) {
    const int count = std::min(maximumRows, bottom - top);
    rows_.resize(static_cast<size_t>(count) * rowBytes);
    for (int row = 0; row < count; ++row) {
      format_.encodeRow({picture.row(top + row) + part.x, width},
                        std::span(rows_).subspan(static_cast<size_t>(row) * rowBytes, rowBytes));
    }
    xcb_put_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, target, context_,
                  static_cast<uint16_t>(part.width), static_cast<uint16_t>(count),
                  static_cast<int16_t>(x + part.x), static_cast<int16_t>(top), 0, format_.depth(),
                  static_cast<uint32_t>(rows_.size()), rows_.data());
  }
}
