#pragma once

#include <vector>

#include "Platform/Foundation/NSGeometry.h"

/// One monitor of the desktop.
struct NSScreen {
  NSRect frame;
  double backingScaleFactor = 1;

  /// What the host knows; empty without a display.
  static const std::vector<NSScreen>& screens();
  static void setScreens(std::vector<NSScreen> screens);
};
