#pragma once

#include <wayland-client.h>

#include <functional>

#include "Hosts/Display/Display.h"
#include "Hosts/Wayland/ShmPictures.h"
#include "Hosts/Wayland/WaylandConnection.h"
#include "Hosts/Wayland/WaylandObject.h"

/// The item's surface on a bar's: a change of the item sends its own few pixels and no more.
class ItemSurface {
 public:
  /// `onFrame` is called when the compositor has shown a picture and takes the next.
  ItemSurface(WaylandConnection& connection, wl_surface* bar, std::function<void()> onFrame);
  ItemSurface(const ItemSurface&) = delete;
  ItemSurface& operator=(const ItemSurface&) = delete;

  /// Shows a picture `x` pixels from the bar's left end, at `scale` pixels a point, where both the
  /// place and the size are whole points.
  void present(const PixelPicture& picture, int x, double scale, PixelRect changed);

  /// Whether the compositor has a picture that it has not shown yet, as while the bar is hidden.
  bool isAwaitingFrame() const { return frame_ != nullptr; }
  /// Waits for that no more: a picture outside of a bar that has changed is never shown.
  void forgetFrame() { frame_.reset(); }

 private:
  void frameDone(wl_callback*, uint32_t);

  wl_surface* bar_;
  std::function<void()> onFrame_;
  ShmPictures pictures_;
  WaylandObject<wl_surface> surface_;
  WaylandObject<wl_subsurface> subsurface_;
  WaylandObject<wp_viewport> viewport_;
  WaylandObject<wl_callback> frame_;
  PixelRect frameOnBar_;  ///< In points.
};
