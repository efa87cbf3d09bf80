#include "Platform/Foundation/RunLoop/TimerQueue_p.h"

#include <algorithm>

TimerQueue::TimerId TimerQueue::add(int64_t deadline, int64_t now, Callback callback) {
  // Divided before it is rounded up: the sum of a far deadline and the rounding would overflow.
  const int64_t microseconds = deadline / 1000 + (deadline % 1000 > 0 ? 1 : 0);
  const int64_t moment = std::max(microseconds, now);
  const TimerId timer = ++newest_;
  callbacks_.emplace(std::pair(moment, timer), std::move(callback));
  moments_.emplace(timer, moment);
  return timer;
}

TimerQueue::Callback TimerQueue::remove(TimerId timer) {
  const auto moment = moments_.find(timer);
  if (moment == moments_.end()) return {};
  auto entry = callbacks_.extract({moment->second, timer});
  moments_.erase(moment);
  return std::move(entry.mapped());
}

std::optional<TimerQueue::Timer> TimerQueue::takeDue(int64_t limit, TimerId newest) {
  const auto next = first();
  if (!next || next->first > limit || next->second > newest) return std::nullopt;
  const auto [moment, timer] = *next;
  return Timer{moment, timer, remove(timer)};
}

std::optional<std::pair<int64_t, TimerQueue::TimerId>> TimerQueue::first() const {
  if (callbacks_.empty()) return std::nullopt;
  return callbacks_.begin()->first;
}
