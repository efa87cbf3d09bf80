#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "Platform/Dispatch/DispatchQueue.h"

/// A moment on the main run loop's own clock, in nanoseconds, or `DISPATCH_TIME_NOW`.
using dispatch_time_t = int64_t;
constexpr dispatch_time_t DISPATCH_TIME_NOW = 0;

/// A queue of its own order. Its work runs on threads that all such queues share: they appear when
/// there is work and go when there is none for some seconds.
dispatch_queue_t dispatch_queue_create(std::string_view label);

/// The main thread's queue, served by `NSRunLoop::mainRunLoop()` and labelled "main".
const dispatch_queue_t& dispatch_get_main_queue();

/// Runs `work` on `queue`, after what waits there, and returns at once.
void dispatch_async(const dispatch_queue_t& queue, std::function<void()> work);

/// Runs `work` on `queue`, after what waits there, and returns when it is done. An idle queue runs
/// it on the caller's own thread. Called from work of the same queue it would wait for itself: the
/// process is ended with a word about it. On the main thread, work for the main queue runs at once.
void dispatch_sync(const dispatch_queue_t& queue, const std::function<void()>& work);

/// The moment `nanoseconds` after `when`.
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t nanoseconds);

/// Runs `work` once on `queue` at `when` or as soon after it as the main run loop and the queue are
/// free.
void dispatch_after(dispatch_time_t when, const dispatch_queue_t& queue,
                    std::function<void()> work);

const std::string& dispatch_queue_get_label(const dispatch_queue_t& queue);

/// The label of the queue whose work runs on this thread, good until that work ends; "" outside any
/// queue.
std::string_view dispatch_get_current_label();

/// Keeps `context`, which is not owned, with the queue under `key`; null takes it away.
void dispatch_queue_set_specific(const dispatch_queue_t& queue, const void* key, void* context);

/// What the queue whose work runs on this thread keeps under `key`, else null.
void* dispatch_get_specific(const void* key);
