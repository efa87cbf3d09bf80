#include "Platform/Foundation/RunLoop/VirtualRunLoop.h"

#include <sys/poll.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr auto AnyTimer = std::numeric_limits<NSRunLoop::TimerId>::max();

}  // namespace

NSRunLoop::TimerId VirtualRunLoop::scheduleAt(int64_t deadline, Callback callback) {
  const std::lock_guard guard(mutex_);
  return timers_.add(deadline, clock_.elapsedMicroseconds(), std::move(callback));
}

void VirtualRunLoop::cancel(TimerId timer) {
  // What a callback holds may cancel others when it goes, so it goes after the lock.
  Callback dropped;
  const std::lock_guard guard(mutex_);
  dropped = timers_.remove(timer);
}

NSRunLoop::WatchId VirtualRunLoop::watchDescriptor(int descriptor, Callback callback) {
  const std::lock_guard guard(mutex_);
  watches_.emplace(++newestWatch_,
                   Watch{descriptor, std::make_shared<const Callback>(std::move(callback))});
  return newestWatch_;
}

void VirtualRunLoop::unwatchDescriptor(WatchId watch) {
  const std::lock_guard guard(mutex_);
  watches_.erase(watch);
}

bool VirtualRunLoop::serveWatches() {
  std::vector<std::shared_ptr<const Callback>> readable;
  {
    const std::lock_guard guard(mutex_);
    for (const auto& [identifier, watch] : watches_) {
      pollfd state{watch.descriptor, POLLIN, 0};
      if (poll(&state, 1, 0) > 0) readable.push_back(watch.callback);
    }
  }
  for (const auto& callback : readable)
    guarded(*callback);
  return !readable.empty();
}

bool VirtualRunLoop::runNext(int64_t limit, TimerId newest) {
  const bool served = serveWatches();
  std::optional<TimerQueue::Timer> due;
  {
    const std::lock_guard guard(mutex_);
    due = timers_.takeDue(limit, newest);
  }
  if (!due) return served;
  clock_.advanceMicroseconds(std::max<int64_t>(0, due->moment - clock_.elapsedMicroseconds()));
  guarded(due->callback);
  return true;
}

void VirtualRunLoop::run() {
  const bool outerStopped = stopped_.exchange(false);
  while (!stopped_ && runNext(std::numeric_limits<int64_t>::max(), AnyTimer)) {
  }
  stopped_ = outerStopped;
}

bool VirtualRunLoop::runPending() {
  // Only what is scheduled by now: a callback that renews itself at once must not hold the caller.
  TimerId newest = 0;
  {
    const std::lock_guard guard(mutex_);
    newest = timers_.newest();
  }
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
