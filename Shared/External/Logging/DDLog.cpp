#include "Shared/External/Logging/DDLog.h"

#include <cstdlib>
#include <utility>
#include <vector>

#include "Platform/Foundation/Process/NSProcessInfo.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/SharedInstance.h"
#include "Shared/External/Logging/DDLoggerNode.h"
#include "Shared/External/Logging/DDLoggingQueue.h"
#include "Shared/External/Logging/DDLogMessage.h"
#include "Shared/External/Logging/FormattedText.h"

namespace {

constexpr int64_t MaximumWaiting = 1000;

}  // namespace

struct DDLog_Time::Core {
  Core() {
    loggers.reserve(4);
    // The queue is made by now, so its threads stop after this.
    std::atexit(flushLog);
  }

  const dispatch_queue_t queue = globalLoggingQueue();
  const dispatch_group_t group = dispatch_group_create();
  const dispatch_semaphore_t places = dispatch_semaphore_create(MaximumWaiting);
  const unsigned processors = processorCount();
  std::vector<DDLoggerNode_Time> loggers;
};

DDLog_Time::Core& DDLog_Time::core() {
  // Never destroyed: what ends with the process may still log.
  static Core* const core = std::make_unique<Core>().release();
  return *core;
}

const dispatch_queue_t& DDLog_Time::loggingQueue() { return core().queue; }

bool DDLog_Time::isOnLoggingQueue() { return isOnGlobalLoggingQueue(); }

void DDLog_Time::addLogger(std::shared_ptr<DDAbstractLogger_Time> logger, int32_t logLevel) {
  if (!logger) return;
  onSharedInstancesReset([] {
    removeAllLoggers();
    flushLog();
  });
  dispatch_async(loggingQueue(),
                 [logger = std::move(logger), logLevel] { lt_addLogger(logger, logLevel); });
}

void DDLog_Time::removeLogger(std::shared_ptr<DDAbstractLogger_Time> logger) {
  if (!logger) return;
  dispatch_async(loggingQueue(), [logger = std::move(logger)] { lt_removeLogger(logger); });
}

void DDLog_Time::removeAllLoggers() { dispatch_async(loggingQueue(), lt_removeAllLoggers); }

void DDLog_Time::queueLogMessage(std::shared_ptr<const DDLogMessage_Time> message,
                                 bool asynchronously) {
  Core& log = core();
  dispatch_semaphore_wait(log.places);
  if (asynchronously) {
    dispatch_async(log.queue, [message = std::move(message)] { lt_log(*message); });
  } else {
    dispatch_sync(log.queue, [&] { lt_log(*message); });
    // A logger may have left its writing to later work.
    dispatch_sync(log.queue, [] {});
  }
}

void DDLog_Time::log(bool asynchronous, int32_t level, int32_t flag, int32_t context,
                     const char* file, const char* function, int32_t line,
                     std::shared_ptr<void> tag, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  logArgs(asynchronous, level, flag, context, file, function, line, std::move(tag), format,
          arguments);
  va_end(arguments);
}

void DDLog_Time::logArgs(bool asynchronous, int32_t level, int32_t flag, int32_t context,
                         const char* file, const char* function, int32_t line,
                         std::shared_ptr<void> tag, const char* format, va_list arguments) {
  if (format == nullptr) return;
  queueLogMessage(
      std::make_shared<const DDLogMessage_Time>(formattedText(format, arguments), level, flag,
                                                context, file, function, line, std::move(tag), 0),
      asynchronous);
}

void DDLog_Time::flushLog() { dispatch_sync(loggingQueue(), lt_flush); }

void DDLog_Time::lt_addLogger(std::shared_ptr<DDAbstractLogger_Time> logger, int32_t logLevel) {
  const dispatch_queue_t queue = logger->loggerQueue();
  core().loggers.push_back({std::move(logger), queue, logLevel});
}

void DDLog_Time::lt_removeLogger(const std::shared_ptr<DDAbstractLogger_Time>& logger) {
  const auto removed = std::erase_if(
      core().loggers, [&](const DDLoggerNode_Time& node) { return node.logger == logger; });
  if (removed > 0) dispatch_sync(logger->loggerQueue(), [&] { logger->willRemoveLogger(); });
}

void DDLog_Time::lt_removeAllLoggers() {
  for (const DDLoggerNode_Time& node : std::exchange(core().loggers, {}))
    dispatch_sync(node.loggerQueue, [&] { node.logger->willRemoveLogger(); });
}

void DDLog_Time::lt_log(const DDLogMessage_Time& message) {
  Core& log = core();
  struct Place {
    const dispatch_semaphore_t& places;
    ~Place() { dispatch_semaphore_signal(places); }
  };
  const Place givenBackAtTheEnd{log.places};

  const auto serve = [&](const DDLoggerNode_Time& node) {
    NSRunLoop::guarded(
        [&] { dispatch_sync(node.loggerQueue, [&] { node.logger->logMessage(message); }); });
  };
  // The last logger is served on this very thread: with one logger, which is the rule, no other
  // thread has to wake for a message.
  const DDLoggerNode_Time* last = nullptr;
  for (const DDLoggerNode_Time& node : log.loggers) {
    if ((message.logFlag & node.logLevel) == 0) continue;
    if (last != nullptr && log.processors == 1) serve(*last);
    if (last != nullptr && log.processors > 1) {
      dispatch_group_async(log.group, last->loggerQueue,
                           [&message, last] { last->logger->logMessage(message); });
    }
    last = &node;
  }
  if (last != nullptr) serve(*last);
  dispatch_group_wait(log.group);
}

void DDLog_Time::lt_flush() {
  for (const DDLoggerNode_Time& node : core().loggers)
    dispatch_sync(node.loggerQueue, [&] { node.logger->flush(); });
}
