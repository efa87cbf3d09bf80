#include "Hosts/Wayland/WaylandCursor.h"

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace {

/// Points.
int cursorSize() {
  constexpr int Usual = 24;
  constexpr int Largest = 256;
  const char* text = std::getenv("XCURSOR_SIZE");
  const std::string_view wanted = text != nullptr ? text : "";
  int size = 0;
  std::from_chars(wanted.data(), wanted.data() + wanted.size(), size);
  return size > 0 && size <= Largest ? size : Usual;
}

}  // namespace

void WaylandCursor::show(wl_pointer* pointer, uint32_t serial, int scale) {
  if (!theme_ || scale != scale_) {
    theme_.reset(wl_cursor_theme_load(std::getenv("XCURSOR_THEME"), cursorSize() * scale, shm_));
    scale_ = scale;
  }
  if (!theme_) return;
  wl_cursor* cursor = wl_cursor_theme_get_cursor(theme_.get(), "default");
  if (cursor == nullptr) cursor = wl_cursor_theme_get_cursor(theme_.get(), "left_ptr");
  if (cursor == nullptr || cursor->image_count == 0) return;
  wl_cursor_image* image = cursor->images[0];
  wl_buffer* buffer = wl_cursor_image_get_buffer(image);
  if (buffer == nullptr) return;
  if (!surface_) surface_.reset(wl_compositor_create_surface(compositor_));
  wl_surface_set_buffer_scale(surface_.get(), scale);
  wl_surface_attach(surface_.get(), buffer, 0, 0);
  wl_surface_damage_buffer(surface_.get(), 0, 0, static_cast<int32_t>(image->width),
                           static_cast<int32_t>(image->height));
  wl_surface_commit(surface_.get());
  wl_pointer_set_cursor(pointer, serial, surface_.get(),
                        static_cast<int32_t>(image->hotspot_x) / scale,
                        static_cast<int32_t>(image->hotspot_y) / scale);
}
