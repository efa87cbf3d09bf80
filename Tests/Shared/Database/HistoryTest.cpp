// The store of measured values.

#include "Shared/Database/HistoryDatabaseController.h"
#include "Tests/Shared/Database/DatabaseFixture.h"
#include "Tests/Support/ChildProcess.h"

namespace {

using Lines = std::vector<std::string>;

PropertyList::Dictionary write(int number, const char* table = "numbers") {
  return {{"format", "insert into %@ values (?, ?)"},
          {"table", table},
          {"args", PropertyList::Array{number, "new"}}};
}

int countIn(HistoryDatabaseItem_Time& item) {
  int count = 0;
  item.queryDatabase(
      [&](FMDatabase_Time& db) { count = db.intForQuery("select count(*) from numbers"); });
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
  const auto locker = FMDatabase_Time::databaseWithPath(pathTo("history.db"));
  ASSERT_TRUE(locker->open() && locker->beginTransaction());
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
  store->commitSync();
  EXPECT_EQ(countIn(*store), 3);
  store->commitSync();
  EXPECT_EQ(countIn(*store), 3);
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

TEST_F(History, WritesWaitForALockedDatabase) {
  const auto store = item();
  const auto locker = FMDatabase_Time::databaseWithPath(pathTo("history.db"));
  ASSERT_TRUE(locker->open() && locker->beginTransaction());
  store->database()->setMaxBusyRetryTimeInterval(0);
  store->addItem(write(1));
  store->commitSync();
  ASSERT_TRUE(locker->commit());
  EXPECT_EQ(countIn(*store), 0);
  store->addItem(write(2));
  store->commitSync();
  EXPECT_EQ(countIn(*store), 2);
}

TEST_F(History, EndsTheProgramRatherThanWaitForItself) {
  const auto store = item();
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const char* words =
      "inDatabase: was called reentrantly on the same queue, which would lead to a deadlock";
  EXPECT_DEATH(store->queryDatabase([&](FMDatabase_Time&) { countIn(*store); }), words);
  EXPECT_DEATH(store->queryDatabase([&](FMDatabase_Time&) { store->commitSync(); }), words);
}

TEST_F(History, WarnsOfAnOpenCursor) {
  const auto store = item();
  std::shared_ptr<FMResultSet_Time> left;
  store->queryDatabase([&](FMDatabase_Time& db) { left = db.executeQuery("select 1"); });
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
  std::string damaged = readFile(pathTo("good.db"));
  damaged.replace(4096, 4096, 4096, '\x5a');
  writeFile(pathTo("damaged.db"), damaged);
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

  for (const char* bad : {"damaged.db", "text.db"}) {
    controller.restoreBackup(pathTo("good.db"), path);
    systemLogOf([&] { EXPECT_FALSE(controller.restoreBackup(pathTo(bad), path)); });
    EXPECT_FALSE(std::filesystem::exists(path)) << bad;
    EXPECT_TRUE(std::filesystem::exists(pathTo(bad)));
  }
  for (const auto& entry : std::filesystem::directory_iterator(pathTo("")))
    EXPECT_EQ(entry.path().string().find("restored"), std::string::npos) << entry.path();
}

}  // namespace
