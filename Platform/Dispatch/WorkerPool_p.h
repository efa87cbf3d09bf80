#pragma once

// For the queues' own sources only.

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

/// A queue that has work and is nobody's.
class PooledQueue {
 public:
  virtual ~PooledQueue() = default;

  /// Runs what waits until nothing is left, or until `isStopping`.
  virtual void drain(const std::atomic<bool>& isStopping) = 0;
};

/// The threads that run the serial queues' work: one for each queue that has work at the moment, so
/// a queue whose work waits for another queue's holds nobody up. An idle thread ends after some
/// seconds.
class WorkerPool {
 public:
  /// Never destroyed. When the process ends, it stops after the work that is being done.
  static WorkerPool& sharedPool();

  /// Gives a queue to a worker. False if its work cannot be run: the process is ending, or the
  /// system gives no thread.
  bool submit(std::shared_ptr<PooledQueue> queue);

 private:
  bool startWorker();
  void work();
  void stop();

  std::mutex mutex_;
  std::condition_variable ready_;
  std::condition_variable finished_;
  std::deque<std::shared_ptr<PooledQueue>> queues_;
  size_t workers_ = 0;
  size_t idleWorkers_ = 0;
  std::atomic<bool> isStopping_ = false;
};
