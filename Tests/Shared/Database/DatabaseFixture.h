#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Shared/External/fmdb/FMDatabase.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Shared/Logging/TestLogger.h"

using Lines = std::vector<std::string>;

/// A folder of the test's own, and what the log says meanwhile.
class DatabaseFixture : public testing::Test {
 protected:
  DatabaseFixture();
  ~DatabaseFixture() override;

  std::string pathTo(std::string_view name) const { return (folder_ / name).string(); }

  /// An open database with the table "numbers (n integer, word text)" of the rows 1 to `count`.
  std::shared_ptr<FMDatabase_Time> numbers(std::string_view name, int count) const;

  std::shared_ptr<FMDatabase_Time> openedDatabase(std::string_view name) const;

  /// Another connection to a file, which has it for itself until it is done with its transaction.
  std::shared_ptr<FMDatabase_Time> lockedDatabase(std::string_view name) const;

  /// The log's lines since the last call, or since the start.
  Lines logLines();

 private:
  std::filesystem::path folder_ = freshFolder();
  Lines lines_;  ///< Of the logger's queue until the log is flushed.
  const std::shared_ptr<TestLogger> logger_ = std::make_shared<TestLogger>(
      [this](const DDLogMessage_Time& message) { lines_.push_back(message.logMsg); });
};

/// How many rows the table "numbers" has.
int countIn(FMDatabase_Time& database);

/// What `work` writes to the system log.
template <typename Work>
std::string systemLogOf(Work work) {
  testing::internal::CaptureStderr();
  work();
  return testing::internal::GetCapturedStderr();
}
