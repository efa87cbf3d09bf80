#pragma once

#include <gdk/gdk.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Hosts/Gtk/SignalConnection.h"
#include "Platform/Foundation/NSRunLoop.h"

/// The display's monitors and which of them the bar is on: the one asked for by its name, else the
/// primary one, else the first. Keeps `NSScreen::screens()`, where the bar's monitor comes first.
class BarMonitors {
 public:
  /// `onChange` is called once for each burst of changes.
  BarMonitors(std::optional<std::string> wantedName, std::function<void()> onChange);
  BarMonitors(const BarMonitors&) = delete;
  BarMonitors& operator=(const BarMonitors&) = delete;
  ~BarMonitors();

  /// The connectors' names, such as "DP-1".
  std::vector<std::string> names() const;

  /// Null while there is no monitor.
  GdkMonitor* barMonitor() const;

 private:
  void monitorListChanged(GdkMonitor*) { scheduleSettling(); }
  void monitorChanged(GParamSpec*) { scheduleSettling(); }
  void primaryChanged() { scheduleSettling(); }
  void scheduleSettling();
  void watchMonitors();
  void updateScreens() const;
  std::vector<GdkMonitor*> monitors() const;

  GdkDisplay* display_ = gdk_display_get_default();
  std::optional<std::string> wantedName_;
  std::function<void()> onChange_;
  std::vector<SignalConnection> displayConnections_;
  std::vector<SignalConnection> monitorConnections_;
  std::optional<NSRunLoop::TimerId> settling_;
};
