#include "Platform/Dispatch/DispatchQueue.h"

#include <condition_variable>
#include <exception>
#include <utility>

namespace {

/// Work that another thread runs while its owner waits.
class AwaitedWork {
 public:
  explicit AwaitedWork(const std::function<void()>& work) : work_(work) {}

  void run() {
    try {
      work_();
    } catch (...) {
      exception_ = std::current_exception();
    }
    // Told under the lock: the owner's stack holds this object and must not go before that.
    const std::lock_guard guard(mutex_);
    isDone_ = true;
    changed_.notify_one();
  }

  void wait() {
    std::unique_lock guard(mutex_);
    changed_.wait(guard, [this] { return isDone_; });
    if (exception_) std::rethrow_exception(std::exchange(exception_, nullptr));
  }

 private:
  const std::function<void()>& work_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::exception_ptr exception_;
  bool isDone_ = false;
};

}  // namespace

void DispatchQueue::setSpecific(const void* key, void* context) {
  const std::lock_guard guard(mutex_);
  if (context != nullptr) {
    specifics_.insert_or_assign(key, context);
  } else {
    specifics_.erase(key);
  }
}

void* DispatchQueue::specific(const void* key) const {
  const std::lock_guard guard(mutex_);
  const auto found = specifics_.find(key);
  return found != specifics_.end() ? found->second : nullptr;
}

void DispatchQueue::syncByHandOver(const std::function<void()>& work) {
  AwaitedWork awaited(work);
  async([&awaited] { awaited.run(); });
  awaited.wait();
}
