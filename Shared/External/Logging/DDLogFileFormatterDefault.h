#pragma once

#include <cstdint>
#include <string>

#include "Platform/Foundation/Time/NSDate.h"
#include "Shared/External/Logging/DDLogFormatter.h"

/// Writes instants as "yyyy/MM/dd HH:mm:ss:SSS" in the system's zone. One thread at a time.
class DDLogDateFormatter {
 public:
  std::string stringFromDate(const NSDate& date);

 private:
  /// A busy log has many lines in a second: their dates differ in the milliseconds only.
  int64_t second_ = INT64_MIN;
  std::string textOfSecond_;
};

/// The lines of a log file: the date, two blanks, the message.
class DDLogFileFormatterDefault_Time : public DDLogFormatter {
 public:
  std::optional<std::string> formatLogMessage(const DDLogMessage_Time& message) override;

 private:
  DDLogDateFormatter dateFormatter_;
};
