#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Dispatch/Dispatch.h"
#include "Shared/External/Logging/DDLogFormatter.h"

class DDLogMessage_Time;

/// Base of loggers: something that takes messages on a queue of its own, which owns its state. Held
/// by `std::shared_ptr`.
class DDAbstractLogger_Time : public std::enable_shared_from_this<DDAbstractLogger_Time> {
 public:
  /// `loggerName` labels the queue.
  explicit DDAbstractLogger_Time(std::string_view loggerName);
  DDAbstractLogger_Time(const DDAbstractLogger_Time&) = delete;
  DDAbstractLogger_Time& operator=(const DDAbstractLogger_Time&) = delete;
  virtual ~DDAbstractLogger_Time() = default;

  /// Called on the logger's queue, as are the two below.
  virtual void logMessage(const DDLogMessage_Time& message) = 0;
  /// Writes whatever it still holds.
  virtual void flush() {}
  /// It gets no message after this.
  virtual void willRemoveLogger() {}

  /// From any thread, but not from the logger's nor from the global logging queue's work. The
  /// setter does not wait; messages logged after it are formatted with `formatter`, which may be
  /// null for the plain text.
  std::shared_ptr<DDLogFormatter> logFormatter();
  void setLogFormatter(std::shared_ptr<DDLogFormatter> formatter);

  const dispatch_queue_t& loggerQueue() const { return loggerQueue_; }
  const std::string& loggerName() const { return loggerQueue_->label(); }

  static bool isOnGlobalLoggingQueue();
  bool isOnInternalLoggerQueue() const;

 protected:
  /// Runs `access` to the logger's state on its queue, by way of the global one: in that order, in
  /// which messages come, nothing can lock. `read` waits, `change` does not. The state's accessors
  /// must not be called on either queue: that fails an assertion.
  void read(const std::function<void()>& access) const;
  void change(std::function<void()> access);

  /// On the logger's queue only.
  const std::shared_ptr<DDLogFormatter>& formatter() const { return formatter_; }

  /// For constructors: no queue knows the logger yet.
  void setInitialFormatter(std::shared_ptr<DDLogFormatter> formatter) {
    formatter_ = std::move(formatter);
  }

 private:
  void assertNotOnItsQueues() const;

  std::shared_ptr<DDLogFormatter> formatter_;
  const dispatch_queue_t loggerQueue_;
};
