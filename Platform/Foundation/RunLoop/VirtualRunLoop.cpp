#include "Platform/Foundation/RunLoop/VirtualRunLoop.h"

#include <sys/poll.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "Platform/Foundation/RunLoop/TimerQueue_p.h"

namespace {

constexpr auto AnyTimer = std::numeric_limits<TimerQueue::TimerId>::max();

}  // namespace

/// The descriptors watched, in the order of their registration. Any thread.
class VirtualRunLoop::Watches : public Registrar {
 public:
  uint64_t add(int descriptor, Callback callback) {
    auto held = std::make_shared<const Callback>(std::move(callback));
    const std::lock_guard guard(mutex_);
    watches_.emplace(++newest_, Entry{descriptor, std::move(held)});
    return newest_;
  }

  void unregister(uint64_t number) override {
    // What the callback holds may end other watches, so it goes after the lock.
    decltype(watches_)::node_type dropped;
    const std::lock_guard guard(mutex_);
    dropped = watches_.extract(number);
  }

  /// The callbacks of descriptors that have something to read, as long as they are watched.
  std::vector<std::weak_ptr<const Callback>> readable() const {
    std::vector<std::weak_ptr<const Callback>> readable;
    const std::lock_guard guard(mutex_);
    for (const auto& [number, watch] : watches_) {
      pollfd state{watch.descriptor, POLLIN, 0};
      if (poll(&state, 1, 0) > 0) readable.push_back(watch.callback);
    }
    return readable;
  }

 private:
  struct Entry {
    int descriptor;
    std::shared_ptr<const Callback> callback;
  };

  mutable std::mutex mutex_;
  std::map<uint64_t, Entry> watches_;
  uint64_t newest_ = 0;
};

VirtualRunLoop::VirtualRunLoop(ManualClock& clock)
    : clock_(clock),
      timers_(std::make_shared<TimerQueue>()),
      watches_(std::make_shared<Watches>()) {}

NSRunLoop::Timer VirtualRunLoop::scheduleAt(int64_t deadline, Callback callback) {
  return {timers_, timers_->add(deadline, clock_.elapsedMicroseconds(), std::move(callback))};
}

NSRunLoop::Watch VirtualRunLoop::watchDescriptor(int descriptor, Callback callback) {
  return {watches_, watches_->add(descriptor, std::move(callback))};
}

bool VirtualRunLoop::serveWatches() {
  const auto readable = watches_->readable();
  for (const auto& watched : readable) {
    if (const auto callback = watched.lock()) guarded(*callback);
  }
  return !readable.empty();
}

bool VirtualRunLoop::runNext(int64_t limit, uint64_t newest) {
  const bool served = serveWatches();
  const auto due = timers_->takeDue(limit, newest);
  if (!due) return served;
  clock_.advanceMicroseconds(std::max<int64_t>(0, due->moment - clock_.elapsedMicroseconds()));
  guarded(due->callback);
  return true;
}

void VirtualRunLoop::run() {
  const bool wasStopped = isStopped_.exchange(false);
  while (!isStopped_ && runNext(std::numeric_limits<int64_t>::max(), AnyTimer)) {
  }
  isStopped_ = wasStopped;
}

bool VirtualRunLoop::runPending() {
  // Only what is scheduled by now: a callback that renews itself at once must not hold the caller.
  const uint64_t newest = timers_->newest();
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
