#pragma once

#include <gtk/gtk.h>

#include <memory>

#include "Hosts/Gtk/DesktopDisplay.h"

/// Where a display puts the bar's window and how it keeps other windows off it. One implementation
/// for each kind of display.
class BarPlacement {
 public:
  virtual ~BarPlacement() = default;

  /// Moves the bar along the upper edge of `monitor`, also when that has changed its geometry, and
  /// reserves the space.
  virtual void moveTo(GdkMonitor* monitor) = 0;
};

/// `bar` must not be realised yet and must outlive the placement.
std::unique_ptr<BarPlacement> makeLayerShellPlacement(GtkWindow* bar);
std::unique_ptr<BarPlacement> makeX11DockPlacement(GtkWindow* bar);
