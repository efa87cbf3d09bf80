#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>

#include "Platform/Dispatch/DispatchQueue.h"

/// Work on several queues whose common end can be waited for. From any thread.
class DispatchGroup {
 public:
  void enter();
  void leave();
  void wait();

 private:
  std::mutex mutex_;
  std::condition_variable empty_;
  size_t entered_ = 0;
};

using dispatch_group_t = std::shared_ptr<DispatchGroup>;

dispatch_group_t dispatch_group_create();

/// `dispatch_async`, noted in `group` until `work` is done.
void dispatch_group_async(const dispatch_group_t& group, const dispatch_queue_t& queue,
                          std::function<void()> work);

/// Waits until all work noted in `group` is done.
void dispatch_group_wait(const dispatch_group_t& group);
