#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

/// A count that is taken from and given back to. From any thread.
class DispatchSemaphore {
 public:
  explicit DispatchSemaphore(int64_t count) : count_(count) {}

  /// Takes one, after waiting for it if there is none.
  void wait();
  void signal();

 private:
  /// Below 0: so many threads wait, or are about to. Only they need the lock.
  std::atomic<int64_t> count_;
  std::mutex mutex_;
  std::condition_variable given_;
  int64_t wakeUps_ = 0;
};

using dispatch_semaphore_t = std::shared_ptr<DispatchSemaphore>;

dispatch_semaphore_t dispatch_semaphore_create(int64_t count);
void dispatch_semaphore_wait(const dispatch_semaphore_t& semaphore);
void dispatch_semaphore_signal(const dispatch_semaphore_t& semaphore);
