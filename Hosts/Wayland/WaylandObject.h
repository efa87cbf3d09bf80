#pragma once

#include <memory>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"

struct wl_buffer;
struct wl_callback;
struct wl_compositor;
struct wl_cursor_theme;
struct wl_keyboard;
struct wl_output;
struct wl_pointer;
struct wl_region;
struct wl_registry;
struct wl_seat;
struct wl_shm;
struct wl_subcompositor;
struct wl_subsurface;
struct wl_surface;
struct wl_touch;
struct wp_fractional_scale_manager_v1;
struct wp_fractional_scale_v1;
struct wp_viewport;
struct wp_viewporter;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;
struct zxdg_output_manager_v1;
struct zxdg_output_v1;

/// Ends a protocol object.
struct WaylandDeleter {
  void operator()(wl_buffer* object) const;
  void operator()(wl_callback* object) const;
  void operator()(wl_compositor* object) const;
  void operator()(wl_cursor_theme* object) const;
  void operator()(wl_keyboard* object) const;
  void operator()(wl_output* object) const;
  void operator()(wl_pointer* object) const;
  void operator()(wl_region* object) const;
  void operator()(wl_registry* object) const;
  void operator()(wl_seat* object) const;
  void operator()(wl_shm* object) const;
  void operator()(wl_subcompositor* object) const;
  void operator()(wl_subsurface* object) const;
  void operator()(wl_surface* object) const;
  void operator()(wl_touch* object) const;
  void operator()(wp_fractional_scale_manager_v1* object) const;
  void operator()(wp_fractional_scale_v1* object) const;
  void operator()(wp_viewport* object) const;
  void operator()(wp_viewporter* object) const;
  void operator()(zwlr_layer_shell_v1* object) const;
  void operator()(zwlr_layer_surface_v1* object) const;
  void operator()(zxdg_output_manager_v1* object) const;
  void operator()(zxdg_output_v1* object) const;
};

/// A protocol object that ends with its owner.
template <typename T>
using WaylandObject = std::unique_ptr<T, WaylandDeleter>;

template <auto Method>
struct WaylandEvent;

/// Makes the C function for a method that answers an event: libwayland calls it with the object
/// that was given with the listener, the sender and the event's arguments. An exception is
/// reported.
template <typename Self, typename Sender, typename... Arguments,
          void (Self::*Method)(Sender*, Arguments...)>
struct WaylandEvent<Method> {
  static void call(void* self, Sender* sender, Arguments... arguments) {
    NSRunLoop::guarded([&] { (static_cast<Self*>(self)->*Method)(sender, arguments...); });
  }
};

/// For the events that say nothing of use here.
template <typename... Arguments>
void ignoreWaylandEvent(void*, Arguments...) {}
