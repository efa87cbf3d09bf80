#pragma once

#include <wayland-client.h>

#include <functional>

#include "Hosts/Display/Pixels.h"
#include "Hosts/Wayland/ShmPictures.h"
#include "Hosts/Wayland/WaylandConnection.h"
#include "Hosts/Wayland/WaylandObject.h"

/// A picture on a layer surface: a change of it sends its own few pixels and no more. It gets no
/// input. It stands above the pictures that the layer surface has already.
class PictureSurface {
 public:
  /// `onFrame` is called when the compositor has shown a picture and takes the next.
  PictureSurface(WaylandConnection& connection, wl_surface* parent, std::function<void()> onFrame);
  PictureSurface(const PictureSurface&) = delete;
  PictureSurface& operator=(const PictureSurface&) = delete;

  /// Shows a picture with its upper left corner `x` and `y` pixels from the parent's, at `scale`
  /// pixels a point, where both the place and the size are whole points. `changed` is where it
  /// differs from the one before, if that had its place and size.
  void present(const PixelPicture& picture, int x, int y, double scale, PixelRect changed);

  /// Whether the compositor has a picture that it has not shown yet, as while the parent is hidden.
  bool isAwaitingFrame() const { return frame_ != nullptr; }
  /// Waits for that no more: a picture outside of a parent that has changed is never shown.
  void forgetFrame() { frame_.reset(); }

 private:
  void frameDone(wl_callback*, uint32_t);

  wl_surface* parent_;
  std::function<void()> onFrame_;
  ShmPictures pictures_;
  WaylandObject<wl_surface> surface_;
  WaylandObject<wl_subsurface> subsurface_;
  WaylandObject<wp_viewport> viewport_;
  WaylandObject<wl_callback> frame_;
  PixelRect place_;  ///< On the parent.
  double scale_ = 0;
};
