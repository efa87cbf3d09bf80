#pragma once

#include <optional>
#include <string>

class DDLogMessage_Time;

/// Makes a logger's text of a message.
class DDLogFormatter {
 public:
  virtual ~DDLogFormatter() = default;

  /// Nothing if the message is not to be written. Called on the logger's queue.
  virtual std::optional<std::string> formatLogMessage(const DDLogMessage_Time& message) = 0;
};
