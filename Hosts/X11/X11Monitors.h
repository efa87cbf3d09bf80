#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Hosts/Display/Display.h"
#include "Hosts/X11/X11Connection.h"

/// A monitor in the pixels of the whole desktop.
struct X11Monitor {
  std::string name;
  PixelRect frame;
  bool isPrimary = false;

  bool operator==(const X11Monitor&) const = default;
};

/// A monitor's frame in the pixels of the whole desktop.
PixelRect pixelFrame(const Monitor& monitor);

/// The monitors as RandR 1.5 tells them. With an older server the whole desktop is one monitor.
class X11Monitors : public X11EventHandler {
 public:
  /// `onChange` is called, several times for one change, when they may have changed.
  X11Monitors(X11Connection& connection, std::function<void()> onChange);

  /// As they were when `read` has last asked the server.
  const std::vector<X11Monitor>& known() const { return known_; }
  void read();

  void handleEvent(const xcb_generic_event_t& event) override;

 private:
  bool hasRandrMonitors();
  std::vector<X11Monitor> readRandrMonitors();
  X11Monitor wholeDesktop();

  std::function<void()> onChange_;
  std::vector<X11Monitor> known_;
  uint8_t firstRandrEvent_ = 0;
  bool hasRandr_ = false;
};
