#include "Shared/External/Logging/DDAbstractLogger.h"

#include <utility>

#include "Platform/Foundation/Process/NSAssert.h"
#include "Shared/External/Logging/DDLoggingQueue.h"

DDAbstractLogger_Time::DDAbstractLogger_Time(std::string_view loggerName)
    : loggerQueue_(dispatch_queue_create(loggerName)) {
  dispatch_queue_set_specific(loggerQueue_, this, this);
}

bool DDAbstractLogger_Time::isOnGlobalLoggingQueue() { return ::isOnGlobalLoggingQueue(); }

bool DDAbstractLogger_Time::isOnInternalLoggerQueue() const {
  return dispatch_get_specific(this) != nullptr;
}

void DDAbstractLogger_Time::assertNotOnItsQueues() const {
  if (isOnGlobalLoggingQueue()) NSAssertionFailed("Core architecture requirement failure");
  if (isOnInternalLoggerQueue()) {
    NSAssertionFailed("MUST access ivar directly, NOT via self.* syntax.");
  }
}

void DDAbstractLogger_Time::read(const std::function<void()>& access) const {
  assertNotOnItsQueues();
  dispatch_sync(globalLoggingQueue(), [&] { dispatch_sync(loggerQueue_, access); });
}

void DDAbstractLogger_Time::change(std::function<void()> access) {
  assertNotOnItsQueues();
  dispatch_async(globalLoggingQueue(), [self = shared_from_this(), access = std::move(access)] {
    dispatch_async(self->loggerQueue_, [self, access] { access(); });
  });
}

std::shared_ptr<DDLogFormatter> DDAbstractLogger_Time::logFormatter() {
  std::shared_ptr<DDLogFormatter> result;
  read([&] { result = formatter_; });
  return result;
}

void DDAbstractLogger_Time::setLogFormatter(std::shared_ptr<DDLogFormatter> formatter) {
  change([this, formatter = std::move(formatter)] { formatter_ = formatter; });
}
