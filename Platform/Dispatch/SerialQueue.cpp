#include "Platform/Dispatch/SerialQueue_p.h"

#include <iterator>
#include <utility>

#include "Platform/Dispatch/CurrentQueue_p.h"
#include "Platform/Foundation/Process/NSAssert.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

SerialQueue::SerialQueue(std::string_view label) : DispatchQueue(label) {
  // The pool stops at the end of the process, but behind what was made, or arranged for that end,
  // after any queue.
  WorkerPool::sharedPool();
}

void SerialQueue::async(std::function<void()> work) {
  {
    const std::lock_guard guard(mutex_);
    waiting_.push_back(std::move(work));
    if (std::exchange(isTaken_, true)) return;
  }
  giveToWorker();
}

void SerialQueue::sync(const std::function<void()>& work) {
  if (CurrentQueue::isInside(*this)) {
    NSAssertionFailed("dispatch_sync: the queue \"" + label() + "\" would wait for itself");
  }
  Works refused;
  if (!take(refused)) return syncByHandOver(work);
  struct Return {
    std::shared_ptr<SerialQueue> queue;  // The work may drop its owner.
    ~Return() { queue->giveBack(); }
  };
  const Return whenDone{shared_from_this()};
  const CurrentQueue current(*this);
  for (const auto& before : refused)
    NSRunLoop::guarded(before);
  work();
}

bool SerialQueue::take(Works& refused) {
  const std::lock_guard guard(mutex_);
  if (std::exchange(isTaken_, true)) return false;
  if (!waiting_.empty()) refused.swap(waiting_);
  return true;
}

void SerialQueue::giveBack() {
  {
    const std::lock_guard guard(mutex_);
    isTaken_ = !waiting_.empty();
    if (!isTaken_) return;
  }
  giveToWorker();
}

void SerialQueue::giveToWorker() {
  if (WorkerPool::sharedPool().submit(shared_from_this())) return;
  const std::lock_guard guard(mutex_);
  isTaken_ = false;
}

void SerialQueue::drain(const std::atomic<bool>& isStopping) {
  const CurrentQueue current(*this);
  Works works;
  while (true) {
    works.clear();
    {
      const std::lock_guard guard(mutex_);
      if (waiting_.empty()) {
        isTaken_ = false;
        return;
      }
      works.swap(waiting_);
    }
    for (auto work = works.begin(); work != works.end(); ++work) {
      if (isStopping) {
        const std::lock_guard guard(mutex_);
        waiting_.insert(waiting_.begin(), std::make_move_iterator(work),
                        std::make_move_iterator(works.end()));
        isTaken_ = false;
        return;
      }
      NSRunLoop::guarded(*work);
      *work = nullptr;  // What it holds goes with it, not with the last one's.
    }
  }
}
