#include "Platform/Foundation/NSTimer.h"

#include <utility>

std::unique_ptr<NSTimer> NSTimer::scheduledTimerWithTimeInterval(double interval,
                                                                 std::function<void()> action) {
  constexpr double NanosecondsPerSecond = 1e9;
  return std::unique_ptr<NSTimer>(
      new NSTimer(static_cast<int64_t>(interval * NanosecondsPerSecond), std::move(action)));
}

NSTimer::NSTimer(int64_t interval, std::function<void()> action)
    : interval_(interval), deadline_(NSRunLoop::mainRunLoop().now()), action_(std::move(action)) {
  scheduleNext();
}

void NSTimer::invalidate() {
  if (timer_ == 0) return;
  NSRunLoop::mainRunLoop().cancel(timer_);
  timer_ = 0;
}

void NSTimer::scheduleNext() {
  const int64_t missed = (NSRunLoop::mainRunLoop().now() - deadline_) / interval_;
  deadline_ += (missed + 1) * interval_;
  timer_ = NSRunLoop::mainRunLoop().scheduleAt(deadline_, [this] { fire(); });
}

void NSTimer::fire() {
  // The action may destroy the timer, so nothing of it is touched behind the call.
  const auto action = action_;
  scheduleNext();
  action();
}
