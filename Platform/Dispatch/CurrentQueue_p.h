#pragma once

// For the queues' own sources only.

#include "Platform/Dispatch/DispatchQueue.h"

/// Notes, for as long as it lives, that this thread runs a queue's work. Such notes nest: work may
/// wait for another queue and run that one's work itself.
class CurrentQueue {
 public:
  explicit CurrentQueue(const DispatchQueue& queue) : queue_(queue), outer_(innermost_) {
    innermost_ = this;
  }
  CurrentQueue(const CurrentQueue&) = delete;
  CurrentQueue& operator=(const CurrentQueue&) = delete;
  ~CurrentQueue() { innermost_ = outer_; }

  /// The queue whose work runs on this thread, or null.
  static const DispatchQueue* queue() {
    return innermost_ != nullptr ? &innermost_->queue_ : nullptr;
  }

  /// Whether this thread is somewhere inside work of `queue`.
  static bool isInside(const DispatchQueue& queue) {
    const CurrentQueue* note = innermost_;
    while (note != nullptr && &note->queue_ != &queue)
      note = note->outer_;
    return note != nullptr;
  }

 private:
  const DispatchQueue& queue_;
  const CurrentQueue* const outer_;

  static inline thread_local const CurrentQueue* innermost_ = nullptr;
};
