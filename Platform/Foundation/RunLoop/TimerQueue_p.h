#pragma once

// For the platform's own run loops only.

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"

/// Callbacks in the order in which a run loop owes them: by their moments and, where those are
/// equal, by their scheduling. Moments are whole microseconds on the loop's clock. Any thread.
class TimerQueue : public Registrar {
 public:
  using Callback = NSRunLoop::Callback;
  using TimerId = uint64_t;

  struct Timer {
    int64_t moment;
    TimerId timer;
    Callback callback;
  };

  /// `deadline` is in nanoseconds and rounded up; one before `now`, in microseconds, means `now`.
  TimerId add(int64_t deadline, int64_t now, Callback callback);

  void unregister(TimerId timer) override;

  /// Takes the first callback out if its moment is not behind `limit` and it is not newer than
  /// `newest`.
  std::optional<Timer> takeDue(int64_t limit, TimerId newest);

  /// The first callback's moment and number.
  std::optional<std::pair<int64_t, TimerId>> first() const;

  /// The number of the callback added last.
  TimerId newest() const;

 private:
  /// Both with the lock held. Empty if there is none under that number.
  Callback take(TimerId timer);
  std::optional<std::pair<int64_t, TimerId>> next() const;

  mutable std::mutex mutex_;
  std::map<std::pair<int64_t, TimerId>, Callback> callbacks_;
  std::unordered_map<TimerId, int64_t> moments_;
  TimerId newest_ = 0;
};
