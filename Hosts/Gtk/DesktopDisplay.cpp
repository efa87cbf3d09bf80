#include "Hosts/Gtk/DesktopDisplay.h"

#include <gdk/gdkx.h>
#include <gtk-layer-shell.h>
#include <gtk/gtk.h>
#include <unistd.h>

#include <cstdlib>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Platform/Foundation/NSLog.h"

namespace {

std::string_view fieldNamed(std::string_view name, std::span<const GLogField> fields) {
  for (const GLogField& field : fields) {
    // The fields looked for are texts, which end with a zero and tell their length as -1.
    if (field.key == name && field.length < 0) return static_cast<const char*>(field.value);
  }
  return {};
}

/// GDK ends the process itself, with status 1, when its connection to a Wayland compositor breaks.
/// What it says then becomes a line like the program's others.
GLogWriterOutput writeLog(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer) {
  const std::span all(fields, count);
  if ((level & G_LOG_LEVEL_MESSAGE) == 0 || fieldNamed("GLIB_DOMAIN", all) != "Gdk") {
    return g_log_writer_default(level, fields, count, nullptr);
  }
  NSLog("error: " + std::string(fieldNamed("MESSAGE", all)));
  return G_LOG_WRITER_HANDLED;
}

/// Xlib would end the process after this, through `exit` and so through destructors that need X11.
int reportLostX11Display(Display*) {
  NSLog("error: the X11 display has gone");
  _exit(1);
}

void prepareEnvironment() {
  // GDK would load libGL and its compiler, 40 MB, to learn about visuals that a bar does not use.
  g_setenv("GDK_GL", "disable", TRUE);
  // What desktops add to every GTK program (event sounds, exported menus) has no use here either.
  g_unsetenv("GTK_MODULES");
  // A theme costs 3 MB and is not looked at: this one is empty and in the program's resources.
  g_setenv("GTK_THEME", "velmora-menubar", TRUE);
  // Settings and resources are read with the C locale's numbers. The item's words do not depend on
  // the C library's locale.
  gtk_disable_setlocale();
  gdk_set_allowed_backends("wayland,x11");
  g_log_set_writer_func(writeLog, nullptr, nullptr);
}

[[noreturn]] void restartOnX11(char** commandLine) {
  if (std::getenv("DISPLAY") == nullptr) {
    throw std::runtime_error(
        "this Wayland compositor has no layer-shell, and there is no X11 display to use instead");
  }
  NSLog("this Wayland compositor has no layer-shell; the bar is shown through X11");
  g_setenv("GDK_BACKEND", "x11", TRUE);
  execv("/proc/self/exe", commandLine);
  throw std::runtime_error("the program cannot be started anew for X11");
}

}  // namespace

DisplayKind openDesktopDisplay(char** commandLine) {
  prepareEnvironment();
  if (!gtk_init_check(nullptr, nullptr)) {
    throw std::runtime_error(
        "no display to show the bar on; --headless --output DIR draws it into a file");
  }
  if (GDK_IS_X11_DISPLAY(gdk_display_get_default())) {
    XSetIOErrorHandler(reportLostX11Display);
    return DisplayKind::X11;
  }
  if (gtk_layer_is_supported()) return DisplayKind::LayerShell;
  restartOnX11(commandLine);
}
