#include "Platform/Foundation/VirtualRunLoop.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

NSRunLoop::TimerId VirtualRunLoop::scheduleAt(int64_t deadline, Callback callback) {
  const int64_t microseconds = deadline > 0 ? (deadline + 999) / 1000 : 0;
  const TimerId timer = ++lastTimer_;
  queue_.push({std::max(microseconds, clock_.elapsedMicroseconds()), timer});
  callbacks_.emplace(timer, std::move(callback));
  return timer;
}

bool VirtualRunLoop::runNext(int64_t limit) {
  while (!queue_.empty() && queue_.top().microseconds <= limit) {
    const Entry next = queue_.top();
    queue_.pop();
    const auto found = callbacks_.find(next.timer);
    if (found == callbacks_.end()) continue;
    const Callback callback = std::move(found->second);
    callbacks_.erase(found);
    clock_.advanceMicroseconds(
        std::max<int64_t>(0, next.microseconds - clock_.elapsedMicroseconds()));
    guarded(callback);
    return true;
  }
  return false;
}

void VirtualRunLoop::run() {
  stopped_ = false;
  while (!stopped_ && runNext(std::numeric_limits<int64_t>::max())) {
  }
}

bool VirtualRunLoop::runPending() {
  // Only what is scheduled by now: a callback that renews itself at once must not hold the caller.
  const TimerId newest = lastTimer_;
  bool ran = false;
  while (!queue_.empty() && queue_.top().timer <= newest && runNext(clock_.elapsedMicroseconds())) {
    ran = true;
  }
  return ran;
}

void VirtualRunLoop::advance(double seconds) {
  const int64_t end = clock_.elapsedMicroseconds() + std::llround(seconds * 1e6);
  while (runNext(end)) {
  }
  clock_.advanceMicroseconds(std::max<int64_t>(0, end - clock_.elapsedMicroseconds()));
}
