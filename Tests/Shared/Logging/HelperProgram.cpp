// A program that the tests start beside themselves:
//
//   log_test_helper FOLDER COUNT   logs so many numbered lines into one file of the folder and
//                                  ends as any program does; 0 for lines without an end

#include <charconv>
#include <string>
#include <string_view>
#include <vector>

#include "Shared/External/Logging/DDFileLogger.h"
#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogLine.h"

int main(int argc, char** argv) {
  const std::vector<std::string_view> arguments(argv + 1, argv + argc);
  int count = 0;
  if (arguments.size() != 2 ||
      std::from_chars(arguments[1].data(), arguments[1].data() + arguments[1].size(), count).ec !=
          std::errc()) {
    return 2;
  }
  const auto logger = std::make_shared<DDFileLogger_Time>(
      std::make_shared<DDLogFileManagerDefault_Time>(arguments[0]));
  logger->setMaximumFileSize(0);
  DDLog_Time::addLogger(logger);
  for (int line = 1; count == 0 || line <= count; ++line)
    DDLogLine("line " + std::to_string(line) + " of the helper");
  return 0;
}
