#pragma once

#include <xcb/xcb.h>

#include "Hosts/Display/Display.h"

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
  void handleButton(const xcb_button_press_event_t& event, bool isPress, double scale);
  void tell(PointerEvent::Kind kind, PointerButton button = PointerButton::Primary,
            NSPoint scroll = {});
  template <typename Event>
  void moveTo(const Event& event, double scale);

  SurfaceClient& client_;
  NSPoint place_;
  uint32_t time_ = 0;
  bool isInside_ = false;
  int heldButtons_ = 0;
};
