#include "Shared/External/Logging/DDLogLine.h"

#include <memory>
#include <string>

#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogMessage.h"

namespace {

constexpr int32_t Level = 13;
constexpr int32_t Flag = 4;
constexpr int32_t Context = 0;

}  // namespace

void DDLogLine(std::string_view message, const char* file, const char* function, int32_t line) {
  DDLog_Time::queueLogMessage(
      std::make_shared<const DDLogMessage_Time>(std::string(message), Level, Flag, Context, file,
                                                function, line, nullptr, 0),
      true);
}
