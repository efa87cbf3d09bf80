// Cursors: their ends, their connection's end, and statements that are kept for the next one.

#include <sqlite3.h>

#include "Tests/Shared/Database/DatabaseFixture.h"

namespace {

class Cursor : public DatabaseFixture {};

int statementCount(const FMDatabase_Time& database) {
  int count = 0;
  for (auto* statement = sqlite3_next_stmt(database.db(), nullptr); statement != nullptr;
       statement = sqlite3_next_stmt(database.db(), statement)) {
    ++count;
  }
  return count;
}

TEST_F(Cursor, ClosesItselfBehindTheLastRow) {
  const auto database = numbers("end.db", 2);
  const auto rows = database->executeQuery("select n from numbers order by n");
  EXPECT_FALSE(rows->hasAnotherRow());
  EXPECT_EQ(rows->intForColumnIndex(0), 0);
  for (const int number : {1, 2}) {
    EXPECT_TRUE(rows->next());
    EXPECT_TRUE(rows->hasAnotherRow());
    EXPECT_EQ(rows->intForColumnIndex(0), number);
    EXPECT_EQ(rows->resultDictionary(), (PropertyList::Dictionary{{"n", number}}));
  }
  EXPECT_TRUE(database->hasOpenResultSets());
  std::optional<NSError> error;
  EXPECT_FALSE(rows->nextWithError(&error));
  EXPECT_EQ(error, std::nullopt);
  EXPECT_FALSE(database->hasOpenResultSets());
  EXPECT_FALSE(rows->hasAnotherRow());
  EXPECT_EQ(statementCount(*database), 0);

  const std::string words = systemLogOf([&] {
    EXPECT_FALSE(rows->nextWithError(&error));
    EXPECT_EQ(rows->resultDictionary(), std::nullopt);
  });
  EXPECT_EQ(error, (NSError{"FMDatabase", 21, "parentDB does not exist"}));
  EXPECT_EQ(words,
            "velmora: Error calling sqlite3_step (21: bad parameter or other API misuse) rs\n"
            "velmora: Warning: There seem to be no columns in this set.\n");
}

TEST_F(Cursor, TellsAnErrorInTheMiddle) {
  const auto database = numbers("middle.db", 3);
  // The smallest integer has no absolute value: the second row fails.
  const auto rows = database->executeQuery(
      "select abs(case n when 2 then -9223372036854775807 - 1 else n end) from numbers");
  EXPECT_TRUE(rows->next());
  std::optional<NSError> error;
  const std::string words = systemLogOf([&] { EXPECT_FALSE(rows->nextWithError(&error)); });
  EXPECT_EQ(words, "velmora: Error calling sqlite3_step (1: integer overflow) rs\n");
  EXPECT_EQ(error, (NSError{"FMDatabase", 1, "integer overflow"}));
}

TEST_F(Cursor, TwoOnOneTextGoTheirOwnWays) {
  const auto database = numbers("two.db", 3);
  database->setShouldCacheStatements(true);
  const char* query = "select n from numbers where n > ? order by n";
  const auto first = database->executeQuery(query, 0);
  ASSERT_TRUE(first->next());
  const auto second = database->executeQuery(query, 1);
  ASSERT_TRUE(second->next());
  EXPECT_EQ(statementCount(*database), 2);
  ASSERT_TRUE(first->next());
  ASSERT_TRUE(first->next());
  EXPECT_EQ(first->intForColumnIndex(0), 3);
  EXPECT_EQ(second->intForColumnIndex(0), 2);
  first->close();
  second->close();
  // Both are free again and serve the next ones.
  EXPECT_EQ(database->intForQuery(query, 2), 3);
  EXPECT_EQ(database->intForQuery(query, 0), 1);
  EXPECT_EQ(statementCount(*database), 2);

  // A save point's text never comes again.
  database->inSavePoint([](bool&) {});
  EXPECT_EQ(statementCount(*database), 2);

  const auto third = database->executeQuery(query, 0);
  ASSERT_TRUE(third->next());
  database->clearCachedStatements();
  EXPECT_TRUE(third->next());
  EXPECT_EQ(third->intForColumnIndex(0), 2);
  third->close();
  EXPECT_EQ(statementCount(*database), 0);
  database->setShouldCacheStatements(false);
  database->intForQuery(query, 0);
  EXPECT_EQ(statementCount(*database), 0);
}

TEST_F(Cursor, EndsWithItsConnection) {
  auto database = numbers("gone.db", 3);
  const auto closed = database->executeQuery("select word from numbers");
  ASSERT_TRUE(closed->next());
  database->beginTransaction();
  database->close();
  EXPECT_EQ(closed->stringForColumnIndex(0), std::nullopt);
  EXPECT_EQ(closed->dateForColumnIndex(0), std::nullopt);
  // The file is let go of although the cursor is still there.
  EXPECT_TRUE(lockedDatabase("gone.db")->rollback());

  database->open();
  const auto orphan = database->executeQuery("select word from numbers");
  ASSERT_TRUE(orphan->next());
  database.reset();
  EXPECT_EQ(orphan->stringForColumnIndex(0), std::nullopt);
}

TEST_F(Cursor, SeesATableThatHasChangedSinceItWasPrepared) {
  const auto database = numbers("changed.db", 1);
  database->setShouldCacheStatements(true);
  database->executeQuery("select * from numbers")->next();
  const auto rows = database->executeQuery("select * from numbers");
  EXPECT_EQ(rows->columnIndexForName("word"), 1);
  database->executeUpdate("alter table numbers add column extra default 7");
  ASSERT_TRUE(rows->next());
  EXPECT_EQ(rows->columnCount(), 3);
  EXPECT_EQ(rows->intForColumnName("extra"), 7);
  EXPECT_EQ(rows->resultDictionary(),
            (PropertyList::Dictionary{{"n", 1}, {"word", "word 1"}, {"extra", 7}}));
}

}  // namespace
