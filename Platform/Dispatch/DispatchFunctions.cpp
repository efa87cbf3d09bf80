#include "Platform/Dispatch/DispatchFunctions.h"

#include <unistd.h>

#include <utility>

#include "Platform/Dispatch/CurrentQueue_p.h"
#include "Platform/Dispatch/SerialQueue_p.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/RunLoop/RunLoopMoment_p.h"

namespace {

class MainQueue : public DispatchQueue {
 public:
  MainQueue() : DispatchQueue("main") {}

  void async(std::function<void()> work) override {
    NSRunLoop::mainRunLoop().performBlock([this, work = std::move(work)] {
      const CurrentQueue current(*this);
      work();
    });
  }

  void sync(const std::function<void()>& work) override {
    // The kernel gives the main thread the process's number.
    if (gettid() != getpid()) return syncByHandOver(work);
    const CurrentQueue current(*this);
    work();
  }
};

}  // namespace

dispatch_queue_t dispatch_queue_create(std::string_view label) {
  return std::make_shared<SerialQueue>(label);
}

const dispatch_queue_t& dispatch_get_main_queue() {
  // Never destroyed: other threads may still hand work over while the process ends.
  static const auto* const queue =
      std::make_unique<dispatch_queue_t>(std::make_shared<MainQueue>()).release();
  return *queue;
}

void dispatch_async(const dispatch_queue_t& queue, std::function<void()> work) {
  queue->async(std::move(work));
}

void dispatch_sync(const dispatch_queue_t& queue, const std::function<void()>& work) {
  queue->sync(work);
}

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t nanoseconds) {
  const int64_t origin = when == DISPATCH_TIME_NOW ? NSRunLoop::mainRunLoop().now() : when;
  return momentAfter(origin, nanoseconds);
}

void dispatch_after(dispatch_time_t when, const dispatch_queue_t& queue,
                    std::function<void()> work) {
  NSRunLoop::mainRunLoop().performBlockAt(when, [queue, work = std::move(work)]() mutable {
    if (queue != dispatch_get_main_queue()) return queue->async(std::move(work));
    const CurrentQueue current(*queue);
    work();
  });
}

const std::string& dispatch_queue_get_label(const dispatch_queue_t& queue) {
  return queue->label();
}

std::string_view dispatch_get_current_label() {
  const DispatchQueue* const queue = CurrentQueue::queue();
  return queue != nullptr ? std::string_view(queue->label()) : std::string_view();
}

void dispatch_queue_set_specific(const dispatch_queue_t& queue, const void* key, void* context) {
  queue->setSpecific(key, context);
}

void* dispatch_get_specific(const void* key) {
  const DispatchQueue* const queue = CurrentQueue::queue();
  return queue != nullptr ? queue->specific(key) : nullptr;
}
