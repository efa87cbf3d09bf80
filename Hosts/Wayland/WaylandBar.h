#pragma once

#include <memory>
#include <string>

#include "Hosts/Display/Display.h"
#include "Hosts/Wayland/ItemSurface.h"
#include "Hosts/Wayland/LayerSurface.h"
#include "Hosts/Wayland/WaylandConnection.h"

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
class WaylandBar : public BarSurface {
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
  void inputConfigured();
  void preferredScale(wp_fractional_scale_v1*, uint32_t scale);
  void frameShown();
  void scheduleFrame();
  void changed();
  void closedByDisplay();

  WaylandConnections connections_;
  SurfaceClient& client_;
  Monitor monitor_;
  int height_;
  double preferredScale_ = 0;
  bool wantsFrame_ = false;
  int64_t attentiveUntil_ = 0;  ///< On the run loop's clock.
  NSRunLoop::Timer frame_;
  WaylandInputTarget inputTarget_;
  std::unique_ptr<LayerSurface> bar_;
  WaylandObject<wp_fractional_scale_v1> fractionalScale_;
  std::unique_ptr<ItemSurface> item_;
  std::unique_ptr<LayerSurface> input_;
};
