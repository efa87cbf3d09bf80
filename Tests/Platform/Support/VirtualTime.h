#pragma once

#include "Platform/Foundation/RunLoop/VirtualRunLoop.h"

/// The process's clock and main run loop, whose time passes only when a test says so.
struct VirtualTime {
  explicit VirtualTime(double now = 0) : clock(now) {
    NSRunLoop::setMainRunLoop(&loop);
    SystemClock::install(&clock);
  }
  VirtualTime(const VirtualTime&) = delete;
  VirtualTime& operator=(const VirtualTime&) = delete;
  ~VirtualTime() {
    NSRunLoop::setMainRunLoop(nullptr);
    SystemClock::install(nullptr);
  }

  ManualClock clock;
  VirtualRunLoop loop{clock};
};
