#pragma once

#include <span>
#include <vector>

#include "Hosts/Display/Display.h"
#include "Hosts/X11/X11Connection.h"
#include "Hosts/X11/X11DockWindow.h"
#include "Hosts/X11/X11Painter.h"
#include "Hosts/X11/X11Pointer.h"

/// The bar's window on an X11 display.
class X11Bar : public BarSurface, private X11EventHandler {
 public:
  /// All of these must outlive the bar. Throws `std::runtime_error` with the reason.
  X11Bar(X11Connection& connection, const X11Monitors& monitors, const Monitor& monitor, int height,
         SurfaceClient& client);

  void moveTo(const Monitor& monitor) override;
  double width() const override { return widthInPixels_ / scale_; }
  double scale() const override { return scale_; }
  int pixelGrid() const override { return 1; }
  void setBackground(std::span<const uint32_t> rows) override;
  void presentItem(const PixelPicture& picture, int x, PixelRect changed) override;
  void requestFrame() override;

 private:
  void handleEvent(const xcb_generic_event_t& event) override;
  void adoptWidth(int width);
  void setInSight(bool isInSight);
  void repaint(const xcb_expose_event_t& exposed);
  void takeFrame();
  PixelPicture keptPicture() const;

  const X11Monitors& monitors_;
  int height_;
  SurfaceClient& client_;
  double scale_ = 1;
  int widthInPixels_ = 0;
  X11DockWindow window_;
  X11Painter painter_;
  X11Pointer pointer_;
  std::vector<uint32_t> background_;
  // What the item shows, for the server forgets what is covered.
  std::vector<uint32_t> itemPixels_;
  PixelRect itemFrame_;
  bool isInSight_ = true;
  bool isFrameWanted_ = false;
  NSRunLoop::Timer frame_;
};
