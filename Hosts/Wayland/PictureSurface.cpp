#include "Hosts/Wayland/PictureSurface.h"

#include <cmath>
#include <utility>

PictureSurface::PictureSurface(WaylandConnection& connection, wl_surface* parent,
                               std::function<void()> onFrame)
    : parent_(parent),
      onFrame_(std::move(onFrame)),
      pictures_(connection.shm()),
      surface_(wl_compositor_create_surface(connection.compositor())),
      subsurface_(
          wl_subcompositor_get_subsurface(connection.subcompositor(), surface_.get(), parent)) {
  const WaylandObject<wl_region> nothing(wl_compositor_create_region(connection.compositor()));
  wl_surface_set_input_region(surface_.get(), nothing.get());
  if (connection.viewporter() != nullptr) {
    viewport_.reset(wp_viewporter_get_viewport(connection.viewporter(), surface_.get()));
  }
}

void PictureSurface::present(const PixelPicture& picture, int x, int y, double scale,
                             PixelRect changed) {
  const PixelRect place{x, y, picture.width, picture.height};
  const bool isElsewhere = place != place_ || scale != scale_;
  place_ = place;
  scale_ = scale;
  if (isElsewhere) {
    const auto points = [scale](int pixels) {
      return static_cast<int32_t>(std::lround(pixels / scale));
    };
    // The new place and the new picture come into force together, with the parent's next commit.
    wl_subsurface_set_sync(subsurface_.get());
    wl_subsurface_set_position(subsurface_.get(), points(x), points(y));
    if (viewport_) {
      wp_viewport_set_destination(viewport_.get(), points(picture.width), points(picture.height));
    } else {
      wl_surface_set_buffer_scale(surface_.get(), static_cast<int32_t>(std::lround(scale)));
    }
    changed = {0, 0, picture.width, picture.height};
  }
  wl_surface_attach(surface_.get(), pictures_.buffer(picture), 0, 0);
  wl_surface_damage_buffer(surface_.get(), changed.x, changed.y, changed.width, changed.height);
  static constexpr wl_callback_listener Listener = {
      &WaylandEvent<&PictureSurface::frameDone>::call};
  frame_.reset(wl_surface_frame(surface_.get()));
  wl_callback_add_listener(frame_.get(), &Listener, this);
  wl_surface_commit(surface_.get());
  if (!isElsewhere) return;
  wl_surface_commit(parent_);
  wl_subsurface_set_desync(subsurface_.get());
}

void PictureSurface::frameDone(wl_callback*, uint32_t) {
  frame_.reset();
  onFrame_();
}
