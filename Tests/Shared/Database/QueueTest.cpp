// One connection for many threads, and one for each.

#include <algorithm>
#include <stdexcept>
#include <thread>

#include "Shared/External/fmdb/FMDatabasePool.h"
#include "Shared/External/fmdb/FMDatabaseQueue.h"
#include "Tests/Shared/Database/DatabaseFixture.h"

namespace {

constexpr const char* Increment = "update numbers set n = n + 1";
class Queue : public DatabaseFixture {
 protected:
  /// A queue on a table of one number, 1.
  std::unique_ptr<FMDatabaseQueue_Time> queue() {
    numbers("queue.db", 1);
    return FMDatabaseQueue_Time::databaseQueueWithPath(pathTo("queue.db"));
  }
};

int numberIn(FMDatabaseQueue_Time& queue) {
  int number = 0;
  queue.inDatabase([&](FMDatabase_Time& db) { number = db.intForQuery("select n from numbers"); });
  return number;
}

TEST_F(Queue, EndsTheProgramRatherThanWaitForItself) {
  const auto shared = queue();
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(shared->inDatabase([&](FMDatabase_Time&) { numberIn(*shared); }),
               "inDatabase: was called reentrantly on the same queue");
  // Another queue's work may wait for this one.
  numbers("other.db", 1);
  const auto other = FMDatabaseQueue_Time::databaseQueueWithPath(pathTo("other.db"));
  EXPECT_TRUE(other->inDatabase([&](FMDatabase_Time&) { EXPECT_EQ(numberIn(*shared), 1); }));
}

TEST_F(Queue, UndoesAndReports) {
  const auto shared = queue();
  EXPECT_TRUE(shared->inDeferredTransaction([](FMDatabase_Time& db, bool& rollback) {
    db.executeUpdate(Increment);
    rollback = true;
  }));
  EXPECT_THROW(shared->inTransaction([](FMDatabase_Time& db, bool&) {
    db.executeUpdate(Increment);
    throw std::runtime_error("in a transaction");
  }),
               std::runtime_error);
  for (const bool isUndone : {true, false}) {
    EXPECT_EQ(shared->inSavePoint([&](FMDatabase_Time& db, bool& rollback) {
      EXPECT_TRUE(db.inTransaction());
      db.executeUpdate(Increment);
      rollback = isUndone;
    }),
              std::nullopt);
    EXPECT_EQ(numberIn(*shared), isUndone ? 1 : 2);
  }
  // A rule that is checked at the end: the commit fails, and the next piece begins afresh.
  EXPECT_TRUE(shared->inDatabase([](FMDatabase_Time& db) {
    db.executeStatements(
        "pragma foreign_keys = on; create table parent (id integer primary key);"
        "create table child (id references parent deferrable initially deferred)");
  }));
  EXPECT_FALSE(shared->inTransaction([](FMDatabase_Time& db, bool&) {
    EXPECT_TRUE(db.executeUpdate("insert into child values (1)"));
    db.setLogsErrors(false);
  }));
  EXPECT_TRUE(
      shared->inTransaction([](FMDatabase_Time& db, bool&) { db.executeUpdate(Increment); }));
  EXPECT_EQ(numberIn(*shared), 3);

  std::shared_ptr<FMResultSet_Time> left;
  shared->inDatabase([&](FMDatabase_Time& db) { left = db.executeQuery("select 1"); });
  EXPECT_EQ(logLines(), Lines{"Warning: there is at least one open result set around after "
                              "performing [FMDatabaseQueue inDatabase:]"});
}

TEST_F(Queue, ReopensWhatWasClosed) {
  const auto shared = queue();
  shared->close();
  EXPECT_EQ(numberIn(*shared), 1);
  shared->close();
  std::filesystem::remove(pathTo("queue.db"));
  std::filesystem::create_directory(pathTo("queue.db"));
  EXPECT_TRUE(shared->inSavePoint([](FMDatabase_Time&, bool&) { ADD_FAILURE(); }).has_value());
  EXPECT_EQ(logLines().back(),
            "FMDatabaseQueue could not reopen database for path " + pathTo("queue.db"));
  EXPECT_EQ(FMDatabaseQueue_Time::databaseQueueWithPath(pathTo("queue.db")), nullptr);
  EXPECT_EQ(logLines().back(), "Could not create database queue for path " + pathTo("queue.db"));
}

class Pool : public DatabaseFixture {
 protected:
  Pool() { numbers("pool.db", 1); }
};

TEST_F(Pool, GivesEachUserAConnection) {
  FMDatabasePool_Time pool(pathTo("pool.db"));
  const auto work = [&] {
    for (int pass = 0; pass < 20; ++pass) {
      EXPECT_TRUE(pool.inTransaction(
          [](FMDatabase_Time& db, bool&) { EXPECT_TRUE(db.executeUpdate(Increment)); }));
    }
  };
  std::thread other(work), another(work);
  work();
  other.join();
  another.join();
  EXPECT_EQ(pool.countOfCheckedOutDatabases(), 0U);
  EXPECT_LE(pool.countOfOpenDatabases(), 3U);
  EXPECT_TRUE(pool.inDatabase([&](FMDatabase_Time& outer) {
    EXPECT_EQ(outer.intForQuery("select n from numbers"), 61);
    EXPECT_TRUE(pool.inDatabase([&](FMDatabase_Time& inner) { EXPECT_NE(&inner, &outer); }));
  }));
  EXPECT_THROW(pool.inDeferredTransaction([](FMDatabase_Time& db, bool&) {
    db.executeUpdate(Increment);
    throw std::runtime_error("in a transaction");
  }),
               std::runtime_error);
  EXPECT_EQ(pool.countOfCheckedOutDatabases(), 0U);
  pool.releaseAllDatabases();
  EXPECT_EQ(pool.countOfOpenDatabases(), 0U);
}

TEST_F(Pool, KeepsItsLimitAndItsBooks) {
  struct Delegate : FMDatabasePoolDelegate {
    void databasePoolDidAddDatabase(FMDatabasePool_Time&, FMDatabase_Time&) override { ++added; }
    int added = 0;
  };
  FMDatabasePool_Time pool(pathTo("pool.db"));
  const auto delegate = std::make_shared<Delegate>();
  pool.setDelegate(delegate);
  pool.setMaximumNumberOfDatabasesToCreate(2);
  const auto first = pool.db();
  const auto second = pool.db();
  EXPECT_TRUE(first->checkedOut());
  EXPECT_EQ(pool.db(), nullptr);
  EXPECT_TRUE(pool.inSavePoint([](FMDatabase_Time&, bool&) { ADD_FAILURE(); }).has_value());
  EXPECT_EQ(logLines(), Lines(2, "Maximum number of databases (2) has already been reached!"));
  pool.pushDatabaseBackInPool(second);
  EXPECT_FALSE(second->checkedOut());
  EXPECT_THROW(pool.pushDatabaseBackInPool(second), std::logic_error);
  EXPECT_EQ(pool.db(), second);
  EXPECT_EQ(delegate->added, 2);

  FMDatabasePool_Time nowhere(pathTo("no/such/folder.db"));
  EXPECT_EQ(nowhere.db(), nullptr);
  EXPECT_EQ(logLines().back(),
            "Could not open up the database at path " + pathTo("no/such/folder.db"));
}

}  // namespace
