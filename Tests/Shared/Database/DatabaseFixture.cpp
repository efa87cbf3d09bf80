#include "Tests/Shared/Database/DatabaseFixture.h"

#include <mutex>
#include <utility>

#include "Shared/External/Logging/DDAbstractLogger.h"
#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogMessage.h"

class LineCollector : public DDAbstractLogger_Time {
 public:
  LineCollector() : DDAbstractLogger_Time("tests.collector") {}

  void logMessage(const DDLogMessage_Time& message) override {
    const std::lock_guard lock(mutex_);
    lines_.push_back(message.logMsg);
  }

  Lines takeLines() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }

 private:
  std::mutex mutex_;
  Lines lines_;
};

DatabaseFixture::DatabaseFixture() : collector_(std::make_shared<LineCollector>()) {
  DDLog_Time::addLogger(collector_);
}

DatabaseFixture::~DatabaseFixture() { DDLog_Time::removeLogger(collector_); }

std::shared_ptr<FMDatabase_Time> DatabaseFixture::numbers(std::string_view name, int count) const {
  auto database = openedDatabase(name);
  database->executeUpdate("create table numbers (n integer, word text)");
  database->beginTransaction();
  for (int number = 1; number <= count; ++number) {
    database->executeUpdate("insert into numbers values (?, ?)", number,
                            "word " + std::to_string(number));
  }
  database->commit();
  return database;
}

std::shared_ptr<FMDatabase_Time> DatabaseFixture::openedDatabase(std::string_view name) const {
  auto database = FMDatabase_Time::databaseWithPath(pathTo(name));
  EXPECT_TRUE(database->open()) << name;
  return database;
}

std::shared_ptr<FMDatabase_Time> DatabaseFixture::lockedDatabase(std::string_view name) const {
  auto database = openedDatabase(name);
  EXPECT_TRUE(database->beginTransaction()) << name;
  return database;
}

Lines DatabaseFixture::logLines() {
  DDLog_Time::flushLog();
  return collector_->takeLines();
}

int countIn(FMDatabase_Time& database) {
  return database.intForQuery("select count(*) from numbers");
}
