#include "Hosts/Gtk/MenuBarProgram.h"

#include <glib-unix.h>

#include <algorithm>
#include <csignal>

#include "Hosts/Gtk/BarMonitors.h"
#include "Hosts/Gtk/GtkBar.h"
#include "Platform/Foundation/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/NSRunLoop.h"

namespace {

gboolean endProgram(gpointer) {
  NSRunLoop::mainRunLoop().stop();
  return G_SOURCE_CONTINUE;
}

void checkOutputName(const std::string& name, const std::vector<std::string>& known) {
  if (std::ranges::find(known, name) != known.end()) return;
  std::string list;
  for (const std::string& other : known)
    list += (list.empty() ? "" : ", ") + other;
  throw UsageError("no monitor has the name \"" + name +
                   "\"; there are: " + (list.empty() ? "none" : list));
}

}  // namespace

void showMenuBar(const Options& options, char** commandLine) {
  for (const int signal : {SIGTERM, SIGINT})
    g_unix_signal_add(signal, endProgram, nullptr);
  GtkBar bar(openDesktopDisplay(commandLine));
  BarMonitors monitors(options.outputName, [&] { bar.showOn(monitors.barMonitor()); });
  if (options.outputName) checkOutputName(*options.outputName, monitors.names());

  bar.slot().load(
      NSMenuExtraBundle(options.bundle.value_or(NSBundle::installedPath("VelmoraTime"))));
  const NSObservation appearance = NSDistributedNotificationCenter::defaultCenter().addObserver(
      "AppleInterfaceThemeChangedNotification", [&](const NSNotification&) { bar.redraw(); });
  bar.showOn(monitors.barMonitor());

  NSRunLoop::mainRunLoop().run();
  bar.slot().unload();
}
