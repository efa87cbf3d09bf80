#include "Platform/Dispatch/WorkerPool_p.h"

#include <chrono>
#include <cstdlib>
#include <system_error>
#include <thread>
#include <utility>

namespace {

/// Short enough that a resting process has no threads, long enough that steady work keeps them.
constexpr std::chrono::seconds IdleTime{2};

/// How long the end of the process waits for work in progress, which may itself be stuck.
constexpr std::chrono::seconds StopTime{1};

}  // namespace

WorkerPool& WorkerPool::sharedPool() {
  static WorkerPool* const pool = [] {
    std::atexit([] { sharedPool().stop(); });
    return std::make_unique<WorkerPool>().release();
  }();
  return *pool;
}

bool WorkerPool::submit(std::shared_ptr<PooledQueue> queue) {
  {
    const std::lock_guard guard(mutex_);
    if (isStopping_) return false;
    queues_.push_back(std::move(queue));
    if (idleWorkers_ < queues_.size()) {
      if (startWorker() || workers_ > 0) return true;
      queues_.pop_back();
      return false;
    }
  }
  ready_.notify_one();
  return true;
}

bool WorkerPool::startWorker() {
  try {
    std::thread([this] { work(); }).detach();
  } catch (const std::system_error&) {
    return false;
  }
  ++workers_;
  return true;
}

void WorkerPool::work() {
  std::unique_lock guard(mutex_);
  while (!isStopping_) {
    ++idleWorkers_;
    const bool found =
        ready_.wait_for(guard, IdleTime, [this] { return isStopping_ || !queues_.empty(); });
    --idleWorkers_;
    if (!found) break;
    if (isStopping_) break;
    auto queue = std::move(queues_.front());
    queues_.pop_front();
    guard.unlock();
    queue->drain(isStopping_);
    queue.reset();
    guard.lock();
  }
  --workers_;
  finished_.notify_all();
}

void WorkerPool::stop() {
  std::unique_lock guard(mutex_);
  isStopping_ = true;
  ready_.notify_all();
  finished_.wait_for(guard, StopTime, [this] { return workers_ == 0; });
}
