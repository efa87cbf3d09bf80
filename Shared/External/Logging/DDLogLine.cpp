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

void DDLogLine(std::string_view message, std::source_location place) {
  DDLog_Time::queueLogMessage(
      std::make_shared<const DDLogMessage_Time>(std::string(message), Level, Flag, Context,
                                                place.file_name(), place.function_name(),
                                                static_cast<int32_t>(place.line()), nullptr, 0),
      true);
}
