#include "Hosts/Gtk/BarMonitors.h"

#include <algorithm>
#include <memory>

#include "Platform/AppKit/NSScreen.h"

BarMonitors::BarMonitors(std::optional<std::string> wantedName, std::function<void()> onChange)
    : wantedName_(std::move(wantedName)), onChange_(std::move(onChange)) {
  displayConnections_.push_back(
      connectSignal<&BarMonitors::monitorListChanged>(display_, "monitor-added", this));
  displayConnections_.push_back(
      connectSignal<&BarMonitors::monitorListChanged>(display_, "monitor-removed", this));
  displayConnections_.push_back(connectSignal<&BarMonitors::primaryChanged>(
      gdk_display_get_default_screen(display_), "monitors-changed", this));
  watchMonitors();
  updateScreens();
}

BarMonitors::~BarMonitors() {
  if (settling_) NSRunLoop::mainRunLoop().cancel(*settling_);
}

std::vector<std::string> BarMonitors::names() const {
  std::vector<std::string> names;
  for (int index = 0; index < gdk_display_get_n_monitors(display_); ++index) {
    // GdkMonitor has no connector in GTK 3; its model is a product's name on Wayland and the
    // connector only on X11. The screen's deprecated question is answered with the connector on
    // both: it comes from RandR or from xdg-output.
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    const std::unique_ptr<char, decltype(&g_free)> name(
        gdk_screen_get_monitor_plug_name(gdk_display_get_default_screen(display_), index), g_free);
    G_GNUC_END_IGNORE_DEPRECATIONS
    names.emplace_back(name ? name.get() : "");
  }
  return names;
}

GdkMonitor* BarMonitors::barMonitor() const {
  if (wantedName_) {
    const auto known = names();
    const auto found = std::ranges::find(known, *wantedName_);
    if (found != known.end()) {
      return gdk_display_get_monitor(display_, static_cast<int>(found - known.begin()));
    }
  }
  GdkMonitor* primary = gdk_display_get_primary_monitor(display_);
  return primary != nullptr ? primary : gdk_display_get_monitor(display_, 0);
}

std::vector<GdkMonitor*> BarMonitors::monitors() const {
  std::vector<GdkMonitor*> monitors;
  for (int index = 0; index < gdk_display_get_n_monitors(display_); ++index) {
    monitors.push_back(gdk_display_get_monitor(display_, index));
  }
  return monitors;
}

void BarMonitors::scheduleSettling() {
  if (settling_) return;
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  settling_ = loop.scheduleAt(loop.now(), [this] {
    settling_.reset();
    watchMonitors();
    updateScreens();
    onChange_();
  });
}

void BarMonitors::watchMonitors() {
  monitorConnections_.clear();
  for (GdkMonitor* monitor : monitors()) {
    for (const char* signal : {"notify::geometry", "notify::scale-factor"}) {
      monitorConnections_.push_back(
          connectSignal<&BarMonitors::monitorChanged>(monitor, signal, this));
    }
  }
}

void BarMonitors::updateScreens() const {
  GdkMonitor* first = barMonitor();
  std::vector<NSScreen> screens;
  GdkRectangle origin{};
  if (first != nullptr) gdk_monitor_get_geometry(first, &origin);
  for (GdkMonitor* monitor : monitors()) {
    GdkRectangle geometry;
    gdk_monitor_get_geometry(monitor, &geometry);
    // Frames have y upwards from the lower left corner of the first screen.
    const NSScreen screen{
        NSMakeRect(geometry.x - origin.x, origin.y + origin.height - (geometry.y + geometry.height),
                   geometry.width, geometry.height),
        static_cast<double>(gdk_monitor_get_scale_factor(monitor))};
    screens.insert(monitor == first ? screens.begin() : screens.end(), screen);
  }
  NSScreen::setScreens(std::move(screens));
}
