// What the database layer costs, each work beside the same done on the bare library. Link
// benchmark::benchmark and sqlite3.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cmath>
#include <map>
#include <string>
#include <variant>

#include "Shared/External/fmdb/FMDatabase.h"

namespace {

constexpr int RowCount = 300'000;
constexpr const char* SelectAll = "select * from cities";
constexpr const char* Lookup = "select * from cities where identifier = ?";
constexpr const char* Insert = "insert into written values (?, ?, ?)";

/// A table of the shape that the city search reads, in memory, so that no disk is measured.
std::shared_ptr<FMDatabase_Time> filledDatabase() {
  static const auto database = [] {
    auto filled = FMDatabase_Time::databaseWithPath(std::nullopt);
    filled->open();
    filled->setShouldCacheStatements(true);
    filled->executeUpdate(
        "create table cities (identifier integer primary key, city text, city_plain text, "
        "state text, country text, timezone text, latitude real, longitude real)");
    filled->executeUpdate("create table written (identifier integer, name text, value real)");
    filled->beginTransaction();
    for (int row = 0; row < RowCount; ++row) {
      const std::string name = "City number " + std::to_string(row);
      filled->executeUpdate("insert into cities values (?, ?, ?, ?, ?, ?, ?, ?)", row, name, name,
                            "Some State", row % 3 == 0 ? PropertyList() : PropertyList("Country"),
                            "Europe/Amsterdam", std::sin(row) * 90, std::cos(row) * 180);
    }
    filled->commit();
    return filled;
  }();
  return database;
}

sqlite3_stmt* prepared(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(filledDatabase()->db(), sql, -1, &statement, nullptr);
  return statement;
}

std::string textOf(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  return {text, static_cast<size_t>(sqlite3_column_bytes(statement, column))};
}

void setRows(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * RowCount); }

/// A number, two texts that are kept and two positions of each row.
void columnsThroughTheLayer(benchmark::State& state) {
  const auto database = filledDatabase();
  for (auto _ : state) {
    const auto rows = database->executeQuery(SelectAll);
    while (rows->next()) {
      benchmark::DoNotOptimize(rows->longLongIntForColumnIndex(0));
      benchmark::DoNotOptimize(rows->stringForColumnIndex(1));
      benchmark::DoNotOptimize(rows->stringForColumnIndex(5));
      benchmark::DoNotOptimize(rows->doubleForColumnIndex(6));
      benchmark::DoNotOptimize(rows->doubleForColumnIndex(7));
    }
  }
  setRows(state);
}
BENCHMARK(columnsThroughTheLayer)->Unit(benchmark::kMillisecond);

void columnsRaw(benchmark::State& state) {
  sqlite3_stmt* statement = prepared(SelectAll);
  for (auto _ : state) {
    while (sqlite3_step(statement) == SQLITE_ROW) {
      benchmark::DoNotOptimize(sqlite3_column_int64(statement, 0));
      benchmark::DoNotOptimize(textOf(statement, 1));
      benchmark::DoNotOptimize(textOf(statement, 5));
      benchmark::DoNotOptimize(sqlite3_column_double(statement, 6));
      benchmark::DoNotOptimize(sqlite3_column_double(statement, 7));
    }
    sqlite3_reset(statement);
  }
  sqlite3_finalize(statement);
  setRows(state);
}
BENCHMARK(columnsRaw)->Unit(benchmark::kMillisecond);

/// The hardest case for the layer: nothing is done with a row but reading it.
void numbersThroughTheLayer(benchmark::State& state) {
  const auto database = filledDatabase();
  for (auto _ : state) {
    const auto rows = database->executeQuery(SelectAll);
    while (rows->next()) {
      benchmark::DoNotOptimize(rows->longLongIntForColumnIndex(0));
      benchmark::DoNotOptimize(rows->doubleForColumnIndex(6));
      benchmark::DoNotOptimize(rows->doubleForColumnIndex(7));
    }
  }
  setRows(state);
}
BENCHMARK(numbersThroughTheLayer)->Unit(benchmark::kMillisecond);

void numbersRaw(benchmark::State& state) {
  sqlite3_stmt* statement = prepared(SelectAll);
  for (auto _ : state) {
    while (sqlite3_step(statement) == SQLITE_ROW) {
      benchmark::DoNotOptimize(sqlite3_column_int64(statement, 0));
      benchmark::DoNotOptimize(sqlite3_column_double(statement, 6));
      benchmark::DoNotOptimize(sqlite3_column_double(statement, 7));
    }
    sqlite3_reset(statement);
  }
  sqlite3_finalize(statement);
  setRows(state);
}
BENCHMARK(numbersRaw)->Unit(benchmark::kMillisecond);

/// All eight columns of each row by their names.
void dictionariesThroughTheLayer(benchmark::State& state) {
  const auto database = filledDatabase();
  for (auto _ : state) {
    const auto rows = database->executeQuery(SelectAll);
    while (rows->next())
      benchmark::DoNotOptimize(rows->resultDictionary());
  }
  setRows(state);
}
BENCHMARK(dictionariesThroughTheLayer)->Unit(benchmark::kMillisecond);

/// The rival fills the same kind of map by hand.
void dictionariesRaw(benchmark::State& state) {
  using Value = std::variant<std::monostate, int64_t, double, std::string>;
  sqlite3_stmt* statement = prepared(SelectAll);
  for (auto _ : state) {
    while (sqlite3_step(statement) == SQLITE_ROW) {
      std::map<std::string, Value, std::less<>> row;
      for (int column = 0; column < sqlite3_column_count(statement); ++column) {
        Value& value = row[sqlite3_column_name(statement, column)];
        const int type = sqlite3_column_type(statement, column);
        if (type == SQLITE_INTEGER) value = int64_t{sqlite3_column_int64(statement, column)};
        if (type == SQLITE_FLOAT) value = sqlite3_column_double(statement, column);
        if (type == SQLITE_TEXT) value = textOf(statement, column);
      }
      benchmark::DoNotOptimize(row);
    }
    sqlite3_reset(statement);
  }
  sqlite3_finalize(statement);
  setRows(state);
}
BENCHMARK(dictionariesRaw)->Unit(benchmark::kMillisecond);

/// One row that is undone with many others, so that the table stays small.
constexpr int InsertsPerTransaction = 1000;

void insertsThroughTheLayer(benchmark::State& state) {
  const auto database = filledDatabase();
  const std::string name = "The name of what was measured";
  for (auto _ : state) {
    database->beginDeferredTransaction();
    for (int row = 0; row < InsertsPerTransaction; ++row)
      database->executeUpdate(Insert, row, name, 0.5);
    database->rollback();
  }
  state.SetItemsProcessed(state.iterations() * InsertsPerTransaction);
}
BENCHMARK(insertsThroughTheLayer)->Unit(benchmark::kMicrosecond);

/// The rival keeps its statement in hand and need not find it by its text.
void insertsRaw(benchmark::State& state) {
  const std::string name = "The name of what was measured";
  sqlite3* handle = filledDatabase()->db();
  sqlite3_stmt* statement = prepared(Insert);
  for (auto _ : state) {
    sqlite3_exec(handle, "begin deferred transaction", nullptr, nullptr, nullptr);
    for (int row = 0; row < InsertsPerTransaction; ++row) {
      sqlite3_bind_int64(statement, 1, row);
      sqlite3_bind_text(statement, 2, name.data(), static_cast<int>(name.size()), SQLITE_TRANSIENT);
      sqlite3_bind_double(statement, 3, 0.5);
      sqlite3_step(statement);
      sqlite3_reset(statement);
    }
    sqlite3_exec(handle, "rollback transaction", nullptr, nullptr, nullptr);
  }
  sqlite3_finalize(statement);
  state.SetItemsProcessed(state.iterations() * InsertsPerTransaction);
}
BENCHMARK(insertsRaw)->Unit(benchmark::kMicrosecond);

/// One lookup as the clocks make it: prepared, bound, stepped once and read.
void lookupThroughTheLayer(benchmark::State& state) {
  const auto database = filledDatabase();
  database->setShouldCacheStatements(false);
  int identifier = 0;
  for (auto _ : state) {
    identifier = (identifier + 7919) % RowCount;
    const auto rows = database->executeQuery(Lookup, identifier);
    rows->next();
    benchmark::DoNotOptimize(rows->stringForColumnIndex(1));
  }
  database->setShouldCacheStatements(true);
}
BENCHMARK(lookupThroughTheLayer);

void lookupRaw(benchmark::State& state) {
  filledDatabase();
  int identifier = 0;
  for (auto _ : state) {
    identifier = (identifier + 7919) % RowCount;
    sqlite3_stmt* statement = prepared(Lookup);
    sqlite3_bind_int64(statement, 1, identifier);
    sqlite3_step(statement);
    benchmark::DoNotOptimize(textOf(statement, 1));
    sqlite3_finalize(statement);
  }
}
BENCHMARK(lookupRaw);

}  // namespace

BENCHMARK_MAIN();
