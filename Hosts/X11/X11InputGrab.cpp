#include "Hosts/X11/X11InputGrab.h"

#include <array>
#include <chrono>
#include <thread>

namespace {

/// The window is as large as X11 can have them: it need not follow the desktop's size.
constexpr uint16_t LargestSize = 32767;

}  // namespace

X11InputGrab::X11InputGrab(X11Connection& connection)
    : connection_(connection), window_(xcb_generate_id(connection.get())) {
  const std::array<uint32_t, 2> values{
      1, XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
  xcb_create_window(connection.get(), 0, window_, connection.root(), 0, 0, LargestSize, LargestSize,
                    0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                    XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
  xcb_map_window(connection.get(), window_);
}

X11InputGrab::~X11InputGrab() {
  xcb_connection_t* const x11 = connection_.get();
  xcb_ungrab_keyboard(x11, XCB_CURRENT_TIME);
  xcb_ungrab_pointer(x11, XCB_CURRENT_TIME);
  xcb_destroy_window(x11, window_);
  connection_.flush();
}

bool X11InputGrab::take() {
  // A key that asks for a menu is held by the window manager until it is released. The loop cannot
  // serve that time: it would serve the next click, too.
  constexpr int Attempts = 50;
  constexpr std::chrono::milliseconds Pause{10};
  bool hasPointer = false;
  for (int attempt = 0; attempt < Attempts; ++attempt) {
    if (attempt > 0) std::this_thread::sleep_for(Pause);
    hasPointer = hasPointer || takePointer();
    if (hasPointer && takeKeyboard()) return true;
    if (xcb_connection_has_error(connection_.get()) != 0) return false;
  }
  return false;
}

bool X11InputGrab::takePointer() {
  // Without leaving: on the way to a menu's window the pointer leaves this one, but not the menus.
  constexpr uint16_t Mask = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                            XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW;
  const auto answer = connection_.waitFor(
      xcb_grab_pointer_reply,
      xcb_grab_pointer(connection_.get(), 0, window_, Mask, XCB_GRAB_MODE_ASYNC,
                       XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME));
  return answer && answer->status == XCB_GRAB_STATUS_SUCCESS;
}

bool X11InputGrab::takeKeyboard() {
  const auto answer = connection_.waitFor(
      xcb_grab_keyboard_reply, xcb_grab_keyboard(connection_.get(), 0, window_, XCB_CURRENT_TIME,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  return answer && answer->status == XCB_GRAB_STATUS_SUCCESS;
}
