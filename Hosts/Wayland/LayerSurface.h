#pragma once

#include <wayland-client.h>

#include <cstdint>
#include <functional>
#include <span>

#include "Hosts/Wayland/ShmPictures.h"
#include "Hosts/Wayland/WaylandConnection.h"
#include "Hosts/Wayland/WaylandObject.h"

/// A surface along the upper edge of an output, as wide as that, or one over all of it.
class LayerSurface {
 public:
  /// Menus are above everything, bars as well, and have the keyboard.
  enum class Layer { Bars, Menus };
  enum class Space { Reserved, Shared };  ///< Whether other windows are kept off it.
  enum class Input { Taken, Passed };     ///< Whether it gets the pointer over it.

  struct Place {
    Layer layer = Layer::Bars;
    int height = 0;  ///< Points; 0 for that of the output.
    Space space = Space::Shared;
    Input input = Input::Taken;
  };

  struct Events {
    std::function<void()> configured;  ///< The size is known, or another.
    std::function<void()> closed;      ///< The compositor has taken it away.
  };

  /// `output` is of the same connection, which must outlive the surface.
  LayerSurface(WaylandConnection& connection, wl_output* output, const Place& place, Events events);
  LayerSurface(const LayerSurface&) = delete;
  LayerSurface& operator=(const LayerSurface&) = delete;

  wl_surface* surface() const { return surface_.get(); }
  /// In points; what the output tells is 0 until the first configuration.
  int width() const { return width_; }
  int height() const { return height_; }

  /// Fills the surface: one colour for each row of pixels from the top down, `scale` pixels a
  /// point, which is whole where the compositor has no viewports.
  void fill(std::span<const uint32_t> rows, double scale);
  /// Shows nothing all over the surface, so that it gets the input there.
  void fillClear();

 private:
  void show(const PixelPicture& picture, double scale);
  void configure(zwlr_layer_surface_v1* layer, uint32_t serial, uint32_t width, uint32_t height);
  void close(zwlr_layer_surface_v1*) { events_.closed(); }

  Events events_;
  ShmPictures pictures_;
  WaylandObject<wl_surface> surface_;
  WaylandObject<wp_viewport> viewport_;
  WaylandObject<zwlr_layer_surface_v1> layer_;
  int width_ = 0;
  int height_ = 0;
  bool isAsHighAsOutput_;
};
