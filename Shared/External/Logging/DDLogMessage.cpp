#include "Shared/External/Logging/DDLogMessage.h"

#include <array>
#include <charconv>
#include <utility>

#include "Platform/Dispatch/Dispatch.h"
#include "Platform/Foundation/Process/NSThread.h"

namespace {

std::unique_ptr<const std::string> copyOf(const char* text, bool wanted) {
  return wanted && text != nullptr ? std::make_unique<const std::string>(text) : nullptr;
}

const char* kept(const std::unique_ptr<const std::string>& copy, const char* original) {
  return copy ? copy->c_str() : original;
}

}  // namespace

DDLogMessage_Time::DDLogMessage_Time(std::string message, int32_t level, int32_t flag,
                                     int32_t context, const char* sourceFile,
                                     const char* sourceFunction, int32_t line,
                                     std::shared_ptr<void> attachedTag, int32_t optionBits)
    // The analyzer does not see that the parameters own the copies.
    // NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks)
    : DDLogMessage_Time(std::move(message), level, flag, context, sourceFile,
                        copyOf(sourceFile, (optionBits & DDLogMessageCopyFile) != 0),
                        sourceFunction,
                        copyOf(sourceFunction, (optionBits & DDLogMessageCopyFunction) != 0), line,
                        std::move(attachedTag), optionBits) {}
// NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)

DDLogMessage_Time::DDLogMessage_Time(std::string message, int32_t level, int32_t flag,
                                     int32_t context, const char* sourceFile, Copy fileCopy,
                                     const char* sourceFunction, Copy functionCopy, int32_t line,
                                     std::shared_ptr<void> attachedTag, int32_t optionBits)
    : logLevel(level),
      logFlag(flag),
      logContext(context),
      logMsg(std::move(message)),
      timestamp(NSDate::date()),
      file(kept(fileCopy, sourceFile)),
      function(kept(functionCopy, sourceFunction)),
      lineNumber(line),
      machThreadID(NSThread::currentThread().number),
      queueLabel(dispatch_get_current_label()),
      threadName(NSThread::currentThread().name),
      tag(std::move(attachedTag)),
      options(optionBits),
      fileCopy_(std::move(fileCopy)),
      functionCopy_(std::move(functionCopy)) {}

std::string DDLogMessage_Time::threadID() const {
  std::array<char, 8> digits{};
  char* const end = std::to_chars(digits.begin(), digits.end(), machThreadID, 16).ptr;
  return {digits.begin(), end};
}
