#pragma once

#include <queue>
#include <unordered_map>
#include <vector>

#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/Foundation/SystemClock.h"

/// A run loop whose time passes only when it is told to. Advancing by a day fires every callback of
/// that day in order, without waiting, with the manual clock standing at each one's moment.
class VirtualRunLoop : public NSRunLoop {
 public:
  /// `clock` is moved by this loop and must outlive it.
  explicit VirtualRunLoop(ManualClock& clock) : clock_(clock) {}

  int64_t now() const override { return clock_.elapsedMicroseconds() * 1000; }
  TimerId scheduleAt(int64_t deadline, Callback callback) override;
  void cancel(TimerId timer) override { callbacks_.erase(timer); }

  /// Runs callbacks as they fall due, jumping from one to the next, until stopped or out of work.
  void run() override;
  void stop() override { stopped_ = true; }
  bool runPending() override;

  /// Lets `seconds` pass and fires all that falls due on the way.
  void advance(double seconds);

 private:
  struct Entry {
    int64_t microseconds;
    TimerId timer;
    bool operator>(const Entry& other) const {
      return microseconds != other.microseconds ? microseconds > other.microseconds
                                                : timer > other.timer;
    }
  };

  /// Runs the next callback due at or before `limit`. Returns whether there was one.
  bool runNext(int64_t limit);

  ManualClock& clock_;
  std::priority_queue<Entry, std::vector<Entry>, std::greater<>> queue_;
  std::unordered_map<TimerId, Callback> callbacks_;
  TimerId lastTimer_ = 0;
  bool stopped_ = false;
};
