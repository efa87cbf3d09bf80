#pragma once

#include <wayland-client.h>

#include <functional>

#include "Hosts/Display/Display.h"
#include "Hosts/Wayland/WaylandConnection.h"
#include "Hosts/Wayland/WaylandObject.h"

/// The scale at which a surface is to be drawn.
class SurfaceScale {
 public:
  /// `onChange` is called when the compositor has told another scale that counts.
  SurfaceScale(WaylandConnection& connection, wl_surface* surface, std::function<void()> onChange);
  SurfaceScale(const SurfaceScale&) = delete;
  SurfaceScale& operator=(const SurfaceScale&) = delete;

  /// The surface has been seen: what the compositor tells counts from now on. Before, some tell the
  /// scale of a surface that is nowhere.
  void shown() { isShown_ = true; }

  /// Pixels a point on `monitor`, where the surface is: what the compositor has told last, else the
  /// monitor's own. Whole where there are no viewports.
  double on(const Monitor& monitor) const;

 private:
  void preferredScale(wp_fractional_scale_v1*, uint32_t scale);

  WaylandConnection& connection_;
  std::function<void()> onChange_;
  WaylandObject<wp_fractional_scale_v1> fractionalScale_;
  double preferred_ = 0;
  bool isShown_ = false;
};

/// After how many pixels a whole one begins on a whole point again, at `scale` pixels a point:
/// surfaces stand on whole points only.
int pixelGridAt(double scale);
