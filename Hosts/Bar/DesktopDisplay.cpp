#include "Hosts/Bar/DesktopDisplay.h"

#include <cstdlib>
#include <stdexcept>

#include "Hosts/Wayland/WaylandDisplay.h"
#include "Hosts/X11/X11Display.h"
#include "Platform/Foundation/Process/NSLog.h"

std::unique_ptr<Display> openDesktopDisplay() {
  WaylandOffer wayland = openWaylandDisplay();
  if (wayland.display) return std::move(wayland.display);
  const char* x11 = std::getenv("DISPLAY");
  const bool hasX11 = x11 != nullptr && *x11 != '\0';
  if (wayland.lacksLayerShell && !hasX11) {
    throw std::runtime_error(
        "this Wayland compositor has no layer-shell, and there is no X11 display to use instead");
  }
  if (!hasX11) {
    throw std::runtime_error(
        "no display to show the bar on; --headless --output DIR draws it into a file");
  }
  if (wayland.lacksLayerShell) {
    NSLog("this Wayland compositor has no layer-shell; the bar is shown through X11");
  }
  return openX11Display();
}
