#pragma once

#include <memory>

#include "Hosts/Display/Display.h"

/// Connects to the desktop's display: its Wayland compositor, where that has a place for bars, else
/// its X11 server. Throws `std::runtime_error` with the reason if there is none to show a bar on.
std::unique_ptr<Display> openDesktopDisplay();
