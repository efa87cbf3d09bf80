#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "Platform/Foundation/Registration.h"

/// The main thread's loop: it runs callbacks once, at or after a moment, in the order of their
/// moments and, where those are equal, in the order in which they were scheduled.
///
/// Moments are on a clock of the loop's own that never jumps. They are rounded up to whole
/// microseconds: a callback may be late, but it is never early.
///
/// Work and watches may be handed to it, and their handles reset, on any thread; callbacks run on
/// the main thread. What is taken back on another thread may be running just then.
///
/// Work and watches take turns, and a toolkit's drawing goes before them: work that renews itself
/// without end holds nothing else up.
///
/// There are two implementations: the desktop's (GLib's main context) and `VirtualRunLoop`.
class NSRunLoop {
 public:
  using Callback = std::function<void()>;
  using Timer = Registration;
  using Watch = Registration;

  virtual ~NSRunLoop() = default;

  /// The loop's own clock, in nanoseconds from an arbitrary origin.
  virtual int64_t now() const = 0;

  /// Runs `callback` once when `now()` has reached `deadline`, unless its handle has gone. A
  /// deadline in the past means the next pass, never this very call.
  [[nodiscard]] virtual Timer scheduleAt(int64_t deadline, Callback callback) = 0;

  /// The same for what nothing takes back.
  void performBlockAt(int64_t deadline, Callback callback) {
    scheduleAt(deadline, std::move(callback)).release();
  }

  /// Runs `callback` once in the next pass, after what was handed over before. Nothing takes it
  /// back.
  void performBlock(Callback callback) { performBlockAt(now(), std::move(callback)); }

  /// Calls `callback` whenever `descriptor`, which stays the caller's, has something to read, until
  /// the handle goes.
  [[nodiscard]] virtual Watch watchDescriptor(int descriptor, Callback callback) = 0;

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
