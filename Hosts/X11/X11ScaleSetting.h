#pragma once

#include <functional>

#include "Hosts/X11/X11Connection.h"

/// How many pixels the desktop gives a point. X11 has one scale for all monitors, told by the
/// variable GDK_SCALE, else by the desktop's settings manager, else by the resource Xft.dpi.
class X11ScaleSetting : public X11EventHandler {
 public:
  /// `onChange` is called when the settings manager has changed something, comes or goes, and when
  /// there are other resources.
  X11ScaleSetting(X11Connection& connection, std::function<void()> onChange);

  /// Asks again. From 1 to 8, in steps of a quarter.
  double read();

  void handleEvent(const xcb_generic_event_t& event) override;

 private:
  double scaleOfSettingsManager();
  double scaleOfResources() const;

  std::function<void()> onChange_;
  xcb_window_t manager_ = XCB_WINDOW_NONE;
};
