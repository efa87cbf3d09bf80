#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Foundation/Text/NSString.h"
#include "Shared/External/Logging/DDFileLogger.h"
#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogLine.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Targets/SimulatedTime.h"

using Names = std::vector<std::string>;

/// What the lines of a file say behind their dates, "2026/11/21 15:04:05:000  "; a whole line where
/// there is none. A last line without an end counts.
inline std::vector<std::string> messagesIn(const std::filesystem::path& file) {
  constexpr size_t Message = 25;
  auto messages = componentsSeparatedByString(readFile(file), "\n");
  if (messages.back().empty()) messages.pop_back();
  for (std::string& line : messages)
    if (line.size() >= Message && line.compare(23, 2, "  ") == 0) line.erase(0, Message);
  return messages;
}

/// A folder of logs, a logger that is registered with the front door, and simulated time.
class LogFolderTest : public testing::Test {
 protected:
  ~LogFolderTest() override { stopLogging(); }

  std::shared_ptr<DDLogFileManagerDefault_Time> makeManager() {
    return std::make_shared<DDLogFileManagerDefault_Time>(folder.string());
  }

  void startLogging() {
    if (!manager) manager = makeManager();
    logger = std::make_shared<DDFileLogger_Time>(manager);
    DDLog_Time::addLogger(logger);
  }

  /// As at a logger's removal: its file is done with.
  void stopLogging() {
    DDLog_Time::removeAllLoggers();
    DDLog_Time::flushLog();
    logger.reset();
  }

  static void log(const std::string& message) {
    DDLogLine(message);
    DDLog_Time::flushLog();
  }

  /// Puts a file of an earlier run into the folder.
  std::filesystem::path leave(const std::string& nameBehindApplication, const std::string& text,
                              bool archived = false) {
    const auto path = pathOf(nameBehindApplication);
    writeFile(path, text);
    if (archived) DDLogFileInfo_Time(path).setIsArchived(true);
    return path;
  }

  /// The visible files' names behind the application's, sorted.
  Names names() const {
    Names names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
      const std::string name = entry.path().filename();
      if (name.front() != '.') names.push_back(name.substr(name.find(' ')));
    }
    std::ranges::sort(names);
    return names;
  }

  std::filesystem::path pathOf(const std::string& nameBehindApplication) {
    const auto names = manager ? manager : makeManager();
    return names->logsDirectory() / (names->applicationName() + nameBehindApplication);
  }

  bool isArchived(const std::string& nameBehindApplication) {
    return DDLogFileInfo_Time(pathOf(nameBehindApplication)).isArchived();
  }

  /// What the first file that this program makes is called behind the application's name.
  static constexpr const char* First = " 2026-11-21 15-04.log";

  SimulatedTime time;
  const std::filesystem::path folder = freshFolder() / "Logs";
  std::shared_ptr<DDLogFileManagerDefault_Time> manager;
  std::shared_ptr<DDFileLogger_Time> logger;
};
