#include "Tests/Support/X11Input.h"

#include <X11/extensions/XTest.h>
#include <X11/Xlib.h>

#include <cstdlib>
#include <stdexcept>

struct X11Input::Connection {
  explicit Connection(const std::string& name) : display(XOpenDisplay(name.c_str())) {
    if (display == nullptr) throw std::runtime_error("no connection to the X11 server " + name);
  }
  ~Connection() { XCloseDisplay(display); }

  Display* display;
};

X11Input::X11Input(const X11Server& server)
    : connection_(std::make_unique<Connection>(server.environment().at("DISPLAY").value())) {}

X11Input::~X11Input() = default;

void X11Input::move(int x, int y) {
  XTestFakeMotionEvent(connection_->display, -1, x, y, CurrentTime);
  XSync(connection_->display, False);
}

void X11Input::button(unsigned number, bool isPress) {
  XTestFakeButtonEvent(connection_->display, number, isPress ? True : False, CurrentTime);
  XSync(connection_->display, False);
}

void X11Input::press(unsigned button) { this->button(button, true); }

void X11Input::release(unsigned button) { this->button(button, false); }

void X11Input::scroll(int right, int down) {
  const auto click = [this](unsigned number, int count) {
    for (; count > 0; --count) {
      press(number);
      release(number);
    }
  };
  click(down < 0 ? 4 : 5, std::abs(down));
  click(right < 0 ? 6 : 7, std::abs(right));
}

void X11Input::key(unsigned long symbol, bool isPress) {
  const KeyCode code = XKeysymToKeycode(connection_->display, symbol);
  if (code == 0) throw std::runtime_error("no key has the symbol " + std::to_string(symbol));
  XTestFakeKeyEvent(connection_->display, code, isPress ? True : False, CurrentTime);
  XSync(connection_->display, False);
}

void X11Input::pressKey(unsigned long symbol) { key(symbol, true); }

void X11Input::releaseKey(unsigned long symbol) { key(symbol, false); }

void X11Input::key(unsigned long symbol) {
  key(symbol, true);
  key(symbol, false);
}

bool X11Input::grab() {
  Display* display = connection_->display;
  const Window root = DefaultRootWindow(display);
  const bool isOurs =
      XGrabPointer(display, root, False, ButtonPressMask, GrabModeAsync, GrabModeAsync, None, None,
                   CurrentTime) == GrabSuccess &&
      XGrabKeyboard(display, root, False, GrabModeAsync, GrabModeAsync, CurrentTime) == GrabSuccess;
  if (!isOurs) ungrab();
  return isOurs;
}

void X11Input::ungrab() {
  XUngrabPointer(connection_->display, CurrentTime);
  XUngrabKeyboard(connection_->display, CurrentTime);
  XSync(connection_->display, False);
}
