#include "Platform/Foundation/RunLoop/NSTimer.h"

#include <algorithm>
#include <utility>

#include "Platform/Foundation/RunLoop/RunLoopMoment_p.h"

namespace {

/// A timer without an interval must leave time for anything else. Nanoseconds.
constexpr int64_t ShortestInterval = 100'000;

}  // namespace

std::unique_ptr<NSTimer> NSTimer::scheduledTimerWithTimeInterval(double interval,
                                                                 std::function<void()> action) {
  return std::unique_ptr<NSTimer>(
      new NSTimer(std::max(nanosecondsFromSeconds(interval), ShortestInterval), std::move(action)));
}

NSTimer::NSTimer(int64_t interval, std::function<void()> action)
    : interval_(interval), deadline_(NSRunLoop::mainRunLoop().now()), action_(std::move(action)) {
  scheduleNext();
}

void NSTimer::scheduleNext() {
  const int64_t missed = (NSRunLoop::mainRunLoop().now() - deadline_) / interval_;
  deadline_ = momentAfter(deadline_ + missed * interval_, interval_);
  timer_ = NSRunLoop::mainRunLoop().scheduleAt(deadline_, [this] { fire(); });
}

void NSTimer::fire() {
  // The action may destroy the timer, so nothing of it is touched behind the call.
  const auto action = action_;
  scheduleNext();
  action();
}
