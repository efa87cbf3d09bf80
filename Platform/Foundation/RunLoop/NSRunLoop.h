#pragma once

#include <cstdint>
#include <functional>
#include <utility>

/// The main thread's loop: it runs callbacks once, at or after a moment, in the order of their
/// moments and, where those are equal, in the order in which they were scheduled.
///
/// Moments are on a clock of the loop's own that never jumps. They are rounded up to whole
/// microseconds: a callback may be late, but it is never early.
///
/// Work and watches may be handed to it, and taken back, from any thread; callbacks run on the main
/// thread. What is taken back from another thread may be running just then.
///
/// Work and watches take turns, and a toolkit's drawing goes before them: work that renews itself
/// without end holds nothing else up.
///
/// There are two implementations: the desktop's (GLib's main context) and `VirtualRunLoop`.
class NSRunLoop {
 public:
  using Callback = std::function<void()>;
  using TimerId = uint64_t;
  using WatchId = uint64_t;

  virtual ~NSRunLoop() = default;

  /// The loop's own clock, in nanoseconds from an arbitrary origin.
  virtual int64_t now() const = 0;

  /// Runs `callback` once when `now()` has reached `deadline`. A deadline in the past means the
  /// next pass, never this very call.
  virtual TimerId scheduleAt(int64_t deadline, Callback callback) = 0;

  /// Forgets a scheduled callback. Does nothing if it has run or was cancelled.
  virtual void cancel(TimerId timer) = 0;

  /// Runs `callback` once in the next pass, after what was handed over before.
  void performBlock(Callback callback) { scheduleAt(now(), std::move(callback)); }

  /// Calls `callback` whenever `descriptor`, which stays the caller's, has something to read.
  virtual WatchId watchDescriptor(int descriptor, Callback callback) = 0;

  /// Ends a watch. Does nothing for a number that is none.
  virtual void unwatchDescriptor(WatchId watch) = 0;

  /// Serves callbacks until `stop` is called. A callback may call it in turn.
  virtual void run() = 0;
  /// Ends the innermost `run`.
  virtual void stop() = 0;

  /// Serves what is due now, without waiting. Returns whether anything ran.
  virtual bool runPending() = 0;

  /// The installed main loop, or the desktop's, made at the first call.
  static NSRunLoop& mainRunLoop();

  /// Installs `loop`, which must outlive its use; null brings the desktop's back.
  static void setMainRunLoop(NSRunLoop* loop);

  /// Calls `callback` and keeps any exception from leaving it: the text of each distinct exception
  /// is written once to standard error. Every callback that a loop or a host makes goes through
  /// here, so one faulty setting cannot end the process.
  static void guarded(const Callback& callback);
};
