#include "Shared/External/Logging/DDLogFileFormatterDefault.h"

#include <algorithm>
#include <cmath>

#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Shared/External/Logging/DDLogMessage.h"

std::string DDLogDateFormatter::stringFromDate(const NSDate& date) {
  const double whole = std::floor(date.timeIntervalSince1970());
  const auto second = static_cast<int64_t>(whole);
  if (second != second_) {
    const int offset = NSTimeZone::systemTimeZone().secondsFromGMTForDate(date);
    // Only the date and the time of day, not the offset behind them.
    textOfSecond_ =
        NSDate::dateWithTimeIntervalSince1970(whole + offset).description().substr(0, 19);
    std::ranges::replace(textOfSecond_, '-', '/');
    textOfSecond_ += ':';
    second_ = second;
  }
  // Half a microsecond more, for a millisecond that has no exact double.
  const auto milliseconds =
      std::min(999, static_cast<int>((date.timeIntervalSince1970() - whole) * 1000 + 0.0005));
  std::string text;
  text.reserve(textOfSecond_.size() + 3);
  text += textOfSecond_;
  for (const int digit : {milliseconds / 100, milliseconds / 10 % 10, milliseconds % 10})
    text += static_cast<char>('0' + digit);
  return text;
}

std::optional<std::string> DDLogFileFormatterDefault_Time::formatLogMessage(
    const DDLogMessage_Time& message) {
  std::string line = dateFormatter_.stringFromDate(message.timestamp);
  // With room for the line end, which the logger adds.
  line.reserve(line.size() + message.logMsg.size() + 3);
  line += "  ";
  line += message.logMsg;
  return line;
}
