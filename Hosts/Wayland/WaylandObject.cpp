#include "Hosts/Wayland/WaylandObject.h"

#include <wayland-client.h>
#include <wayland-cursor.h>

#include <fractional-scale-v1-client.h>
#include <viewporter-client.h>
#include <xdg-output-unstable-v1-client.h>
#include "Hosts/Wayland/LayerShellProtocol.h"

void WaylandDeleter::operator()(wl_buffer* object) const { wl_buffer_destroy(object); }

void WaylandDeleter::operator()(wl_callback* object) const { wl_callback_destroy(object); }

void WaylandDeleter::operator()(wl_compositor* object) const { wl_compositor_destroy(object); }

void WaylandDeleter::operator()(wl_cursor_theme* object) const { wl_cursor_theme_destroy(object); }

void WaylandDeleter::operator()(wl_keyboard* object) const {
  if (wl_keyboard_get_version(object) >= WL_KEYBOARD_RELEASE_SINCE_VERSION) {
    wl_keyboard_release(object);
  } else {
    wl_keyboard_destroy(object);
  }
}

void WaylandDeleter::operator()(wl_output* object) const {
  if (wl_output_get_version(object) >= WL_OUTPUT_RELEASE_SINCE_VERSION) {
    wl_output_release(object);
  } else {
    wl_output_destroy(object);
  }
}

void WaylandDeleter::operator()(wl_pointer* object) const {
  if (wl_pointer_get_version(object) >= WL_POINTER_RELEASE_SINCE_VERSION) {
    wl_pointer_release(object);
  } else {
    wl_pointer_destroy(object);
  }
}

void WaylandDeleter::operator()(wl_region* object) const { wl_region_destroy(object); }

void WaylandDeleter::operator()(wl_registry* object) const { wl_registry_destroy(object); }

void WaylandDeleter::operator()(wl_seat* object) const { wl_seat_destroy(object); }

void WaylandDeleter::operator()(wl_shm* object) const { wl_shm_destroy(object); }

void WaylandDeleter::operator()(wl_subcompositor* object) const {
  wl_subcompositor_destroy(object);
}

void WaylandDeleter::operator()(wl_subsurface* object) const { wl_subsurface_destroy(object); }

void WaylandDeleter::operator()(wl_surface* object) const { wl_surface_destroy(object); }

void WaylandDeleter::operator()(wl_touch* object) const {
  if (wl_touch_get_version(object) >= WL_TOUCH_RELEASE_SINCE_VERSION) {
    wl_touch_release(object);
  } else {
    wl_touch_destroy(object);
  }
}

void WaylandDeleter::operator()(wp_fractional_scale_manager_v1* object) const {
  wp_fractional_scale_manager_v1_destroy(object);
}

void WaylandDeleter::operator()(wp_fractional_scale_v1* object) const {
  wp_fractional_scale_v1_destroy(object);
}

void WaylandDeleter::operator()(wp_viewport* object) const { wp_viewport_destroy(object); }

void WaylandDeleter::operator()(wp_viewporter* object) const { wp_viewporter_destroy(object); }

void WaylandDeleter::operator()(zwlr_layer_shell_v1* object) const {
  zwlr_layer_shell_v1_destroy(object);
}

void WaylandDeleter::operator()(zwlr_layer_surface_v1* object) const {
  zwlr_layer_surface_v1_destroy(object);
}

void WaylandDeleter::operator()(zxdg_output_manager_v1* object) const {
  zxdg_output_manager_v1_destroy(object);
}

void WaylandDeleter::operator()(zxdg_output_v1* object) const { zxdg_output_v1_destroy(object); }
