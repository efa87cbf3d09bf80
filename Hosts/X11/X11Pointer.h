#pragma once

#include <xcb/xcb.h>

#include <optional>

#include "Hosts/Display/Display.h"

/// What an event says of the pointer, in points from the upper left corner of the window that it
/// names; `scale` is pixels a point. Null if nothing: for other events, and for the release of a
/// wheel.
std::optional<PointerEvent> pointerEventOf(const xcb_generic_event_t& event, double scale);

/// Tells a window's client what happens to the pointer, in the words of every kind of display.
/// While a button is held the window keeps the pointer wherever that goes, so it leaves only then.
class X11Pointer {
 public:
  /// `client` must outlive this object.
  explicit X11Pointer(SurfaceClient& client) : client_(client) {}

  /// Passes over what is not about the pointer on `window`. `scale` is pixels a point.
  void handleEvent(const xcb_generic_event_t& event, xcb_window_t window, double scale);

  /// The window has gone from under the pointer.
  void loseWindow();

 private:
  void tell(PointerEvent::Kind kind);

  SurfaceClient& client_;
  PointerEvent last_;  // Where and when.
  bool isInside_ = false;
  int heldButtons_ = 0;
};
