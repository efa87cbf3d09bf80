#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Shared/External/Logging/DDFileLogger.h"
#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogLine.h"
#include "Tests/Support/TestEnvironment.h"
#include "Tests/Targets/SimulatedTime.h"

inline std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The pieces between line ends; a last one without an end counts.
inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (size_t begin = 0; begin < text.size();) {
    const size_t end = std::min(text.find('\n', begin), text.size());
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

/// What a line says behind its date, "2026/11/21 15:04:05:000  "; the whole line if it has none.
inline std::string messageOf(const std::string& line) {
  constexpr size_t Message = 25;
  return line.size() >= Message && line.compare(23, 2, "  ") == 0 ? line.substr(Message) : line;
}

/// A folder of logs, a logger that is registered with the front door, and simulated time.
class LogFolderTest : public testing::Test {
 protected:
  LogFolderTest() { std::filesystem::remove_all(folder); }
  ~LogFolderTest() override {
    stopLogging();
    std::filesystem::remove_all(folder);
  }

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
    std::filesystem::create_directories(folder);
    const auto path = folder / (makeManager()->applicationName() + nameBehindApplication);
    std::ofstream(path, std::ios::binary) << text;
    if (archived) DDLogFileInfo_Time(path).setIsArchived(true);
    return path;
  }

  /// The visible files' names behind the application's, sorted.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    if (!std::filesystem::exists(folder)) return names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      const std::string name = entry.path().filename();
      if (name.front() != '.') names.push_back(name.substr(name.find(' ')));
    }
    std::ranges::sort(names);
    return names;
  }

  std::filesystem::path pathOf(const std::string& nameBehindApplication) {
    return folder / (makeManager()->applicationName() + nameBehindApplication);
  }

  SimulatedTime time;
  const std::filesystem::path folder = testFolder() / "Logs";
  std::shared_ptr<DDLogFileManagerDefault_Time> manager;
  std::shared_ptr<DDFileLogger_Time> logger;
};
