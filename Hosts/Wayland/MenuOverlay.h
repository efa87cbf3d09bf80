#pragma once

#include <wayland-client.h>

#include <cstdint>
#include <functional>

#include "Hosts/Display/MenuSession.h"
#include "Hosts/Wayland/LayerSurface.h"
#include "Hosts/Wayland/WaylandConnection.h"
#include "Hosts/Wayland/WaylandOutput.h"
#include "Hosts/Wayland/WaylandSeat.h"

/// A clear surface over one output and everything on it, which takes the input there while menus
/// are open. Menu windows stand on it.
class MenuOverlay : private WaylandInputTarget {
 public:
  /// `onClosed` is called when the compositor has taken it away.
  MenuOverlay(WaylandConnection& connection, const WaylandOutput& output, MenuSessionClient& client,
              std::function<void()> onClosed);
  MenuOverlay(const MenuOverlay&) = delete;
  MenuOverlay& operator=(const MenuOverlay&) = delete;
  ~MenuOverlay() override;

  wl_surface* surface() const { return layer_.surface(); }
  /// The output, by the number of its global.
  uint32_t outputName() const { return outputName_; }
  bool isClosed() const { return isClosed_; }

  /// Follows the output's new place and scale.
  void follow(const Monitor& monitor);

 private:
  void closed();
  void pointerEvent(const PointerEvent& event) override;
  void touchEvent(const TouchEvent& event) override;
  double cursorScale() const override { return scale_; }

  WaylandConnection& connection_;
  MenuSessionClient& client_;
  std::function<void()> onClosed_;
  uint32_t outputName_;
  NSPoint origin_;  ///< In points of the desktop.
  double scale_ = 1;
  bool isClosed_ = false;
  LayerSurface layer_;
};
