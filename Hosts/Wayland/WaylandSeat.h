#pragma once

#include <wayland-client.h>

#include <cstdint>
#include <map>

#include "Hosts/Display/Display.h"
#include "Hosts/Wayland/WaylandCursor.h"
#include "Hosts/Wayland/WaylandKeyboard.h"
#include "Hosts/Wayland/WaylandObject.h"

/// Who gets the input of a surface. A pointer to it is the surface's user data. It may end its
/// surface when it is told of an event.
class WaylandInputTarget {
 public:
  virtual ~WaylandInputTarget() = default;

  /// Places are points from the surface's upper left corner.
  virtual void pointerEvent(const PointerEvent& event) = 0;
  virtual void touchEvent(const TouchEvent& event) = 0;
  /// Pixels a point of the pointer's picture.
  virtual double cursorScale() const = 0;
};

/// The pointer and the touch screen of the seat, and its keyboard while someone listens to it.
class WaylandSeat {
 public:
  WaylandSeat(wl_registry* registry, uint32_t globalName, uint32_t version,
              wl_compositor* compositor, wl_shm* shm);
  WaylandSeat(const WaylandSeat&) = delete;
  WaylandSeat& operator=(const WaylandSeat&) = delete;

  /// A surface that ends must not get what is still under way for it.
  void forget(const wl_surface* surface);

  /// Tells `client` of the keyboard, if there is one or when one comes; null ends that. A keyboard
  /// that nobody listens to sends nothing.
  void listenToKeys(WaylandKeyClient* client);

 private:
  void capabilities(wl_seat*, uint32_t capabilities);
  void updateKeyboard();

  void enter(wl_pointer*, uint32_t serial, wl_surface* surface, wl_fixed_t x, wl_fixed_t y);
  void leave(wl_pointer*, uint32_t serial, wl_surface* surface);
  void motion(wl_pointer*, uint32_t time, wl_fixed_t x, wl_fixed_t y);
  void button(wl_pointer*, uint32_t serial, uint32_t time, uint32_t button, uint32_t state);
  void axis(wl_pointer*, uint32_t time, uint32_t axis, wl_fixed_t value);
  void frame(wl_pointer*);

  void down(wl_touch*, uint32_t serial, uint32_t time, wl_surface* surface, int32_t finger,
            wl_fixed_t x, wl_fixed_t y);
  void up(wl_touch*, uint32_t serial, uint32_t time, int32_t finger);
  void touchMotion(wl_touch*, uint32_t time, int32_t finger, wl_fixed_t x, wl_fixed_t y);
  void touchCancelled(wl_touch*);

  static WaylandInputTarget* targetOf(wl_surface* surface);
  void tellPointer(PointerEvent::Kind kind, PointerButton button = PointerButton::Primary);

  WaylandObject<wl_seat> seat_;
  WaylandObject<wl_pointer> pointer_;
  WaylandObject<wl_touch> touch_;
  bool hasKeyboard_ = false;
  WaylandKeyClient* keyClient_ = nullptr;
  WaylandKeyboard keyboard_;
  WaylandCursor cursor_;

  wl_surface* underPointer_ = nullptr;
  NSPoint place_;
  NSPoint scroll_;
  uint32_t time_ = 0;
  struct Finger {
    wl_surface* surface = nullptr;
    NSPoint place;
  };
  void tellTouch(const Finger& touched, TouchEvent::Kind kind, int32_t finger) const;
  std::map<int32_t, Finger> fingers_;
};
