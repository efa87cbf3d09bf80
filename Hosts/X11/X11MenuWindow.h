#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "Hosts/Display/MenuSession.h"
#include "Hosts/X11/X11Connection.h"
#include "Hosts/X11/X11Painter.h"

/// What menus' windows are made of: with clear pixels where a compositing manager lets what is
/// below shine through, else like the screen itself. As it was when this object was made.
class X11MenuVisual {
 public:
  explicit X11MenuVisual(X11Connection& connection);
  X11MenuVisual(const X11MenuVisual&) = delete;
  X11MenuVisual& operator=(const X11MenuVisual&) = delete;
  ~X11MenuVisual();

  bool isComposited() const { return colormap_ != XCB_COLORMAP_NONE; }
  const X11Visual& visual() const { return visual_; }
  /// None where the windows have the screen's own.
  xcb_colormap_t colormap() const { return colormap_; }

 private:
  X11Connection& connection_;
  X11Visual visual_;
  xcb_colormap_t colormap_ = XCB_COLORMAP_NONE;
};

/// A menu's window on an X11 display. Its picture is the window's background, with which the server
/// fills what comes to light by itself: so there is no moment without it, and nothing to be kept
/// here.
class X11MenuWindow : public MenuWindow {
 public:
  /// `monitor` is the session's monitor, in pixels of the whole desktop. The window stands in
  /// `list` as long as it lives, and must not outlive it nor the others.
  X11MenuWindow(X11Connection& connection, const X11MenuVisual& visual, const PixelRect& monitor,
                MenuSessionClient& client, std::vector<X11MenuWindow*>& list);
  X11MenuWindow(const X11MenuWindow&) = delete;
  X11MenuWindow& operator=(const X11MenuWindow&) = delete;
  ~X11MenuWindow() override;

  void present(PixelRect frame, const PixelPicture& picture, PixelRect changed) override;
  void requestFrame() override;

  /// From now on it shows nothing any more.
  void hide();

 private:
  xcb_window_t create(const X11MenuVisual& visual);
  void place();
  void show();
  void freePixmap();
  void takeFrame();
  void cancelFrame();

  X11Connection& connection_;
  PixelRect monitor_;
  MenuSessionClient& client_;
  std::vector<X11MenuWindow*>& list_;
  uint8_t depth_;
  xcb_window_t id_;
  X11Painter painter_;
  xcb_pixmap_t pixmap_ = XCB_PIXMAP_NONE;
  PixelRect frame_;  // As it is shown; empty before.
  bool isHidden_ = false;
  int64_t earliestFrame_ = std::numeric_limits<int64_t>::min();
  NSRunLoop::Timer frameTimer_;
};
