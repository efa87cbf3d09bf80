#include "Platform/Dispatch/DispatchSemaphore.h"

void DispatchSemaphore::wait() {
  if (count_.fetch_sub(1) > 0) return;
  std::unique_lock guard(mutex_);
  given_.wait(guard, [this] { return wakeUps_ > 0; });
  --wakeUps_;
}

void DispatchSemaphore::signal() {
  if (count_.fetch_add(1) >= 0) return;
  const std::lock_guard guard(mutex_);
  ++wakeUps_;
  given_.notify_one();
}

dispatch_semaphore_t dispatch_semaphore_create(int64_t count) {
  return std::make_shared<DispatchSemaphore>(count);
}

void dispatch_semaphore_wait(const dispatch_semaphore_t& semaphore) { semaphore->wait(); }

void dispatch_semaphore_signal(const dispatch_semaphore_t& semaphore) { semaphore->signal(); }
