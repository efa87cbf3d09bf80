#include "Hosts/X11/X11Pointer.h"

#include <algorithm>
#include <utility>

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

NSEventModifierFlags flagsOf(uint16_t state) {
  NSEventModifierFlags flags = 0;
  if ((state & XCB_MOD_MASK_SHIFT) != 0) flags |= NSEventModifierFlagShift;
  if ((state & XCB_MOD_MASK_CONTROL) != 0) flags |= NSEventModifierFlagControl;
  // Where practically all keymaps have them.
  if ((state & XCB_MOD_MASK_1) != 0) flags |= NSEventModifierFlagOption;
  if ((state & XCB_MOD_MASK_4) != 0) flags |= NSEventModifierFlagCommand;
  return flags;
}

}  // namespace

std::optional<PointerEvent> pointerEventOf(const xcb_generic_event_t& event, double scale) {
  // The other events of the pointer begin like this one.
  const auto& button = eventAs<xcb_button_press_event_t>(event);
  PointerEvent told;
  told.place = {button.event_x / scale, button.event_y / scale};
  told.modifiers = flagsOf(button.state);
  told.time = button.time;
  switch (eventType(event)) {
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE: {
      const bool isPress = eventType(event) == XCB_BUTTON_PRESS;
      told.kind = isPress ? PointerEvent::Kind::Press : PointerEvent::Kind::Release;
      const auto scroll = scrollOfButton(button.detail);
      if (!scroll) {
        told.button = buttonOf(button.detail);
        return told;
      }
      if (!isPress) return std::nullopt;
      told.kind = PointerEvent::Kind::Scroll;
      told.scroll = *scroll;
      return told;
    }
    case XCB_MOTION_NOTIFY:
      return told;
    case XCB_ENTER_NOTIFY:
      told.kind = PointerEvent::Kind::Enter;
      return told;
    case XCB_LEAVE_NOTIFY:
      told.kind = PointerEvent::Kind::Leave;
      return told;
    default:
      return std::nullopt;
  }
}

void X11Pointer::handleEvent(const xcb_generic_event_t& event, xcb_window_t window, double scale) {
  const auto told = pointerEventOf(event, scale);
  if (!told || eventAs<xcb_button_press_event_t>(event).event != window) return;
  last_ = *told;
  switch (told->kind) {
    case PointerEvent::Kind::Enter:
      if (std::exchange(isInside_, true)) return;
      break;
    case PointerEvent::Kind::Leave:
      // After the last button comes another, for the end of the grab.
      if (heldButtons_ == 0 ||
          eventAs<xcb_leave_notify_event_t>(event).mode != XCB_NOTIFY_MODE_NORMAL) {
        loseWindow();
      }
      return;
    case PointerEvent::Kind::Press:
      ++heldButtons_;
      break;
    case PointerEvent::Kind::Release:
      heldButtons_ = std::max(0, heldButtons_ - 1);
      break;
    case PointerEvent::Kind::Move:
    case PointerEvent::Kind::Cancel:
    case PointerEvent::Kind::Scroll:
      break;
  }
  client_.pointerEvent(*told);
}

void X11Pointer::loseWindow() {
  if (std::exchange(heldButtons_, 0) > 0) tell(PointerEvent::Kind::Cancel);
  if (std::exchange(isInside_, false)) tell(PointerEvent::Kind::Leave);
}

void X11Pointer::tell(PointerEvent::Kind kind) {
  PointerEvent event;
  event.kind = kind;
  event.place = last_.place;
  event.time = last_.time;
  client_.pointerEvent(event);
}
