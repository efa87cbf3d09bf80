#pragma once

#include <atomic>
#include <memory>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Time/SystemClock.h"

class TimerQueue;

/// A run loop whose time passes only when it is told to. Advancing by a day fires every callback of
/// that day in order, without waiting, with the manual clock standing at each one's moment. Watched
/// descriptors are looked at before each callback.
class VirtualRunLoop : public NSRunLoop {
 public:
  /// `clock` is moved by this loop and must outlive it.
  explicit VirtualRunLoop(ManualClock& clock);

  int64_t now() const override { return clock_.elapsedMicroseconds() * 1000; }
  Timer scheduleAt(int64_t deadline, Callback callback) override;
  Watch watchDescriptor(int descriptor, Callback callback) override;

  /// Runs callbacks as they fall due, jumping from one to the next, until stopped or out of work.
  void run() override;
  void stop() override { isStopped_ = true; }
  bool runPending() override;

  /// Lets `seconds` pass and fires all that falls due on the way.
  void advance(double seconds);

 private:
  /// Runs the next callback due at or before `limit` that is not newer than `newest`. Returns
  /// whether there was one.
  bool runNext(int64_t limit, uint64_t newest);
  /// Runs the callbacks of descriptors that have something to read. Returns whether any did.
  bool serveWatches();

  class Watches;

  ManualClock& clock_;
  const std::shared_ptr<TimerQueue> timers_;
  const std::shared_ptr<Watches> watches_;
  std::atomic<bool> isStopped_ = false;
};
