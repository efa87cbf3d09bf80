#include "Platform/Foundation/RunLoop/TimerQueue_p.h"

#include <algorithm>

TimerQueue::TimerId TimerQueue::add(int64_t deadline, int64_t now, Callback callback) {
  // Divided before it is rounded up: the sum of a far deadline and the rounding would overflow.
  const int64_t microseconds = deadline / 1000 + (deadline % 1000 > 0 ? 1 : 0);
  const int64_t moment = std::max(microseconds, now);
  const std::lock_guard guard(mutex_);
  const TimerId timer = ++newest_;
  callbacks_.emplace(std::pair(moment, timer), std::move(callback));
  moments_.emplace(timer, moment);
  return timer;
}

void TimerQueue::unregister(TimerId timer) {
  // What a callback holds may take others back when it goes, so it goes after the lock.
  Callback dropped;
  const std::lock_guard guard(mutex_);
  dropped = take(timer);
}

TimerQueue::Callback TimerQueue::take(TimerId timer) {
  const auto moment = moments_.find(timer);
  if (moment == moments_.end()) return {};
  auto entry = callbacks_.extract({moment->second, timer});
  moments_.erase(moment);
  return std::move(entry.mapped());
}

std::optional<TimerQueue::Timer> TimerQueue::takeDue(int64_t limit, TimerId newest) {
  const std::lock_guard guard(mutex_);
  const auto due = next();
  if (!due || due->first > limit || due->second > newest) return std::nullopt;
  const auto [moment, timer] = *due;
  return Timer{moment, timer, take(timer)};
}

std::optional<std::pair<int64_t, TimerQueue::TimerId>> TimerQueue::next() const {
  if (callbacks_.empty()) return std::nullopt;
  return callbacks_.begin()->first;
}

std::optional<std::pair<int64_t, TimerQueue::TimerId>> TimerQueue::first() const {
  const std::lock_guard guard(mutex_);
  return next();
}

TimerQueue::TimerId TimerQueue::newest() const {
  const std::lock_guard guard(mutex_);
  return newest_;
}
