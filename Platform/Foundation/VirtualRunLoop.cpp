#include "Platform/Foundation/VirtualRunLoop.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr auto AnyTimer = std::numeric_limits<NSRunLoop::TimerId>::max();

}  // namespace

NSRunLoop::TimerId VirtualRunLoop::scheduleAt(int64_t deadline, Callback callback) {
  return timers_.add(deadline, clock_.elapsedMicroseconds(), std::move(callback));
}

bool VirtualRunLoop::runNext(int64_t limit, TimerId newest) {
  const auto due = timers_.takeDue(limit, newest);
  if (!due) return false;
  clock_.advanceMicroseconds(std::max<int64_t>(0, due->moment - clock_.elapsedMicroseconds()));
  guarded(due->callback);
  return true;
}

void VirtualRunLoop::run() {
  stopped_ = false;
  while (!stopped_ && runNext(std::numeric_limits<int64_t>::max(), AnyTimer)) {
  }
}

bool VirtualRunLoop::runPending() {
  // Only what is scheduled by now: a callback that renews itself at once must not hold the caller.
  const TimerId newest = timers_.newest();
  bool ran = false;
  while (runNext(clock_.elapsedMicroseconds(), newest))
    ran = true;
  return ran;
}

void VirtualRunLoop::advance(double seconds) {
  const int64_t end = clock_.elapsedMicroseconds() + std::llround(seconds * 1e6);
  while (runNext(end, AnyTimer)) {
  }
  clock_.advanceMicroseconds(std::max<int64_t>(0, end - clock_.elapsedMicroseconds()));
}
