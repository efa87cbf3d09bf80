#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Platform/Foundation/Time/NSDate.h"

/// Bits of `DDLogMessage_Time::options`: texts that do not live for good are copied.
constexpr int32_t DDLogMessageCopyFile = 1;
constexpr int32_t DDLogMessageCopyFunction = 2;

/// One message, with where and when it came from. It does not change once it is made, so any thread
/// may read it.
class DDLogMessage_Time {
 public:
  /// Notes the present instant, the calling thread and the queue whose work runs on it.
  DDLogMessage_Time(std::string message, int32_t level, int32_t flag, int32_t context,
                    const char* sourceFile, const char* sourceFunction, int32_t line,
                    std::shared_ptr<void> attachedTag, int32_t optionBits);
  DDLogMessage_Time(const DDLogMessage_Time&) = delete;
  DDLogMessage_Time& operator=(const DDLogMessage_Time&) = delete;

  /// The thread's number in hexadecimal digits.
  std::string threadID() const;

  const int32_t logLevel;
  const int32_t logFlag;
  const int32_t logContext;
  const std::string logMsg;
  const NSDate timestamp;
  const char* const file;      ///< Null if unknown.
  const char* const function;  ///< Null if unknown.
  const int32_t lineNumber;
  const uint32_t machThreadID;
  const std::string queueLabel;
  const std::string threadName;
  const std::shared_ptr<void> tag;
  const int32_t options;

 private:
  using Copy = std::unique_ptr<const std::string>;
  DDLogMessage_Time(std::string message, int32_t level, int32_t flag, int32_t context,
                    const char* sourceFile, Copy fileCopy, const char* sourceFunction,
                    Copy functionCopy, int32_t line, std::shared_ptr<void> attachedTag,
                    int32_t optionBits);

  const Copy fileCopy_;
  const Copy functionCopy_;
};
