// The store of measured values.

#include <sqlite3.h>

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "Platform/Dispatch/Dispatch.h"
#include "Shared/Database/HistoryDatabaseController.h"
#include "Tests/Shared/Database/DatabaseFixture.h"
#include "Tests/Support/ChildProcess.h"

namespace {

PropertyList::Dictionary write(int number, const char* table = "numbers") {
  return {{"format", "insert into %@ values (?, ?)"},
          {"table", table},
          {"args", PropertyList::Array{number, std::string(5000, 'x')}}};
}

int countIn(HistoryDatabaseItem_Time& item) {
  int count = 0;
  item.queryDatabase([&](FMDatabase_Time& db) { count = countIn(db); });
  return count;
}

class History : public DatabaseFixture {
 protected:
  /// An item on a table without rows.
  std::shared_ptr<HistoryDatabaseItem_Time> item() {
    numbers("history.db", 0);
    return std::make_shared<HistoryDatabaseItem_Time>(pathTo("history.db"));
  }
};

TEST_F(History, AWriteAddedDuringACommitWaitsForTheNext) {
  const auto store = item();
  const auto locker = lockedDatabase("history.db");
  store->database()->setMaxBusyRetryTimeInterval(60);
  store->addItem(write(1));
  store->addItem(write(2));
  store->commit();
  // The commit has taken its writes and waits for the lock.
  ASSERT_TRUE(waitUntil([&] { return store->busy(); }));
  store->addItem(write(3));
  ASSERT_TRUE(locker->commit());
  EXPECT_EQ(countIn(*store), 2);
  EXPECT_FALSE(store->busy());
  for (const char* again : {"the third", "nothing"}) {
    store->commitSync();
    EXPECT_EQ(countIn(*store), 3) << again;
  }
}

TEST_F(History, AFailingWriteDoesNotStopTheOthers) {
  const auto store = item();
  store->addItem(write(1, "nowhere"));
  store->addItem({});
  store->addItem({{"format", 7}, {"args", "none"}});
  store->addItem(write(2));
  store->commitSync();
  EXPECT_EQ(countIn(*store), 1);
  // Statements are kept, and errors are not told.
  EXPECT_TRUE(store->database()->shouldCacheStatements());
  EXPECT_EQ(logLines(), Lines{});
}

TEST_F(History, WritesWaitForADatabaseThatTakesNone) {
  using Item = HistoryDatabaseItem_Time;
  const struct {
    const char* name;
    bool isByAnother;
    const char* fails;
    const char* works;
    void (Item::*triesAgain)();
  } cases[] = {{"locked", true, "begin exclusive", "commit", &Item::commitSync},
               {"locked until the close", true, "begin exclusive", "commit", &Item::close},
               // A write takes more than a page of 4096 bytes.
               {"full", false, "pragma max_page_count = 3", "pragma max_page_count = 99",
                &Item::commitSync}};
  for (const auto& entry : cases) {
    SCOPED_TRACE(entry.name);
    std::filesystem::remove(pathTo("history.db"));
    const auto store = item();
    const auto locker = openedDatabase("history.db");
    store->database()->setMaxBusyRetryTimeInterval(0);
    FMDatabase_Time& changed = entry.isByAnother ? *locker : *store->database();
    EXPECT_TRUE(changed.executeStatements(entry.fails));
    store->addItem(write(1, "nowhere"));
    for (const int number : {2, 3, 4})
      store->addItem(write(number));
    store->commitSync();
    EXPECT_TRUE(changed.executeStatements(entry.works));
    EXPECT_FALSE(store->database()->inTransaction());
    EXPECT_EQ(countIn(*locker), 0);
    ((*store).*entry.triesAgain)();
    EXPECT_EQ(locker->stringForQuery("select group_concat(n) from numbers"), "2,3,4");
  }
}

// Of a failure that is none of the write's own nothing may be lost either.
TEST_F(History, WritesWaitForPermission) {
  const auto store = item();
  const auto permit = [&](int answer) {
    const auto isAllowed = [](void* context, int action, const char*, const char*, const char*,
                              const char*) {
      return action == SQLITE_INSERT ? *static_cast<int*>(context) : SQLITE_OK;
    };
    sqlite3_set_authorizer(store->database()->db(), isAllowed, &answer);
    store->commitSync();
    sqlite3_set_authorizer(store->database()->db(), nullptr, nullptr);
    return countIn(*store);
  };
  store->addItem(write(1));
  store->addItem(write(2));
  EXPECT_EQ(permit(SQLITE_DENY), 0);
  EXPECT_EQ(permit(SQLITE_OK), 2);
}

TEST_F(History, AnotherThreadsCallsCostNoWrite) {
  const auto store = item();
  std::atomic<bool> done = false;
  std::thread other([&] {
    while (!done)
      store->database()->executeQuery("select 1");
  });
  for (int number = 1; number <= 200; ++number) {
    store->addItem(write(number));
    store->commitSync();
  }
  done = true;
  other.join();
  EXPECT_EQ(countIn(*store), 200);
}

// The item's queue is held until the process is about to end. What was arranged first for the end
// comes last.
TEST_F(History, TheOrdinaryEndOfAProcessWritesWhatWasCommitted) {
  static std::string path;
  static dispatch_semaphore_t ending;
  path = pathTo("history.db");
  ending = dispatch_semaphore_create(0);
  const auto end = [&] {
    std::atexit([] {
      const auto reader = FMDatabase_Time::databaseWithPath(path);
      reader->open();
      std::cerr << countIn(*reader) << " written";
    });
    const auto store = item();
    store->queryDatabaseAsync([](FMDatabase_Time&) { dispatch_semaphore_wait(ending); });
    store->addItem(write(1));
    store->commit();
    std::atexit([] { dispatch_semaphore_signal(ending); });
    std::exit(0);
  };
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(end(), testing::ExitedWithCode(0), "1 written");
}

TEST_F(History, EndsTheProgramRatherThanWaitForItself) {
  const auto store = item();
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(store->queryDatabase([&](FMDatabase_Time&) { store->commitSync(); }),
               "inDatabase: was called reentrantly on the same queue");
}

TEST_F(History, WarnsOfAnOpenCursor) {
  std::shared_ptr<FMResultSet_Time> left;
  item()->queryDatabase([&](FMDatabase_Time& db) { left = db.executeQuery("select 1"); });
  EXPECT_EQ(logLines(), Lines{"Warning: there is at least one open result set around after "
                              "performing [FMDatabaseQueue inDatabase:]"});
}

TEST_F(History, TellsDatabasesApartByTheirFilesNames) {
  HistoryDatabaseController_Time controller;
  std::filesystem::create_directory(pathTo("other"));
  EXPECT_EQ(controller.databaseWithPath(""), nullptr);
  const auto first = controller.databaseWithPath(pathTo("same.db"));
  EXPECT_EQ(controller.databaseWithPath(pathTo("other/same.db")), first);
  EXPECT_NE(controller.databaseWithPath(pathTo("other/same2.db")), first);
  EXPECT_FALSE(std::filesystem::exists(pathTo("other/same.db")));
  controller.closeDatabase(pathTo("same.db"));
  EXPECT_EQ(first->database()->db(), nullptr);
  EXPECT_NE(controller.databaseWithPath(pathTo("same.db")), first);
  controller.deleteDatabase(pathTo("same.db"));
  EXPECT_FALSE(std::filesystem::exists(pathTo("same.db")));
  EXPECT_EQ(logLines(), Lines{});

  EXPECT_NE(controller.databaseWithPath(pathTo("other")), nullptr);
  EXPECT_EQ(logLines(), (Lines{"error opening!: 14", "Could not open db."}));
  EXPECT_EQ(databaseWithPath(pathTo("free.db")),
            databaseItemWithPath(pathTo("free.db"))->database());
  EXPECT_EQ(databaseWithPath(""), nullptr);
}

TEST_F(History, ABadBackupLeavesNoFile) {
  HistoryDatabaseController_Time controller;
  const std::string path = pathTo("restored.db");
  numbers("good.db", 3)->close();
  writeFile(pathTo("text.db"), "no database at all");

  EXPECT_TRUE(controller.restoreBackup(pathTo("good.db"), path));
  EXPECT_EQ(countIn(*controller.databaseWithPath(path)), 3);
  // Nothing happens without a backup, or with the database as its own.
  EXPECT_FALSE(controller.restoreBackup(pathTo("missing.db"), path));
  EXPECT_FALSE(controller.restoreBackup(path, path));
  EXPECT_EQ(countIn(*controller.databaseWithPath(path)), 3);
  // A journal of another database must not be played back into the backup.
  writeFile(path + "-journal", readFile(path));
  EXPECT_TRUE(controller.restoreBackup(pathTo("good.db"), path));

  systemLogOf([&] { EXPECT_FALSE(controller.restoreBackup(pathTo("text.db"), path)); });
  EXPECT_TRUE(std::filesystem::exists(pathTo("text.db")));
  for (const auto& entry : std::filesystem::directory_iterator(pathTo("")))
    EXPECT_EQ(entry.path().string().find("restored"), std::string::npos) << entry.path();
}

// The file keeps a second name here, as what is left if the machine stops in the midst of it.
TEST_F(History, ARestoreSettlesTheOldDatabaseFirst) {
  numbers("good.db", 3)->close();
  const auto writing = numbers("writing.db", 2000);
  writing->executeStatements("pragma cache_size = 1; begin; update numbers set n = -n");
  for (const std::string file : {".db", ".db-journal"})
    std::filesystem::copy_file(pathTo("writing" + file), pathTo("crashed" + file));
  std::filesystem::create_hard_link(pathTo("crashed.db"), pathTo("old.db"));
  HistoryDatabaseController_Time controller;
  EXPECT_TRUE(controller.restoreBackup(pathTo("good.db"), pathTo("crashed.db")));
  EXPECT_EQ(openedDatabase("old.db")->intForQuery("select min(n) from numbers"), 1);
}

TEST_F(History, WhoAsksDuringARestoreGetsTheDatabaseBeforeOrBehindIt) {
  HistoryDatabaseController_Time controller;
  const std::string path = pathTo("asked.db");
  numbers("backup.db", 3)->close();
  controller.restoreBackup(pathTo("backup.db"), path);
  std::atomic<bool> done = false;
  std::thread asking([&] {
    while (!done) {
      controller.databaseWithPath(path);
      // Were it missing at any moment, a crash then would leave none.
      EXPECT_TRUE(std::filesystem::exists(path));
    }
  });
  for (int round = 0; round < 50; ++round) {
    EXPECT_TRUE(controller.restoreBackup(pathTo("backup.db"), path));
    const auto store = controller.databaseWithPath(path);
    store->addItem(write(4));
    store->commitSync();
    EXPECT_EQ(countIn(*openedDatabase("asked.db")), 4);
  }
  done = true;
  asking.join();
}

}  // namespace
