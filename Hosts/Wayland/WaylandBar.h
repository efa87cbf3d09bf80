#pragma once

#include <memory>
#include <string>

#include "Hosts/Display/Display.h"
#include "Hosts/Wayland/LayerSurface.h"
#include "Hosts/Wayland/PictureSurface.h"
#include "Hosts/Wayland/SurfaceScale.h"
#include "Hosts/Wayland/WaylandConnection.h"
#include "Hosts/Wayland/WaylandSeat.h"

/// The two connections of a bar. What the bar shows goes through one of its own, so that the
/// answers to each second's picture, which say no more than that it was shown, need not wake the
/// process: they are read before the next picture. Input and news of the outputs come through the
/// other, which is always watched.
struct WaylandConnections {
  WaylandConnection& shown;
  WaylandConnection& input;
};

/// The bar on one output: a surface that is seen, with the item's on it, and a clear one over it
/// that gets the input.
class WaylandBar : public BarSurface, private WaylandInputTarget {
 public:
  WaylandBar(WaylandConnections connections, const Monitor& monitor, int height,
             SurfaceClient& client);
  WaylandBar(const WaylandBar&) = delete;
  WaylandBar& operator=(const WaylandBar&) = delete;
  ~WaylandBar() override;

  void moveTo(const Monitor& monitor) override;
  double width() const override { return bar_ ? bar_->width() : 0; }
  double scale() const override;
  int pixelGrid() const override;
  void setBackground(std::span<const uint32_t> rows) override;
  void presentItem(const PixelPicture& picture, int x, PixelRect changed) override;
  void requestFrame() override;

  /// Something has come in through the connection for input: more may follow on the other.
  void inputCame();

 private:
  void open();
  void close();
  void frameShown();
  void scheduleFrame();
  void changed();
  void closedByDisplay();

  void pointerEvent(const PointerEvent& event) override { client_.pointerEvent(event); }
  void touchEvent(const TouchEvent& event) override { client_.touchEvent(event); }
  double cursorScale() const override { return monitor_.scale; }

  WaylandConnections connections_;
  SurfaceClient& client_;
  Monitor monitor_;
  int height_;
  bool wantsFrame_ = false;
  int64_t attentiveUntil_ = 0;  ///< On the run loop's clock.
  NSRunLoop::Timer frame_;
  std::unique_ptr<LayerSurface> bar_;
  std::unique_ptr<SurfaceScale> scale_;
  std::unique_ptr<PictureSurface> item_;
  std::unique_ptr<LayerSurface> input_;
};
