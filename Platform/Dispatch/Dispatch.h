#pragma once

#include <cstdint>
#include <functional>

class NSRunLoop;

/// A moment on the run loop's own clock, in nanoseconds, or `DISPATCH_TIME_NOW`.
using dispatch_time_t = int64_t;
constexpr dispatch_time_t DISPATCH_TIME_NOW = 0;

/// A queue of work. So far there is one, the main thread's.
using dispatch_queue_t = NSRunLoop*;

dispatch_queue_t dispatch_get_main_queue();

/// The moment `nanoseconds` after `when`.
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t nanoseconds);

/// Runs `work` once on `queue` at `when` or as soon after it as the queue is free.
void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, std::function<void()> work);
