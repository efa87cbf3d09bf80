#pragma once

#include <cstdint>
#include <memory>

#include "Platform/Dispatch/Dispatch.h"
#include "Shared/External/Logging/DDAbstractLogger.h"

/// One registered logger. It gets the messages whose flag shares a bit with `logLevel`.
struct DDLoggerNode_Time {
  std::shared_ptr<DDAbstractLogger_Time> logger;
  dispatch_queue_t loggerQueue;
  int32_t logLevel = 0;
};
