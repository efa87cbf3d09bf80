#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "Platform/Dispatch/DispatchQueue.h"
#include "Platform/Foundation/Time/NSDate.h"

/// What can happen to a watched file.
constexpr uint32_t DISPATCH_VNODE_DELETE = 0x01;  ///< Its last name was removed or replaced.
constexpr uint32_t DISPATCH_VNODE_RENAME = 0x20;  ///< It was renamed or moved.

/// A one-shot timer at a date. It belongs to this handle: once that has gone no handler starts, and
/// where one runs on another thread just then, its going waits for the end of it.
///
/// It goes by the main run loop's timers and looks at the wall clock at least once an hour, so a
/// suspended machine or a clock set forward makes it late by an hour at most, and a clock set back
/// never makes it early.
class [[nodiscard]] DispatchTimer {
 public:
  DispatchTimer() = default;
  /// Runs `handler` on `queue` once when `NSDate::date()` has reached `deadline`.
  DispatchTimer(const NSDate& deadline, dispatch_queue_t queue, std::function<void()> handler);
  DispatchTimer(DispatchTimer&&) noexcept = default;
  DispatchTimer& operator=(DispatchTimer&&) noexcept;
  ~DispatchTimer() { reset(); }

  void reset();

 private:
  class State;
  std::shared_ptr<State> state_;
};

/// A watch on a file for deletion and renaming. Handle and handler are to each other as those of
/// `DispatchTimer`.
///
/// The main run loop hears of what happened and hands the handler to the queue, so nothing is
/// noticed while the main thread is busy. The file itself is watched, whatever its name:
///
/// | what happens                                      | seen here                        |
/// |---------------------------------------------------|----------------------------------|
/// | the file is deleted, or another takes its name    | yes, once it has no name left    |
/// | the file is renamed or moved on its file system   | yes                              |
/// | a folder above it is renamed                      | no; the file goes with it        |
/// | another machine does it, on a network file system | no; the kernel does not tell     |
/// | the user's number of watches is used up           | no; the watch is empty           |
class [[nodiscard]] DispatchFileWatch {
 public:
  DispatchFileWatch() = default;
  /// Watches the file open at `descriptor`, which stays the caller's and may be closed. Runs
  /// `handler` on `queue` when one of `events` (`DISPATCH_VNODE_…`) has happened since.
  DispatchFileWatch(int descriptor, uint32_t events, dispatch_queue_t queue,
                    std::function<void()> handler);
  DispatchFileWatch(DispatchFileWatch&&) noexcept = default;
  DispatchFileWatch& operator=(DispatchFileWatch&&) noexcept;
  ~DispatchFileWatch() { reset(); }

  void reset();

 private:
  class State;
  std::shared_ptr<State> state_;
};
