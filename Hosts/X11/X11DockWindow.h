#pragma once

#include <vector>

#include "Hosts/Display/Display.h"
#include "Hosts/X11/X11Connection.h"
#include "Hosts/X11/X11Monitors.h"

/// A window that every window manager takes for a dock: without a frame, on each desktop, above
/// other windows, never with the keyboard, and with its space kept free. It also stands without a
/// window manager, and comes back when one has dropped it.
class X11DockWindow : public X11EventHandler {
 public:
  explicit X11DockWindow(X11Connection& connection);
  ~X11DockWindow() override;

  xcb_window_t id() const { return id_; }

  /// Puts the window at `frame`, in pixels of the whole desktop, and keeps the space from the
  /// desktop's upper edge down to its lower edge free.
  void place(const PixelRect& frame, const std::vector<X11Monitor>& monitors);
  /// After the first `place`.
  void show();

  void handleEvent(const xcb_generic_event_t& event) override;

 private:
  void describe();
  void applyPlace();
  void applyState();
  void returnToScreen();
  bool hasWindowManager();
  void answer(const xcb_client_message_event_t& message);
  template <typename Value>
  void setProperty(xcb_atom_t name, xcb_atom_t type, uint8_t format, const Value& values);

  xcb_window_t id_;
  PixelRect frame_;
  uint32_t reservedHeight_ = 0;
  bool isShown_ = false;
  bool isMapped_ = false;
  NSRunLoop::Timer returning_;
};
