#include "Hosts/Wayland/WaylandSeat.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <cmath>

namespace {

/// From here on a pointer tells which events belong together.
constexpr uint32_t Version = 5;

PointerButton buttonFromCode(uint32_t code) {
  switch (code) {
    case BTN_LEFT:
      return PointerButton::Primary;
    case BTN_RIGHT:
      return PointerButton::Secondary;
    case BTN_MIDDLE:
      return PointerButton::Middle;
    default:
      return PointerButton::Other;
  }
}

}  // namespace

WaylandSeat::WaylandSeat(wl_registry* registry, uint32_t globalName, uint32_t version,
                         wl_compositor* compositor, wl_shm* shm)
    : seat_(static_cast<wl_seat*>(
          wl_registry_bind(registry, globalName, &wl_seat_interface, std::min(version, Version)))),
      cursor_(compositor, shm) {
  static constexpr wl_seat_listener Listener = {
      &WaylandEvent<&WaylandSeat::capabilities>::call,
      &ignoreWaylandEvent<wl_seat*, const char*>,
  };
  wl_seat_add_listener(seat_.get(), &Listener, this);
}

void WaylandSeat::capabilities(wl_seat* seat, uint32_t capabilities) {
  static constexpr wl_pointer_listener PointerListener = {
      &WaylandEvent<&WaylandSeat::enter>::call,
      &WaylandEvent<&WaylandSeat::leave>::call,
      &WaylandEvent<&WaylandSeat::motion>::call,
      &WaylandEvent<&WaylandSeat::button>::call,
      &WaylandEvent<&WaylandSeat::axis>::call,
      &WaylandEvent<&WaylandSeat::frame>::call,
      &ignoreWaylandEvent<wl_pointer*, uint32_t>,
      &ignoreWaylandEvent<wl_pointer*, uint32_t, uint32_t>,
      &ignoreWaylandEvent<wl_pointer*, uint32_t, int32_t>,
      &ignoreWaylandEvent<wl_pointer*, uint32_t, int32_t>,
  };
  static constexpr wl_touch_listener TouchListener = {
      &WaylandEvent<&WaylandSeat::down>::call,
      &WaylandEvent<&WaylandSeat::up>::call,
      &WaylandEvent<&WaylandSeat::touchMotion>::call,
      &ignoreWaylandEvent<wl_touch*>,
      &WaylandEvent<&WaylandSeat::touchCancelled>::call,
      &ignoreWaylandEvent<wl_touch*, int32_t, wl_fixed_t, wl_fixed_t>,
      &ignoreWaylandEvent<wl_touch*, int32_t, wl_fixed_t>,
  };
  if ((capabilities & WL_SEAT_CAPABILITY_POINTER) == 0) {
    tellPointer(PointerEvent::Kind::Cancel);
    underPointer_ = nullptr;
    pointer_.reset();
  } else if (!pointer_) {
    pointer_.reset(wl_seat_get_pointer(seat));
    wl_pointer_add_listener(pointer_.get(), &PointerListener, this);
  }
  if ((capabilities & WL_SEAT_CAPABILITY_TOUCH) == 0) {
    touchCancelled(nullptr);
    touch_.reset();
  } else if (!touch_) {
    touch_.reset(wl_seat_get_touch(seat));
    wl_touch_add_listener(touch_.get(), &TouchListener, this);
  }
  hasKeyboard_ = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
  updateKeyboard();
}

void WaylandSeat::listenToKeys(WaylandKeyClient* client) {
  keyboard_.endListening();
  keyClient_ = client;
  updateKeyboard();
}

void WaylandSeat::updateKeyboard() {
  if (!hasKeyboard_ || keyClient_ == nullptr) {
    keyboard_.endListening();
  } else if (!keyboard_.isListening()) {
    keyboard_.listen(seat_.get(), *keyClient_);
  }
}

void WaylandSeat::forget(const wl_surface* surface) {
  if (underPointer_ == surface) underPointer_ = nullptr;
  std::erase_if(fingers_, [&](const auto& finger) { return finger.second.surface == surface; });
}

WaylandInputTarget* WaylandSeat::targetOf(wl_surface* surface) {
  // An event may name a surface that has just ended.
  return surface != nullptr ? static_cast<WaylandInputTarget*>(wl_surface_get_user_data(surface))
                            : nullptr;
}

void WaylandSeat::tellPointer(PointerEvent::Kind kind, PointerButton button) {
  WaylandInputTarget* target = targetOf(underPointer_);
  if (target == nullptr) return;
  target->pointerEvent({.kind = kind,
                        .place = place_,
                        .button = button,
                        .scroll = kind == PointerEvent::Kind::Scroll ? scroll_ : NSPoint{},
                        .modifiers = keyboard_.modifierFlags(),
                        .time = time_});
}

void WaylandSeat::enter(wl_pointer* pointer, uint32_t serial, wl_surface* surface, wl_fixed_t x,
                        wl_fixed_t y) {
  underPointer_ = surface;
  place_ = {wl_fixed_to_double(x), wl_fixed_to_double(y)};
  if (const WaylandInputTarget* target = targetOf(surface)) {
    cursor_.show(pointer, serial, static_cast<int>(std::ceil(target->cursorScale())));
  }
  tellPointer(PointerEvent::Kind::Enter);
}

void WaylandSeat::leave(wl_pointer*, uint32_t, wl_surface*) {
  tellPointer(PointerEvent::Kind::Leave);
  underPointer_ = nullptr;
}

void WaylandSeat::motion(wl_pointer*, uint32_t time, wl_fixed_t x, wl_fixed_t y) {
  time_ = time;
  place_ = {wl_fixed_to_double(x), wl_fixed_to_double(y)};
  tellPointer(PointerEvent::Kind::Move);
}

void WaylandSeat::button(wl_pointer*, uint32_t, uint32_t time, uint32_t button, uint32_t state) {
  time_ = time;
  const bool isPress = state == WL_POINTER_BUTTON_STATE_PRESSED;
  tellPointer(isPress ? PointerEvent::Kind::Press : PointerEvent::Kind::Release,
              buttonFromCode(button));
}

void WaylandSeat::axis(wl_pointer* pointer, uint32_t time, uint32_t axis, wl_fixed_t value) {
  time_ = time;
  double& direction = axis == WL_POINTER_AXIS_HORIZONTAL_SCROLL ? scroll_.x : scroll_.y;
  direction += wl_fixed_to_double(value);
  if (wl_pointer_get_version(pointer) < WL_POINTER_FRAME_SINCE_VERSION) frame(pointer);
}

void WaylandSeat::frame(wl_pointer*) {
  if (scroll_ == NSPoint{}) return;
  tellPointer(PointerEvent::Kind::Scroll);
  scroll_ = {};
}

void WaylandSeat::tellTouch(const Finger& touched, TouchEvent::Kind kind, int32_t finger) const {
  if (WaylandInputTarget* target = targetOf(touched.surface)) {
    target->touchEvent({kind, finger, touched.place, time_});
  }
}

void WaylandSeat::down(wl_touch*, uint32_t, uint32_t time, wl_surface* surface, int32_t finger,
                       wl_fixed_t x, wl_fixed_t y) {
  time_ = time;
  fingers_[finger] = {surface, {wl_fixed_to_double(x), wl_fixed_to_double(y)}};
  tellTouch(fingers_[finger], TouchEvent::Kind::Down, finger);
}

void WaylandSeat::up(wl_touch*, uint32_t, uint32_t time, int32_t finger) {
  time_ = time;
  const auto found = fingers_.find(finger);
  if (found == fingers_.end()) return;
  const Finger touched = found->second;
  fingers_.erase(found);
  tellTouch(touched, TouchEvent::Kind::Up, finger);
}

void WaylandSeat::touchMotion(wl_touch*, uint32_t time, int32_t finger, wl_fixed_t x,
                              wl_fixed_t y) {
  time_ = time;
  const auto found = fingers_.find(finger);
  if (found == fingers_.end()) return;
  found->second.place = {wl_fixed_to_double(x), wl_fixed_to_double(y)};
  tellTouch(found->second, TouchEvent::Kind::Move, finger);
}

void WaylandSeat::touchCancelled(wl_touch*) {
  // Whoever is told may end the surface of the next finger, too, which is forgotten then.
  while (!fingers_.empty()) {
    const auto cancelled = fingers_.extract(fingers_.begin());
    tellTouch(cancelled.mapped(), TouchEvent::Kind::Cancel, cancelled.key());
  }
}
