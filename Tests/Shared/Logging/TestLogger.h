#pragma once

#include <atomic>
#include <functional>

#include "Shared/External/Logging/DDAbstractLogger.h"
#include "Shared/External/Logging/DDLogMessage.h"

/// Does what a test says with each message, on the logger's queue.
class TestLogger : public DDAbstractLogger_Time {
 public:
  using Handler = std::function<void(const DDLogMessage_Time&)>;

  explicit TestLogger(Handler handler)
      : DDAbstractLogger_Time("test logger"), handler_(std::move(handler)) {}

  void logMessage(const DDLogMessage_Time& message) override { handler_(message); }
  void willRemoveLogger() override { removed = true; }

  std::atomic<bool> removed = false;

 private:
  Handler handler_;
};
