#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Hosts/Display/Display.h"
#include "Hosts/X11/X11Connection.h"
#include "Hosts/X11/X11PixelFormat.h"

/// Puts pixels onto a window and onto pixmaps of the same format. The server answers none of it, so
/// nothing wakes the process afterwards.
class X11Painter {
 public:
  /// `visual` is the window's. Throws `std::runtime_error` if the server does not tell its format.
  X11Painter(X11Connection& connection, xcb_window_t window, const X11Visual& visual);
  X11Painter(const X11Painter&) = delete;
  X11Painter& operator=(const X11Painter&) = delete;
  ~X11Painter();

  /// What the server fills the window with, wherever that comes to light: one colour for each row,
  /// from the top down and then again.
  void setBackground(std::span<const uint32_t> rows);
  /// Fills `area` with the background but for what lies in `hole`.
  void clearAround(const PixelRect& area, const PixelRect& hole);

  /// Fills `area` with the background.
  void clear(const PixelRect& area);

  /// Paints a part of a picture whose upper left corner lies at `x`, 0.
  void paint(const PixelPicture& picture, const PixelRect& part, int x);
  /// Paints a part of a picture onto a pixmap of the same size.
  void paintOnto(xcb_pixmap_t pixmap, const PixelPicture& picture, const PixelRect& part);

 private:
  void put(xcb_drawable_t target, const PixelPicture& picture, const PixelRect& part, int x);

  X11Connection& connection_;
  xcb_window_t window_;
  X11PixelFormat format_;
  xcb_gcontext_t context_;
  std::vector<uint8_t> rows_;  // Kept, as it is needed each second.
};
