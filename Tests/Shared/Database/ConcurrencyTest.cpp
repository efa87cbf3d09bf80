// Two connections to one file, and one connection under several threads; the latter for the thread
// sanitizer above all.

#include <atomic>
#include <chrono>
#include <thread>

#include "Platform/Foundation/Time/SystemClock.h"
#include "Tests/Shared/Database/DatabaseFixture.h"
#include "Tests/Support/ChildProcess.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// The clock of the program stands still in these tests: the wait for a lock must end all the same.
class Busy : public DatabaseFixture {
 protected:
  Busy() { SystemClock::install(&standingClock_); }
  ~Busy() override { SystemClock::install(nullptr); }

  ManualClock standingClock_{1'795'000'000};
  const std::shared_ptr<FMDatabase_Time> database_ = numbers("busy.db", 3);
  const std::shared_ptr<FMDatabase_Time> holder_ = lockedDatabase("busy.db");
};

TEST_F(Busy, GivesUpWithinItsBounds) {
  struct Case {
    double limit;
    milliseconds least;
  };
  std::optional<NSError> error;
  for (const Case& wait : {Case{0, milliseconds(0)},
                           {-1, milliseconds(0)},
                           {0.3, milliseconds(300)},
                           {0.05, milliseconds(50)}}) {
    database_->setMaxBusyRetryTimeInterval(wait.limit);
    const auto start = Clock::now();
    EXPECT_FALSE(database_->executeUpdate("delete from numbers", &error, PropertyList::Array{}));
    const auto waited = Clock::now() - start;
    EXPECT_GE(waited, wait.least) << wait.limit;
    // One sleep more than the limit at most, and what a loaded machine adds.
    EXPECT_LT(waited, wait.least + milliseconds(2000)) << wait.limit;
  }
  EXPECT_EQ(error, (NSError{"FMDatabase", 5, "database is locked"}));
  EXPECT_EQ(logLines().front(), "Unknown error calling sqlite3_step (5: database is locked) eu");
}

TEST_F(Busy, ACursorSaysSoAndClosesAndTheDatabaseCountsAsValid) {
  database_->setMaxBusyRetryTimeInterval(0);
  const auto rows = database_->executeQuery("select * from numbers");
  ASSERT_NE(rows, nullptr);
  std::optional<NSError> error;
  std::string words = systemLogOf([&] { EXPECT_FALSE(rows->nextWithError(&error)); });
  EXPECT_EQ(error, (NSError{"FMDatabase", 5, "database is locked"}));
  EXPECT_NE(words.find(" Database busy (" + pathTo("busy.db") + ")\n"), std::string::npos) << words;
  EXPECT_NE(words.find("velmora: Database busy\n"), std::string::npos);
  EXPECT_FALSE(database_->hasOpenResultSets());
  words = systemLogOf([&] { EXPECT_TRUE(database_->isDatabaseValid()); });
  EXPECT_EQ(words, "velmora: Result is simple BUSY of the sqllite3 on isDatabaseCorrupted\n");
}

class Threads : public DatabaseFixture {};

// The first call waits for another connection's lock, which is held until the second one has been
// answered.
TEST_F(Threads, ASecondCallIsAnsweredAtOnce) {
  const auto database = numbers("guard.db", 3);
  const auto locker = lockedDatabase("guard.db");
  database->setMaxBusyRetryTimeInterval(60);
  std::thread first([&] {
    // The other thread's calls may come before the first one.
    while (!database->executeUpdate("insert into numbers values (4, 'four')"))
      std::this_thread::yield();
  });
  EXPECT_TRUE(waitUntil([&] { return database->executeQuery("select 1") == nullptr; }));
  std::optional<NSError> error;
  EXPECT_FALSE(database->executeUpdate("select 1", &error, PropertyList::Array{}));
  EXPECT_EQ(error->localizedDescription,
            "The FMDatabase " + database->description() + " is currently in use.");
  locker->commit();
  first.join();
  EXPECT_NE(database->executeQuery("select 1"), nullptr);
}

// The query's preparing waits for the lock, since the file was never read; meanwhile the connection
// is closed.
TEST_F(Threads, AQueryThatMeetsAClosingGivesNoCursor) {
  numbers("meets.db", 3);
  const auto locker = lockedDatabase("meets.db");
  const auto database = openedDatabase("meets.db");
  database->setMaxBusyRetryTimeInterval(60);
  std::atomic<bool> stopped = false;
  std::thread query([&] {
    // Refused only while the other thread's call is being made.
    while (!stopped)
      EXPECT_EQ(database->executeQuery("select * from numbers"), nullptr);
  });
  EXPECT_TRUE(waitUntil([&] { return database->executeQuery("select 1") == nullptr; }));
  database->close();
  stopped = true;
  locker->commit();
  query.join();
  EXPECT_FALSE(database->hasOpenResultSets());
}

TEST_F(Threads, CallsAndClosingsMeet) {
  const auto database = numbers("meeting.db", 20);
  database->setLogsErrors(false);
  database->setShouldCacheStatements(true);
  std::atomic<bool> done = false;
  std::thread opener([&] {
    for (int pass = 0; pass < 300; ++pass) {
      database->close();
      database->open();
    }
    done = true;
  });
  while (!done) {
    systemLogOf([&] {
      const auto rows = database->executeQuery("select word from numbers");
      while (rows && rows->next()) {
        // Either the whole word or nothing: never half of it.
        const std::string word = rows->stringForColumnIndex(0).value_or("word");
        EXPECT_TRUE(word.starts_with("w")) << word;
        rows->objectForColumnName("word");
        rows->columnIsNull("word");
      }
    });
    database->executeUpdate("update numbers set word = 'w' where n = 1");
    database->lastErrorMessage();
    database->setMaxBusyRetryTimeInterval(1);
    database->hasOpenResultSets();
    database->isDatabaseValid();
  }
  opener.join();
  EXPECT_FALSE(database->hasOpenResultSets());
  EXPECT_EQ(countIn(*database), 20);
}

}  // namespace
