#pragma once

// For the queues' own sources only.

#include <atomic>
#include <vector>

#include "Platform/Dispatch/DispatchQueue.h"
#include "Platform/Dispatch/WorkerPool_p.h"

/// A queue without a thread of its own. At any time one thread at most has it: a worker that runs
/// what waits, or a caller that found it idle.
class SerialQueue : public DispatchQueue,
                    public PooledQueue,
                    public std::enable_shared_from_this<SerialQueue> {
 public:
  explicit SerialQueue(std::string_view label);

  void async(std::function<void()> work) override;
  void sync(const std::function<void()>& work) override;

  void drain(const std::atomic<bool>& isStopping) override;

 private:
  using Works = std::vector<std::function<void()>>;

  /// Takes the queue for the calling thread if it is nobody's. `refused` gets what waits all the
  /// same, which the pool of workers did not take.
  bool take(Works& refused);
  void giveBack();
  void giveToWorker();

  std::mutex mutex_;
  Works waiting_;
  bool isTaken_ = false;
};
