#pragma once

#include <wayland-client.h>
#include <wayland-cursor.h>

#include "Hosts/Wayland/WaylandObject.h"

/// The user's own arrow for the pointer. Its theme is loaded when the pointer first comes.
class WaylandCursor {
 public:
  WaylandCursor(wl_compositor* compositor, wl_shm* shm) : compositor_(compositor), shm_(shm) {}

  /// Gives `pointer`, which has entered a surface with `serial`, the arrow at whole pixels a point.
  void show(wl_pointer* pointer, uint32_t serial, int scale);

 private:
  wl_compositor* compositor_;
  wl_shm* shm_;
  int scale_ = 0;
  WaylandObject<wl_cursor_theme> theme_;
  WaylandObject<wl_surface> surface_;
};
