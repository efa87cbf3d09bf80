#include "Hosts/X11/X11Pointer.h"

#include <algorithm>
#include <optional>

#include "Hosts/X11/X11Connection.h"

namespace {

/// X11 has a button for each direction of a wheel. The distance is what Wayland's compositors tell
/// of a wheel's click.
std::optional<NSPoint> scrollOfButton(xcb_button_t button) {
  constexpr double Click = 15;
  switch (button) {
    case 4:
      return NSPoint{0, -Click};
    case 5:
      return NSPoint{0, Click};
    case 6:
      return NSPoint{-Click, 0};
    case 7:
      return NSPoint{Click, 0};
    default:
      return std::nullopt;
  }
}

PointerButton buttonOf(xcb_button_t button) {
  switch (button) {
    case 1:
      return PointerButton::Primary;
    case 2:
      return PointerButton::Middle;
    case 3:
      return PointerButton::Secondary;
    default:
      return PointerButton::Other;
  }
}

}  // namespace

void X11Pointer::handleEvent(const xcb_generic_event_t& event, xcb_window_t window, double scale) {
  switch (eventType(event)) {
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE: {
      const auto& button = eventAs<xcb_button_press_event_t>(event);
      if (button.event == window) {
        handleButton(button, eventType(event) == XCB_BUTTON_PRESS, scale);
      }
      break;
    }
    case XCB_MOTION_NOTIFY: {
      const auto& motion = eventAs<xcb_motion_notify_event_t>(event);
      if (motion.event != window) break;
      moveTo(motion, scale);
      tell(PointerEvent::Kind::Move);
      break;
    }
    case XCB_ENTER_NOTIFY: {
      const auto& crossing = eventAs<xcb_enter_notify_event_t>(event);
      if (crossing.event != window || isInside_) break;
      moveTo(crossing, scale);
      isInside_ = true;
      tell(PointerEvent::Kind::Enter);
      break;
    }
    case XCB_LEAVE_NOTIFY: {
      const auto& crossing = eventAs<xcb_leave_notify_event_t>(event);
      if (crossing.event != window) break;
      // After the last button comes another, for the end of the grab.
      if (heldButtons_ > 0 && crossing.mode == XCB_NOTIFY_MODE_NORMAL) break;
      moveTo(crossing, scale);
      loseWindow();
      break;
    }
    default:
      break;
  }
}

void X11Pointer::loseWindow() {
  if (heldButtons_ > 0) {
    heldButtons_ = 0;
    tell(PointerEvent::Kind::Cancel);
  }
  if (!isInside_) return;
  isInside_ = false;
  tell(PointerEvent::Kind::Leave);
}

void X11Pointer::handleButton(const xcb_button_press_event_t& event, bool isPress, double scale) {
  moveTo(event, scale);
  if (const auto scroll = scrollOfButton(event.detail)) {
    if (isPress) tell(PointerEvent::Kind::Scroll, PointerButton::Primary, *scroll);
    return;
  }
  heldButtons_ = std::max(0, heldButtons_ + (isPress ? 1 : -1));
  tell(isPress ? PointerEvent::Kind::Press : PointerEvent::Kind::Release, buttonOf(event.detail));
}

void X11Pointer::tell(PointerEvent::Kind kind, PointerButton button, NSPoint scroll) {
  client_.pointerEvent({kind, place_, button, scroll, time_});
}

template <typename Event>
void X11Pointer::moveTo(const Event& event, double scale) {
  place_ = {event.event_x / scale, event.event_y / scale};
  time_ = event.time;
}
