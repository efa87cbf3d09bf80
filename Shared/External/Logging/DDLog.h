#pragma once

#include <cstdarg>
#include <cstdint>
#include <memory>

#include "Platform/Dispatch/Dispatch.h"

class DDAbstractLogger_Time;
class DDLogMessage_Time;

/// A bit for each kind of message that is in use, as a mask: a logger gets all.
constexpr int32_t DDLogLevelAll = 31;

/// The front door of the log: takes messages from any thread and hands them to the loggers, on a
/// queue of its own, in the order in which they came. It starts on first use and stays for the life
/// of the process; what waits when the process ends in order is written.
///
/// At most 1000 messages wait. A caller that is ahead of the loggers by more is held until one of
/// them is done. So a logger must not log: it would wait for itself.
///
/// | call                     | waits for                                       |
/// |--------------------------|-------------------------------------------------|
/// | add, remove              | nothing; takes effect between two messages      |
/// | queue, log, asynchronous | a place among the 1000                          |
/// | queue, log, synchronous  | the loggers                                     |
/// | flush                    | all that came before                            |
class DDLog_Time {
 public:
  DDLog_Time() = delete;

  static const dispatch_queue_t& loggingQueue();
  static bool isOnLoggingQueue();

  /// A logger gets the messages whose flag shares a bit with `logLevel`.
  static void addLogger(std::shared_ptr<DDAbstractLogger_Time> logger,
                        int32_t logLevel = DDLogLevelAll);
  static void removeLogger(std::shared_ptr<DDAbstractLogger_Time> logger);
  static void removeAllLoggers();

  static void queueLogMessage(std::shared_ptr<const DDLogMessage_Time> message,
                              bool asynchronously);

  /// Formats, as `printf` does, on the calling thread. `file` and `function` must live for good. A
  /// null format does nothing.
  [[gnu::format(printf, 9, 10)]] static void log(bool asynchronous, int32_t level, int32_t flag,
                                                 int32_t context, const char* file,
                                                 const char* function, int32_t line,
                                                 std::shared_ptr<void> tag, const char* format,
                                                 ...);
  [[gnu::format(printf, 9, 0)]] static void logArgs(bool asynchronous, int32_t level, int32_t flag,
                                                    int32_t context, const char* file,
                                                    const char* function, int32_t line,
                                                    std::shared_ptr<void> tag, const char* format,
                                                    va_list arguments);

  /// Returns when all messages so far are with the loggers and these have written theirs. Not from
  /// the logging queue's nor a logger's work.
  static void flushLog();

 private:
  struct Core;
  static Core& core();

  // On the logging queue only.
  static void lt_addLogger(std::shared_ptr<DDAbstractLogger_Time> logger, int32_t logLevel);
  static void lt_removeLogger(const std::shared_ptr<DDAbstractLogger_Time>& logger);
  static void lt_removeAllLoggers();
  static void lt_log(const DDLogMessage_Time& message);
  static void lt_flush();
};
