#include "Hosts/Wayland/LayerSurface.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// How many columns the compositor may stretch to so many pixels. One is not enough: in the 16 bits
/// that some keep of a fraction, the last pixel's would lie beyond it.
int stretchableWidth(int pixels) {
  constexpr int64_t Fractions = 65536;
  return static_cast<int>(int64_t{pixels} * pixels / Fractions) + 2;
}

}  // namespace

LayerSurface::LayerSurface(WaylandConnection& connection, wl_output* output, const Place& place,
                           Events events)
    : events_(std::move(events)),
      pictures_(connection.shm()),
      surface_(wl_compositor_create_surface(connection.compositor())),
      layer_(zwlr_layer_shell_v1_get_layer_surface(
          connection.layerShell(), surface_.get(), output,
          place.layer == Layer::Menus ? ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY
                                      : ZWLR_LAYER_SHELL_V1_LAYER_TOP,
          place.layer == Layer::Menus ? "velmora-menus" : "velmora-menubar")),
      height_(place.height),
      isAsHighAsOutput_(place.height == 0) {
  static constexpr zwlr_layer_surface_v1_listener Listener = {
      &WaylandEvent<&LayerSurface::configure>::call,
      &WaylandEvent<&LayerSurface::close>::call,
  };
  zwlr_layer_surface_v1_add_listener(layer_.get(), &Listener, this);
  uint32_t anchor = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT |
                    ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
  if (isAsHighAsOutput_) anchor |= ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM;
  zwlr_layer_surface_v1_set_anchor(layer_.get(), anchor);
  zwlr_layer_surface_v1_set_size(layer_.get(), 0, static_cast<uint32_t>(place.height));
  // -1 puts it at the very edge, over what others have reserved.
  zwlr_layer_surface_v1_set_exclusive_zone(layer_.get(),
                                           place.space == Space::Reserved ? place.height : -1);
  if (place.layer == Layer::Menus) {
    zwlr_layer_surface_v1_set_keyboard_interactivity(
        layer_.get(), ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE);
  }
  if (connection.viewporter() != nullptr) {
    viewport_.reset(wp_viewporter_get_viewport(connection.viewporter(), surface_.get()));
  }
  if (place.input == Input::Passed) {
    const WaylandObject<wl_region> nothing(wl_compositor_create_region(connection.compositor()));
    wl_surface_set_input_region(surface_.get(), nothing.get());
  }
  // A commit without a picture asks for the size.
  wl_surface_commit(surface_.get());
  connection.flush();
}

void LayerSurface::configure(zwlr_layer_surface_v1* layer, uint32_t serial, uint32_t width,
                             uint32_t height) {
  zwlr_layer_surface_v1_ack_configure(layer, serial);
  const int newHeight = isAsHighAsOutput_ ? static_cast<int>(height) : height_;
  if (static_cast<int>(width) == width_ && newHeight == height_) return;
  width_ = static_cast<int>(width);
  height_ = newHeight;
  events_.configured();
}

void LayerSurface::fill(std::span<const uint32_t> rows, double scale) {
  const auto height = static_cast<int>(rows.size());
  const int full = static_cast<int>(std::lround(width_ * scale));
  const int width = viewport_ ? std::min(full, stretchableWidth(full)) : full;
  std::vector<uint32_t> pixels;
  pixels.reserve(rows.size() * static_cast<size_t>(width));
  for (const uint32_t row : rows)
    pixels.insert(pixels.end(), static_cast<size_t>(width), row);
  show({pixels, width, height, width}, scale);
}

void LayerSurface::fillClear() {
  // One clear pixel, or as many as it takes without viewports.
  const int width = viewport_ ? 1 : width_;
  const int height = viewport_ ? 1 : height_;
  const std::vector<uint32_t> clear(static_cast<size_t>(width) * static_cast<size_t>(height), 0);
  show({clear, width, height, width}, 1);
}

void LayerSurface::show(const PixelPicture& picture, double scale) {
  if (viewport_) {
    wp_viewport_set_destination(viewport_.get(), width_, height_);
  } else {
    wl_surface_set_buffer_scale(surface_.get(), static_cast<int32_t>(std::lround(scale)));
  }
  wl_surface_attach(surface_.get(), pictures_.buffer(picture), 0, 0);
  wl_surface_damage_buffer(surface_.get(), 0, 0, picture.width, picture.height);
  wl_surface_commit(surface_.get());
}
