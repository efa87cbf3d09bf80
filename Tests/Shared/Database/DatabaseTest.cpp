// The connection: opening, refusing, failing with the right words, transactions, schema.

#include <sqlite3.h>

#include <stdexcept>

#include "Tests/Shared/Database/DatabaseFixture.h"

namespace {

class Database : public DatabaseFixture {};

TEST_F(Database, OpensOnceAndClosesTwice) {
  const auto database = numbers("twice.db", 2);
  sqlite3* handle = database->db();
  EXPECT_TRUE(database->open());
  EXPECT_EQ(database->db(), handle);
  for (const char* time : {"once", "twice"}) {
    EXPECT_TRUE(database->close()) << time;
    EXPECT_EQ(database->db(), nullptr) << time;
  }
  EXPECT_TRUE(database->open());
  EXPECT_EQ(countIn(*database), 2);
}

// 14 is SQLITE_CANTOPEN.
TEST_F(Database, SaysWhyItDoesNotOpen) {
  std::filesystem::create_directory(pathTo("folder"));
  for (const char* path : {"folder", "no/such/folder/new.db", "missing.db"}) {
    const auto database = FMDatabase_Time::databaseWithPath(pathTo(path));
    const bool mayCreate = std::string_view(path) != "missing.db";
    EXPECT_FALSE(mayCreate ? database->open() : database->openWithFlags(FMOpenReadOnly)) << path;
    EXPECT_EQ(database->lastError(), (NSError{"FMDatabase", 14, "unable to open database file"}));
    EXPECT_TRUE(database->hadError());
    EXPECT_EQ(logLines(), Lines{"error opening!: 14"}) << path;
  }
  EXPECT_FALSE(std::filesystem::exists(pathTo("missing.db")));
}

TEST_F(Database, AClosedOneRefusesEveryCall) {
  const auto database = FMDatabase_Time::databaseWithPath(pathTo("closed.db"));
  const std::string words = "The FMDatabase " + database->description() + " is not open.";
  EXPECT_EQ(database->executeQuery("select 1"), nullptr);
  EXPECT_FALSE(database->executeUpdate("create table t (a)"));
  EXPECT_FALSE(database->executeStatements("create table t (a)"));
  EXPECT_FALSE(database->validateSQL("select 1", nullptr));
  EXPECT_EQ(logLines(), Lines(4, words));
  EXPECT_FALSE(database->isDatabaseValid());
  EXPECT_EQ(database->changes(), 0);
  EXPECT_EQ(database->lastInsertRowId(), 0);
  database->setCrashOnErrors(true);
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(database->executeQuery("select 1"), "is not open\\.");
}

TEST_F(Database, NoticesDamage) {
  const std::string path = pathTo("damaged.db");
  const auto sound = numbers("damaged.db", 2000);
  sound->executeUpdate("create index by_word on numbers (word)");
  EXPECT_TRUE(sound->isDatabaseValid());
  sound->close();
  std::string bytes = readFile(path);
  // The middle third of the pages: the first one, with the header, stays whole.
  const size_t third = bytes.size() / 3;
  bytes.replace(third, third, third, '\x5a');
  writeFile(path, bytes);

  const auto damaged = openedDatabase("damaged.db");
  const std::string words = systemLogOf([&] { EXPECT_FALSE(damaged->isDatabaseValid()); });
  EXPECT_NE(words.find("ATTENTION: integrity_check response "), std::string::npos) << words;

  writeFile(pathTo("text.db"), std::string(4096, 'x'));
  const auto text = openedDatabase("text.db");
  EXPECT_FALSE(text->isDatabaseValid());
  EXPECT_FALSE(text->goodConnection());
}

TEST_F(Database, RefusesTooFewValues) {
  const auto database = numbers("few.db", 3);
  const std::string insert = "insert into numbers values (?, ?)";
  EXPECT_EQ(database->executeQuery("select * from numbers where n = ?"), nullptr);
  EXPECT_FALSE(database->executeUpdate(insert, 4));
  EXPECT_FALSE(database->executeUpdate("insert into numbers values (:n, :word)",
                                       PropertyList::Dictionary{{"n", 4}, {"wrd", "four"}}));
  EXPECT_EQ(logLines(),
            (Lines{"Error: the bind count is not correct for the # of variables (executeQuery)",
                   "Error: the bind count (1) is not correct for the # of variables in the query "
                   "(2) (insert into numbers values (?, ?)) (executeUpdate)",
                   "Could not find index for wrd",
                   "Error: the bind count (1) is not correct for the # of variables in the query "
                   "(2) (insert into numbers values (:n, :word)) (executeUpdate)"}));
  EXPECT_EQ(countIn(*database), 3);
  // The refusals leave nothing locked and nothing marked as in use.
  EXPECT_TRUE(database->executeUpdate(insert, 4, "four"));
  EXPECT_TRUE(database->executeUpdate("insert into numbers values (:n, :word)",
                                      PropertyList::Dictionary{{"n", 5}, {"word", "five"}}));
  EXPECT_EQ(database->stringForQuery("select word from numbers where n = 5"), "five");
}

TEST_F(Database, AnUpdateThatReturnsARowFails) {
  const auto database = numbers("row.db", 3);
  for (const bool caches : {false, true, true}) {
    database->setShouldCacheStatements(caches);
    EXPECT_FALSE(database->executeUpdate("select n from numbers"));
    EXPECT_EQ(logLines(), (Lines{"A executeUpdate is being called with a query string 'select n "
                                 "from numbers'",
                                 "DB Query: select n from numbers"}));
  }
  EXPECT_TRUE(lockedDatabase("row.db")->rollback()) << "the row does not keep the file locked";
}

TEST_F(Database, TellsAFaultyQuery) {
  const auto database = numbers("faulty.db", 1);
  EXPECT_EQ(database->executeQuery("select * from missing"), nullptr);
  EXPECT_EQ(logLines(),
            (Lines{"DB Error: 1 \"no such table: missing\"", "DB Query: select * from missing",
                   "DB Path: " + pathTo("faulty.db")}));
  EXPECT_EQ(database->lastErrorCode(), 1);
  std::optional<NSError> error;
  EXPECT_FALSE(database->validateSQL("selekt", &error));
  EXPECT_EQ(error->localizedDescription, "near \"selekt\": syntax error");
  EXPECT_TRUE(database->validateSQL("delete from numbers", nullptr));
  EXPECT_EQ(countIn(*database), 1);
  database->setLogsErrors(false);
  EXPECT_EQ(database->executeQuery("select * from missing"), nullptr);
  EXPECT_FALSE(database->executeUpdate("drop table missing"));
  EXPECT_EQ(logLines(), Lines{});
  // A text without a statement is misuse, not a crash.
  EXPECT_FALSE(database->executeUpdate("-- nothing"));
  EXPECT_FALSE(database->executeUpdate(""));
}

TEST_F(Database, FinalisesWhatWasLeftOnTheBareHandle) {
  const auto database = numbers("leak.db", 2);
  sqlite3_stmt* leaked = nullptr;
  ASSERT_EQ(sqlite3_prepare_v2(database->db(), "select * from numbers", -1, &leaked, nullptr), 0);
  EXPECT_TRUE(database->close());
  EXPECT_EQ(logLines(), Lines{"Closing leaked statement"});
}

TEST_F(Database, FormatsBindTheirValues) {
  const auto database = numbers("format.db", 3);
  const std::string hostile = "' or '1'='1";
  EXPECT_TRUE(database->executeUpdateWithFormat("insert into numbers values (%d, %@)", 4, hostile));
  const auto rows = database->executeQueryWithFormat(
      "select n from numbers where word = %@ and n %% 3 = %lld", hostile, int64_t{1});
  ASSERT_TRUE(rows && rows->next());
  EXPECT_EQ(rows->intForColumnIndex(0), 4);
  EXPECT_FALSE(rows->next());
  EXPECT_EQ(database->executeQueryWithFormat("select * from numbers where n = %d"), nullptr);
}

TEST_F(Database, UndoesWhatATransactionShouldNotLeave) {
  const auto database = numbers("undo.db", 1);
  const auto insert = [&] { database->executeUpdate("insert into numbers values (9, 'x')"); };

  EXPECT_TRUE(database->beginTransaction());
  EXPECT_TRUE(database->inTransaction());
  EXPECT_FALSE(database->beginTransaction());
  insert();
  EXPECT_THROW(database->inSavePoint([&](bool&) {
    insert();
    throw std::runtime_error("in a save point");
  }),
               std::runtime_error);
  EXPECT_EQ(countIn(*database), 2);
  EXPECT_TRUE(database->startSavePointWithName("it's", nullptr));
  insert();
  EXPECT_TRUE(database->rollbackToSavePointWithName("it's", nullptr));
  EXPECT_TRUE(database->releaseSavePointWithName("it's", nullptr));
  std::optional<NSError> error;
  EXPECT_FALSE(database->releaseSavePointWithName("it's", &error));
  EXPECT_EQ(error->localizedDescription, "no such savepoint: it's");
  EXPECT_TRUE(database->rollback());
  EXPECT_FALSE(database->inTransaction());
  EXPECT_EQ(countIn(*database), 1);

  // Some failures undo the whole transaction by themselves.
  EXPECT_TRUE(database->beginTransaction());
  EXPECT_FALSE(database->executeUpdate("insert or rollback into numbers (rowid) values (1)"));
  EXPECT_FALSE(database->inTransaction());

  EXPECT_TRUE(database->beginDeferredTransaction());
  insert();
  database->close();
  EXPECT_FALSE(database->inTransaction());
  database->open();
  EXPECT_EQ(countIn(*database), 1);
}

TEST_F(Database, KnowsItsSchema) {
  const auto database = numbers("schema.db", 0);
  EXPECT_TRUE(database->tableExists("NUMBERS"));
  EXPECT_FALSE(database->tableExists("number"));
  EXPECT_TRUE(database->columnExists("Word", "numbers"));
  EXPECT_FALSE(database->columnExists("wor", "numbers"));
  EXPECT_FALSE(database->columnExists("word", "it's not there"));
  EXPECT_EQ(database->userVersion(), 0);
  database->setUserVersion(-7);
  EXPECT_EQ(database->userVersion(), -7);
  EXPECT_TRUE(database->executeUpdate("insert into numbers values (1, 'one'), (2, null)"));
  EXPECT_EQ(database->changes(), 2);
  EXPECT_EQ(database->lastInsertRowId(), 2);
}

TEST_F(Database, RunsSeveralStatements) {
  const auto database = numbers("several.db", 2);
  std::vector<PropertyList::Dictionary> rows;
  const auto keep = [&](const PropertyList::Dictionary& row) {
    rows.push_back(row);
    return 0;
  };
  EXPECT_TRUE(database->executeStatements(
      "insert into numbers values (3, null); select * from numbers where n > 1", keep));
  EXPECT_EQ(rows, (std::vector<PropertyList::Dictionary>{{{"n", "2"}, {"word", "word 2"}},
                                                         {{"n", "3"}, {"word", {}}}}));
  EXPECT_FALSE(database->executeStatements("select * from numbers", [](const auto&) { return 1; }));
  EXPECT_THROW(
      database->executeStatements("select * from numbers",
                                  [](const auto&) -> int { throw std::runtime_error("in a row"); }),
      std::runtime_error);
  EXPECT_FALSE(database->executeStatements("delete from numbers; nonsense; select 1"));
  EXPECT_EQ(countIn(*database), 0);
}

TEST_F(Database, TracesToStandardOutput) {
  const auto database = numbers("trace.db", 0);
  database->setTraceExecution(true);
  testing::internal::CaptureStdout();
  database->executeQuery("select 1");
  database->executeUpdate("delete from numbers");
  const std::string output = testing::internal::GetCapturedStdout();
  EXPECT_NE(output.find(database->description() + " executeQuery: select 1\n"), std::string::npos);
  EXPECT_NE(output.find(" executeUpdate: delete from numbers\n"), std::string::npos);
}

}  // namespace
