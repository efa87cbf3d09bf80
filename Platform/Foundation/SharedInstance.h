#pragma once

#include <functional>
#include <memory>
#include <mutex>

/// Has `reset` called, once, by the next `resetSharedInstances`. For what is made at its first use
/// and then shared by the whole process: called when that is made.
void onSharedInstancesReset(std::function<void()> reset);

/// Ends what the process shares, the youngest first, since it may hold older ones; each begins anew
/// at its next use. For tests, between which nothing may stay. Main thread only; nothing shared may
/// be in use.
void resetSharedInstances();

/// An instance for the whole process. It may be asked for from any thread.
template <typename T>
class SharedInstance {
 public:
  /// `make` is called for the first use, and for the first after a reset.
  template <typename Make>
  const std::shared_ptr<T>& get(Make make) {
    const std::lock_guard guard(mutex_);
    if (!instance_) {
      instance_ = make();
      onSharedInstancesReset([this] { end(); });
    }
    return instance_;
  }

  T& get() {
    return *get([] { return std::make_shared<T>(); });
  }

 private:
  void end() {
    std::shared_ptr<T> ended;
    const std::lock_guard guard(mutex_);
    ended.swap(instance_);
  }

  std::recursive_mutex mutex_;  ///< Making one may ask for it.
  std::shared_ptr<T> instance_;
};
