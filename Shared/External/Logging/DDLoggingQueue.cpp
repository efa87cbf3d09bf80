#include "Shared/External/Logging/DDLoggingQueue.h"

#include "Platform/Dispatch/DispatchFunctions.h"

const dispatch_queue_t& globalLoggingQueue() {
  // Never destroyed: what ends with the process may still log.
  static const dispatch_queue_t* const queue = [] {
    auto made = std::make_unique<dispatch_queue_t>(dispatch_queue_create("cocoa.lumberjack"));
    dispatch_queue_set_specific(*made, made.get(), made.get());
    return made.release();
  }();
  return *queue;
}

bool isOnGlobalLoggingQueue() { return dispatch_get_specific(&globalLoggingQueue()) != nullptr; }
