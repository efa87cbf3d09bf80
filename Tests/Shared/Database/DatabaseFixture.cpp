#include "Tests/Shared/Database/DatabaseFixture.h"

#include <atomic>
#include <mutex>
#include <utility>

#include "Shared/External/Logging/DDAbstractLogger.h"
#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogMessage.h"
#include "Tests/Support/TestEnvironment.h"

class LineCollector : public DDAbstractLogger_Time {
 public:
  LineCollector() : DDAbstractLogger_Time("tests.collector") {}

  void logMessage(const DDLogMessage_Time& message) override {
    const std::lock_guard lock(mutex_);
    lines_.push_back(message.logMsg);
  }

  std::vector<std::string> takeLines() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> lines_;
};

DatabaseFixture::DatabaseFixture() : collector_(std::make_shared<LineCollector>()) {
  static std::atomic<int> count = 0;
  folder_ = testFolder() / ("database-" + std::to_string(count++));
  std::filesystem::create_directory(folder_);
  DDLog_Time::addLogger(collector_);
}

DatabaseFixture::~DatabaseFixture() { DDLog_Time::removeLogger(collector_); }

std::shared_ptr<FMDatabase_Time> DatabaseFixture::numbers(std::string_view name, int count) const {
  auto database = FMDatabase_Time::databaseWithPath(pathTo(name));
  database->open();
  database->executeUpdate("create table numbers (n integer, word text)");
  database->beginTransaction();
  for (int number = 1; number <= count; ++number) {
    database->executeUpdate("insert into numbers values (?, ?)", number,
                            "word " + std::to_string(number));
  }
  database->commit();
  return database;
}

std::vector<std::string> DatabaseFixture::logLines() {
  DDLog_Time::flushLog();
  return collector_->takeLines();
}
