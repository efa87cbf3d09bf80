#include <exception>

#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Shared/External/fmdb/FMConnection.h"
#include "Shared/External/fmdb/FMDatabase.h"
#include "Shared/External/fmdb/FMStatement.h"

namespace {

/// A caller's block on its way through SQLite, which knows no exceptions.
struct RowReceiver {
  static int receive(void* context, int count, char** values, char** names) {
    auto& receiver = *static_cast<RowReceiver*>(context);
    try {
      PropertyList::Dictionary row;
      for (int index = 0; index < count; ++index) {
        row[names[index]] = values[index] != nullptr ? PropertyList(values[index]) : PropertyList();
      }
      return receiver.block(row);
    } catch (...) {
      receiver.exception = std::current_exception();
      return SQLITE_ABORT;
    }
  }

  const FMDatabase_Time::FMExecuteStatementsBlock& block;
  std::exception_ptr exception;
};

std::string trimmed(std::string_view text) {
  constexpr std::string_view Blanks = " \t\r\n";
  const size_t begin = text.find_first_not_of(Blanks);
  if (begin == std::string_view::npos) return {};
  return std::string(text.substr(begin, text.find_last_not_of(Blanks) - begin + 1));
}

}  // namespace

bool FMDatabase_Time::executeStatements(const std::string& sql,
                                        const FMExecuteStatementsBlock& resultBlock) {
  NSError error;
  const auto current = connectionForCall(error);
  if (!current) return false;
  RowReceiver receiver{resultBlock, nullptr};
  const int code = sqlite3_exec(current->handle(), sql.c_str(),
                                resultBlock ? &RowReceiver::receive : nullptr, &receiver, nullptr);
  if (receiver.exception) std::rethrow_exception(receiver.exception);
  if (code == SQLITE_OK) return true;
  logFailure("DB Error: " + std::to_string(code) + " \"" + current->errorMessageFor(code) + "\"",
             sql);
  return false;
}

bool FMDatabase_Time::goodConnection() {
  return connection() && executeQuery("select name from sqlite_master where type='table'");
}

bool FMDatabase_Time::tableExists(std::string_view name) {
  return firstRow("select [sql] from sqlite_master where [type] = 'table' and lower(name) = ?",
                  lowercaseString(name)) != nullptr;
}

std::shared_ptr<FMResultSet_Time> FMDatabase_Time::getTableSchema(std::string_view name) {
  return executeQuery("pragma table_info('" + stringByReplacingOccurrences(name, "'", "''") + "')");
}

bool FMDatabase_Time::columnExists(std::string_view column, std::string_view table) {
  const auto schema = getTableSchema(table);
  const std::string wanted = lowercaseString(column);
  while (schema && schema->next()) {
    if (lowercaseString(schema->stringForColumnName("name").value_or("")) == wanted) return true;
  }
  return false;
}

int32_t FMDatabase_Time::userVersion() { return intForQuery("pragma user_version"); }

void FMDatabase_Time::setUserVersion(int32_t version) {
  executeUpdate("pragma user_version = " + std::to_string(version));
}

bool FMDatabase_Time::validateSQL(std::string_view sql, std::optional<NSError>* error) {
  NSError failure;
  const auto current = connectionForCall(failure);
  int code = SQLITE_MISUSE;
  if (current) {
    sqlite3_stmt* statement = nullptr;
    code = sqlite3_prepare_v2(current->handle(), sql.data(), static_cast<int>(sql.size()),
                              &statement, nullptr);
    const LibraryHandle<sqlite3_stmt, sqlite3_finalize> owned(statement);
    if (code != SQLITE_OK) failure = current->error(code);
  }
  if (code == SQLITE_OK) return true;
  if (error != nullptr) *error = std::move(failure);
  return false;
}

bool FMDatabase_Time::isDatabaseValid() {
  const auto current = connection();
  sqlite3_stmt* handle = nullptr;
  if (!current || sqlite3_prepare_v2(current->handle(), "PRAGMA integrity_check", -1, &handle,
                                     nullptr) != SQLITE_OK) {
    return false;
  }
  const FMStatement_Time statement(current, handle);
  switch (sqlite3_step(handle)) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      NSLog("Result is simple BUSY of the sqllite3 on isDatabaseCorrupted");
      return true;
    case SQLITE_MISUSE:
      NSLog("Bad utilization of the sqllite3 on isDatabaseCorrupted");
      return true;
    case SQLITE_DONE:
      NSLog("Result is simple DONE of the sqllite3 on isDatabaseCorrupted");
      return true;
    case SQLITE_ROW: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle, 0));
      const std::string response = text != nullptr ? text : "";
      if (trimmed(lowercaseString(response)) == "ok") return true;
      NSLog("ATTENTION: integrity_check response " + response);
      return false;
    }
    default:
      // Faulty, not a database, or not to be read.
      return false;
  }
}
