#include "Platform/Dispatch/Dispatch.h"

#include <utility>

#include "Platform/Foundation/NSRunLoop.h"

dispatch_queue_t dispatch_get_main_queue() { return &NSRunLoop::mainRunLoop(); }

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t nanoseconds) {
  const int64_t origin = when == DISPATCH_TIME_NOW ? NSRunLoop::mainRunLoop().now() : when;
  return origin + nanoseconds;
}

void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, std::function<void()> work) {
  queue->scheduleAt(when, std::move(work));
}
