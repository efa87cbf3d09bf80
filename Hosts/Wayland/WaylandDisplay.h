#pragma once

#include <memory>

#include "Hosts/Display/Display.h"

/// What a Wayland session offers to a bar.
struct WaylandOffer {
  std::unique_ptr<Display> display;  ///< Null if there is none to show a bar on.
  bool lacksLayerShell = false;      ///< There is a compositor, but not for bars.
};

WaylandOffer openWaylandDisplay();
