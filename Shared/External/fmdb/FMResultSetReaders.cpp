// The readers of the row under a cursor. Each takes the cursor's lock once and allocates nothing
// but what it returns.

#include <algorithm>

#include "Platform/Foundation/Process/NSLog.h"
#include "Shared/External/fmdb/FMConnection.h"
#include "Shared/External/fmdb/FMResultSet.h"

namespace {

using Bytes = std::span<const uint8_t>;

std::optional<std::string_view> textOfColumn(sqlite3_stmt* statement, int index) {
  // The text first: asking for it may change the length.
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, index));
  if (text == nullptr) return std::nullopt;
  return std::string_view(text, static_cast<size_t>(sqlite3_column_bytes(statement, index)));
}

std::optional<Bytes> bytesOfColumn(sqlite3_stmt* statement, int index) {
  const auto* bytes = static_cast<const uint8_t*>(sqlite3_column_blob(statement, index));
  const auto count = static_cast<size_t>(sqlite3_column_bytes(statement, index));
  // An empty blob has no address either.
  if (bytes == nullptr && sqlite3_column_type(statement, index) == SQLITE_NULL) return std::nullopt;
  return Bytes(bytes, count);
}

/// Under the connection's lock, so that the value needs none of its own.
PropertyList objectOfColumn(sqlite3_stmt* statement, int index) {
  sqlite3_value* value = sqlite3_column_value(statement, index);
  switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
      return static_cast<int64_t>(sqlite3_value_int64(value));
    case SQLITE_FLOAT:
      return sqlite3_value_double(value);
    case SQLITE_BLOB: {
      const auto* bytes = static_cast<const uint8_t*>(sqlite3_value_blob(value));
      return PropertyList::Data(bytes, bytes + sqlite3_value_bytes(value));
    }
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
      if (text == nullptr) return {};  // Out of memory.
      return std::string_view(text, static_cast<size_t>(sqlite3_value_bytes(value)));
    }
  }
}

}  // namespace

template <typename Value, typename Reader>
Value FMResultSet_Time::read(int index, Reader reader) const {
  const std::lock_guard lock(mutex_);
  if (index < 0 || index >= rowColumnCount_) return {};
  return Value(reader(handle_, index));
}

PropertyList FMResultSet_Time::objectForColumnIndex(int index) const {
  return read<PropertyList>(index, [](sqlite3_stmt* statement, int column) {
    const FMConnectionLock lock(sqlite3_db_handle(statement));
    return objectOfColumn(statement, column);
  });
}

int FMResultSet_Time::intForColumnIndex(int index) const {
  return read<int>(index, sqlite3_column_int);
}

long FMResultSet_Time::longForColumnIndex(int index) const {
  return read<long>(index, sqlite3_column_int64);
}

int64_t FMResultSet_Time::longLongIntForColumnIndex(int index) const {
  return read<int64_t>(index, sqlite3_column_int64);
}

uint64_t FMResultSet_Time::unsignedLongLongIntForColumnIndex(int index) const {
  return read<uint64_t>(index, sqlite3_column_int64);
}

bool FMResultSet_Time::boolForColumnIndex(int index) const {
  return read<bool>(index, sqlite3_column_int64);
}

double FMResultSet_Time::doubleForColumnIndex(int index) const {
  return read<double>(index, sqlite3_column_double);
}

std::optional<std::string> FMResultSet_Time::stringForColumnIndex(int index) const {
  return read<std::optional<std::string>>(index, textOfColumn);
}

std::optional<std::string_view> FMResultSet_Time::UTF8StringForColumnIndex(int index) const {
  return read<std::optional<std::string_view>>(index, textOfColumn);
}

std::optional<PropertyList::Data> FMResultSet_Time::dataForColumnIndex(int index) const {
  using Data = std::optional<PropertyList::Data>;
  return read<Data>(index, [](sqlite3_stmt* statement, int column) -> Data {
    const auto bytes = bytesOfColumn(statement, column);
    if (!bytes) return std::nullopt;
    return Data(std::in_place, bytes->begin(), bytes->end());
  });
}

std::optional<Bytes> FMResultSet_Time::dataNoCopyForColumnIndex(int index) const {
  return read<std::optional<Bytes>>(index, bytesOfColumn);
}

bool FMResultSet_Time::columnIndexIsNull(int index) const {
  const std::lock_guard lock(mutex_);
  if (index < 0 || index >= rowColumnCount_) return true;
  return sqlite3_column_type(handle_, index) == SQLITE_NULL;
}

std::optional<NSDate> FMResultSet_Time::dateForColumnIndex(int index) const {
  if (columnIndexIsNull(index)) return std::nullopt;
  std::shared_ptr<FMResultSetParent> parent;
  {
    const std::lock_guard lock(mutex_);
    parent = parentDB_.lock();
  }
  if (const auto format = parent ? parent->dateFormat() : std::nullopt) {
    return format->dateFromString(stringForColumnIndex(index).value_or(""));
  }
  return NSDate::dateWithTimeIntervalSince1970(doubleForColumnIndex(index));
}

std::optional<PropertyList::Dictionary> FMResultSet_Time::resultDictionary() const {
  {
    const std::lock_guard lock(mutex_);
    if (rowColumnCount_ > 0) {
      readDictionaryColumns();
      const FMConnectionLock connectionLock(sqlite3_db_handle(handle_));
      PropertyList::Dictionary row;
      // In the order of the names, so that each value's place is known without a search.
      for (const Column& column : dictionaryColumns_) {
        row.emplace_hint(row.end(), column.name, objectOfColumn(handle_, column.index));
      }
      return row;
    }
  }
  NSLog("Warning: There seem to be no columns in this set.");
  return std::nullopt;
}

void FMResultSet_Time::readDictionaryColumns() const {
  if (!dictionaryColumns_.empty()) return;
  std::map<std::string, int> indexes;
  for (int index = 0; index < rowColumnCount_; ++index) {
    indexes.insert_or_assign(sqlite3_column_name(handle_, index), index);
  }
  for (const auto& [name, index] : indexes)
    dictionaryColumns_.push_back({name, index});
}

PropertyList FMResultSet_Time::objectForColumnName(std::string_view name) const {
  return objectForColumnIndex(columnIndexForName(name));
}

int FMResultSet_Time::intForColumnName(std::string_view name) const {
  return intForColumnIndex(columnIndexForName(name));
}

long FMResultSet_Time::longForColumnName(std::string_view name) const {
  return longForColumnIndex(columnIndexForName(name));
}

int64_t FMResultSet_Time::longLongIntForColumnName(std::string_view name) const {
  return longLongIntForColumnIndex(columnIndexForName(name));
}

uint64_t FMResultSet_Time::unsignedLongLongIntForColumnName(std::string_view name) const {
  return unsignedLongLongIntForColumnIndex(columnIndexForName(name));
}

bool FMResultSet_Time::boolForColumnName(std::string_view name) const {
  return boolForColumnIndex(columnIndexForName(name));
}

double FMResultSet_Time::doubleForColumnName(std::string_view name) const {
  return doubleForColumnIndex(columnIndexForName(name));
}

std::optional<std::string> FMResultSet_Time::stringForColumnName(std::string_view name) const {
  return stringForColumnIndex(columnIndexForName(name));
}

std::optional<NSDate> FMResultSet_Time::dateForColumnName(std::string_view name) const {
  return dateForColumnIndex(columnIndexForName(name));
}

std::optional<PropertyList::Data> FMResultSet_Time::dataForColumnName(std::string_view name) const {
  return dataForColumnIndex(columnIndexForName(name));
}

std::optional<Bytes> FMResultSet_Time::dataNoCopyForColumnName(std::string_view name) const {
  return dataNoCopyForColumnIndex(columnIndexForName(name));
}

std::optional<std::string_view> FMResultSet_Time::UTF8StringForColumnName(
    std::string_view name) const {
  return UTF8StringForColumnIndex(columnIndexForName(name));
}

bool FMResultSet_Time::columnIsNull(std::string_view name) const {
  return columnIndexIsNull(columnIndexForName(name));
}
