#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/RunLoop/TimerQueue_p.h"
#include "Platform/Foundation/Time/SystemClock.h"

/// A run loop whose time passes only when it is told to. Advancing by a day fires every callback of
/// that day in order, without waiting, with the manual clock standing at each one's moment. Watched
/// descriptors are looked at before each callback.
class VirtualRunLoop : public NSRunLoop {
 public:
  /// `clock` is moved by this loop and must outlive it.
  explicit VirtualRunLoop(ManualClock& clock) : clock_(clock) {}

  int64_t now() const override { return clock_.elapsedMicroseconds() * 1000; }
  TimerId scheduleAt(int64_t deadline, Callback callback) override;
  void cancel(TimerId timer) override;
  WatchId watchDescriptor(int descriptor, Callback callback) override;
  void unwatchDescriptor(WatchId watch) override;

  /// Runs callbacks as they fall due, jumping from one to the next, until stopped or out of work.
  void run() override;
  void stop() override { stopped_ = true; }
  bool runPending() override;

  /// Lets `seconds` pass and fires all that falls due on the way.
  void advance(double seconds);

 private:
  /// Runs the next callback due at or before `limit` that is not newer than `newest`. Returns
  /// whether there was one.
  bool runNext(int64_t limit, TimerId newest);
  /// Runs the callbacks of descriptors that have something to read. Returns whether any did.
  bool serveWatches();

  struct Watch {
    int descriptor;
    std::shared_ptr<const Callback> callback;
  };

  ManualClock& clock_;
  std::mutex mutex_;
  TimerQueue timers_;
  std::map<WatchId, Watch> watches_;
  WatchId newestWatch_ = 0;
  std::atomic<bool> stopped_ = false;
};
