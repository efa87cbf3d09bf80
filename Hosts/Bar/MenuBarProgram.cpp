#include "Hosts/Bar/MenuBarProgram.h"

#include <glib-unix.h>
#include <signal.h>

#include <utility>

#include "Hosts/Bar/Accessibility.h"
#include "Hosts/Bar/DesktopDisplay.h"
#include "Hosts/Bar/MenuBar.h"
#include "Platform/AppKit/Text/FontLoading.h"
#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Notifications/RemoteCommands.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Process/UnusedPages.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/SystemUIPlugin/NSMenuExtraBundle.h"

namespace {

/// After this, in nanoseconds, a bar has started and its first ticks are done.
constexpr int64_t StartingTime = 2'500'000'000;

gboolean endProgram(gpointer) {
  NSRunLoop::mainRunLoop().stop();
  return G_SOURCE_CONTINUE;
}

}  // namespace

void showMenuBar(const Options& options) {
  // What takes longest first: each goes on by itself while the rest is done.
  const FontLoading fonts;
  NSDistributedNotificationCenter::beginConnecting();
  for (const int signal : {SIGTERM, SIGINT, SIGHUP})
    g_unix_signal_add(signal, endProgram, nullptr);
  const std::unique_ptr<Display> display = openDesktopDisplay();
  display->onLost = [](const std::string& reason) {
    // A session that ends takes its display away first, which is no fault.
    NSLog(reason);
    NSRunLoop::mainRunLoop().stop();
  };
  MenuBar bar(*display, options.outputName);
  // The desktop is asked for its looks here; they are needed once the bar has its size.
  const NSObservation appearance = NSDistributedNotificationCenter::defaultCenter().addObserver(
      "AppleInterfaceThemeChangedNotification", [&](const NSNotification&) { bar.redraw(); });
  const Accessibility accessibility(bar);
  NSMenuExtraBundle bundle(options.bundle.value_or(NSBundle::installedPath("VelmoraTime")));
  bar.show();
  bar.slot().load(std::move(bundle));
  const RemoteCommands commands("MenuBar", [&](const std::string& command) -> std::optional<bool> {
    if (command == "open") return bar.setMenuOpen(true);
    if (command == "close") return bar.setMenuOpen(false);
    if (command == "toggle") return bar.setMenuOpen(!bar.menus().isOpen());
    return std::nullopt;
  });

  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  loop.performBlockAt(loop.now() + StartingTime, [] { returnUnusedPages(); });
  loop.run();
  bar.slot().unload();
}
