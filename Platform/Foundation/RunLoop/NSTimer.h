#pragma once

#include <functional>
#include <memory>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"

/// Calls an action on the main run loop again and again, until it is invalidated or destroyed.
/// Main thread only.
class NSTimer {
 public:
  /// The first call comes after one `interval`, in seconds. Calls fall on multiples of the interval
  /// from now on; those that a busy loop has missed are left out. No interval is below a tenth of a
  /// millisecond.
  [[nodiscard]] static std::unique_ptr<NSTimer> scheduledTimerWithTimeInterval(
      double interval, std::function<void()> action);

  NSTimer(const NSTimer&) = delete;
  NSTimer& operator=(const NSTimer&) = delete;

  void invalidate() { timer_.reset(); }

 private:
  NSTimer(int64_t interval, std::function<void()> action);
  void scheduleNext();
  void fire();

  int64_t interval_;  // Nanoseconds.
  int64_t deadline_;
  std::function<void()> action_;
  NSRunLoop::Timer timer_;
};
