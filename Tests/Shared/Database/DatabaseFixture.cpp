#include "Tests/Shared/Database/DatabaseFixture.h"

#include <utility>

#include "Shared/External/Logging/DDLog.h"

DatabaseFixture::DatabaseFixture() { DDLog_Time::addLogger(logger_); }

DatabaseFixture::~DatabaseFixture() {
  DDLog_Time::removeLogger(logger_);
  DDLog_Time::flushLog();
}

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
  return std::exchange(lines_, {});
}

int countIn(FMDatabase_Time& database) {
  return database.intForQuery("select count(*) from numbers");
}
