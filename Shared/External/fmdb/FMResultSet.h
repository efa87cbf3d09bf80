#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/PropertyLists/PropertyList.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Shared/External/fmdb/FMDateFormat.h"

class FMResultSet_Time;
class FMStatement_Time;
struct sqlite3_stmt;

/// The connection that a cursor belongs to, as the cursor sees it.
class FMResultSetParent {
 public:
  virtual ~FMResultSetParent() = default;

  /// Null for a database in memory.
  virtual const std::optional<std::string>& databasePath() const = 0;
  /// Null where dates are numbers.
  virtual std::optional<FMDateFormat> dateFormat() const = 0;
  virtual void resultSetDidClose(const FMResultSet_Time& resultSet) = 0;
};

/// A cursor over the rows of a query. The first `next` runs the query and stands on the first row.
/// It closes itself behind the last row, on an error and with its connection; from then on it has
/// no columns and every reader answers null, 0 or false, as it does for a null value and for a
/// column that is not there. Columns count from 0; their names are looked up without regard to
/// case, and of two alike the last one counts.
///
/// Used by one thread at a time; the connection may be closed on another meanwhile.
class FMResultSet_Time {
 public:
  /// Made by the connection's `executeQuery`.
  FMResultSet_Time(std::shared_ptr<FMStatement_Time> statement,
                   std::weak_ptr<FMResultSetParent> parentDB, std::string_view query);
  FMResultSet_Time(const FMResultSet_Time&) = delete;
  FMResultSet_Time& operator=(const FMResultSet_Time&) = delete;
  ~FMResultSet_Time();

  const std::string& query() const { return query_; }

  bool next() { return nextWithError(nullptr); }
  /// False behind the last row and on an error; `error` is set on an error only.
  bool nextWithError(std::optional<NSError>* error);
  /// Whether the cursor stands on a row, so that another may follow.
  bool hasAnotherRow() const;
  void close();

  int columnCount() const;
  /// −1, and a log line, if there is no such column.
  int columnIndexForName(std::string_view name) const;
  std::optional<std::string> columnNameForIndex(int index) const;

  /// The row: a value for each column name, null values included. Null without a row.
  std::optional<PropertyList::Dictionary> resultDictionary() const;

  PropertyList objectForColumnIndex(int index) const;
  int intForColumnIndex(int index) const;
  long longForColumnIndex(int index) const;
  int64_t longLongIntForColumnIndex(int index) const;
  uint64_t unsignedLongLongIntForColumnIndex(int index) const;
  bool boolForColumnIndex(int index) const;
  double doubleForColumnIndex(int index) const;
  /// The bytes as they are stored, U+0000 among them included.
  std::optional<std::string> stringForColumnIndex(int index) const;
  /// Through the connection's date format if it has one, else seconds since 1970.
  std::optional<NSDate> dateForColumnIndex(int index) const;
  std::optional<PropertyList::Data> dataForColumnIndex(int index) const;
  /// Without a copy: valid until the next step of this cursor or its end.
  std::optional<std::span<const uint8_t>> dataNoCopyForColumnIndex(int index) const;
  std::optional<std::string_view> UTF8StringForColumnIndex(int index) const;
  bool columnIndexIsNull(int index) const;

  PropertyList objectForColumnName(std::string_view name) const;
  int intForColumnName(std::string_view name) const;
  long longForColumnName(std::string_view name) const;
  int64_t longLongIntForColumnName(std::string_view name) const;
  uint64_t unsignedLongLongIntForColumnName(std::string_view name) const;
  bool boolForColumnName(std::string_view name) const;
  double doubleForColumnName(std::string_view name) const;
  std::optional<std::string> stringForColumnName(std::string_view name) const;
  std::optional<NSDate> dateForColumnName(std::string_view name) const;
  std::optional<PropertyList::Data> dataForColumnName(std::string_view name) const;
  std::optional<std::span<const uint8_t>> dataNoCopyForColumnName(std::string_view name) const;
  std::optional<std::string_view> UTF8StringForColumnName(std::string_view name) const;
  bool columnIsNull(std::string_view name) const;

 private:
  /// A column of the row's dictionary.
  struct Column {
    std::string name;
    int index = 0;
  };

  static void reportFailure(int code, const FMStatement_Time* statement,
                            const FMResultSetParent* parent, std::optional<NSError>* error);
  /// What `reader` says of a column of the row, or a null value if there is none.
  template <typename Value, typename Reader>
  Value read(int index, Reader reader) const;
  void readDictionaryColumns() const;

  const std::string query_;

  /// Held while the statement is used: a connection that closes on another thread waits for the
  /// step or the reading in progress, and no longer.
  mutable std::mutex mutex_;
  std::shared_ptr<FMStatement_Time> statement_;
  sqlite3_stmt* handle_ = nullptr;
  std::weak_ptr<FMResultSetParent> parentDB_;
  int rowColumnCount_ = 0;  ///< 0 unless the cursor stands on a row.
  bool hasStepped_ = false;
  mutable std::optional<std::map<std::string, int, std::less<>>> columnNameToIndexMap_;
  mutable std::vector<Column> dictionaryColumns_;  ///< Sorted by name.
};
