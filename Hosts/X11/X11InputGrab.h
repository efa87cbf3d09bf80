#pragma once

#include "Hosts/X11/X11Connection.h"

/// All input of the pointer and of the keyboard. It is taken from the other programs, and given
/// back at the end of this object.
class X11InputGrab {
 public:
  explicit X11InputGrab(X11Connection& connection);
  X11InputGrab(const X11InputGrab&) = delete;
  X11InputGrab& operator=(const X11InputGrab&) = delete;
  ~X11InputGrab();

  /// Whether it is ours now. Another program's grab is waited for up to half a second.
  bool take();

  /// The clear window over the whole desktop that the events name. Places in it are those of the
  /// desktop. When it is unmapped or destroyed, the input is lost.
  xcb_window_t window() const { return window_; }

 private:
  bool takePointer();
  bool takeKeyboard();

  X11Connection& connection_;
  xcb_window_t window_;
};
