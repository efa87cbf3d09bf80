// Two connections to one file. The clock of the program stands still in these tests: the wait for a
// lock must end all the same.

#include <chrono>

#include "Platform/Foundation/Time/SystemClock.h"
#include "Tests/Shared/Database/DatabaseFixture.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

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

}  // namespace
