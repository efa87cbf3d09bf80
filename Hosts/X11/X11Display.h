#pragma once

#include <memory>

#include "Hosts/Display/Display.h"

/// Connects to the X11 display that DISPLAY names. It must outlive its bars. Throws
/// `std::runtime_error` with the reason.
std::unique_ptr<Display> openX11Display();
