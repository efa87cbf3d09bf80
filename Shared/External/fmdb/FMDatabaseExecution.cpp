// How a query or an update is run: one at a time on a connection, its statement taken from the
// cache or prepared, its parameters bound.

#include <algorithm>

#include "Platform/Foundation/Process/NSAssert.h"
#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Shared/External/fmdb/FMConnection.h"
#include "Shared/External/fmdb/FMDatabase.h"
#include "Shared/External/fmdb/FMStatement.h"
#include "Shared/External/Logging/DDLogLine.h"
#include "Shared/External/Logging/DLog.h"

namespace {

/// Marks the connection as in use for the length of a call, unless it is already. One that waits
/// does so until it is not.
class ExecutionGuard {
 public:
  ExecutionGuard(std::atomic<bool>& inUse, bool waits)
      : inUse_(inUse), isFirst_(!inUse.exchange(true)) {
    while (waits && !isFirst_) {
      inUse_.wait(true);
      isFirst_ = !inUse_.exchange(true);
    }
  }
  ExecutionGuard(const ExecutionGuard&) = delete;
  ExecutionGuard& operator=(const ExecutionGuard&) = delete;
  ~ExecutionGuard() {
    if (!isFirst_) return;
    inUse_ = false;
    inUse_.notify_one();
  }

  bool isFirst() const { return isFirst_; }

 private:
  std::atomic<bool>& inUse_;
  bool isFirst_;
};

void trace(const std::string& database, const char* call, std::string_view sql) {
  FMDBLog("%s %s: %s", database.c_str(), call, std::string(sql).c_str());
}

}  // namespace

std::shared_ptr<FMConnection> FMDatabase_Time::connectionForCall(NSError& error) const {
  auto current = connection();
  if (current) return current;
  const std::string words = "The FMDatabase " + description() + " is not open.";
  DDLogLine(words);
  if (crashOnErrors_) NSAssertionFailed(words);
  error = {FMErrorDomain, SQLITE_MISUSE, words};
  return nullptr;
}

NSError FMDatabase_Time::warnInUse() const {
  const std::string words = "The FMDatabase " + description() + " is currently in use.";
  DDLogLine(words);
  if (crashOnErrors_) NSAssertionFailed(words);
  return {FMErrorDomain, SQLITE_BUSY, words};
}

std::shared_ptr<FMStatement_Time> FMDatabase_Time::statementForQuery(
    const std::shared_ptr<FMConnection>& connection, std::string_view sql, NSError& error) {
  if (auto statement = cachedStatementForQuery(sql)) return statement;
  sqlite3_stmt* handle = nullptr;
  const int code = sqlite3_prepare_v2(connection->handle(), sql.data(),
                                      static_cast<int>(sql.size()), &handle, nullptr);
  if (code == SQLITE_OK) return std::make_shared<FMStatement_Time>(connection, handle);
  error = connection->error(code);
  const std::string words =
      "DB Error: " + std::to_string(code) + " \"" + error.localizedDescription + "\"";
  if (logsErrors_) {
    logFailure(words, sql);
    DDLogLine("DB Path: " + databasePath_.value_or(""));
  }
  if (crashOnErrors_) NSAssertionFailed(words);
  return nullptr;
}

void FMDatabase_Time::logFailure(const std::string& words, std::string_view sql) const {
  if (!logsErrors_) return;
  DDLogLine(words);
  DDLogLine("DB Query: " + std::string(sql));
}

std::shared_ptr<FMResultSet_Time> FMDatabase_Time::executeQueryWithArguments(
    std::string_view sql, const FMArguments& arguments) {
  NSError error;
  const auto current = connectionForCall(error);
  if (!current) return nullptr;
  const ExecutionGuard guard(isExecutingStatement_, waitsForTurn_);
  if (!guard.isFirst()) {
    warnInUse();
    return nullptr;
  }
  if (traceExecution_) trace(description(), "executeQuery", sql);
  const auto statement = statementForQuery(current, sql, error);
  if (!statement) return nullptr;
  const int parameterCount = sqlite3_bind_parameter_count(statement->statement());
  if (bindArguments(arguments, statement->statement()) != parameterCount) {
    statement->setInUse(false);
    DDLogLine("Error: the bind count is not correct for the # of variables (executeQuery)");
    return nullptr;
  }
  auto resultSet = std::make_shared<FMResultSet_Time>(statement, weak_from_this(), sql);
  statement->addUse();
  const std::lock_guard lock(mutex_);
  // Closed meanwhile by another thread.
  if (connection_ != current) return nullptr;
  cacheStatement(statement, sql);
  openResultSets_.emplace(resultSet.get(), resultSet);
  return resultSet;
}

bool FMDatabase_Time::executeUpdateWithArguments(std::string_view sql,
                                                 std::optional<NSError>* error,
                                                 const FMArguments& arguments, TextUse use) {
  NSError failure;
  const bool succeeded = runUpdate(sql, arguments, use, failure);
  if (!succeeded && error != nullptr) *error = std::move(failure);
  return succeeded;
}

bool FMDatabase_Time::runUpdate(std::string_view sql, const FMArguments& arguments, TextUse use,
                                NSError& error) {
  const auto current = connectionForCall(error);
  if (!current) return false;
  const ExecutionGuard guard(isExecutingStatement_, waitsForTurn_);
  if (!guard.isFirst()) {
    error = warnInUse();
    return false;
  }
  if (traceExecution_) trace(description(), "executeUpdate", sql);
  const auto statement = statementForQuery(current, sql, error);
  if (!statement) return false;
  const int parameterCount = sqlite3_bind_parameter_count(statement->statement());
  if (const int bound = bindArguments(arguments, statement->statement()); bound != parameterCount) {
    statement->setInUse(false);
    const std::string words = "Error: the bind count (" + std::to_string(bound) +
                              ") is not correct for the # of variables in the query (" +
                              std::to_string(parameterCount) + ") (" + std::string(sql) +
                              ") (executeUpdate)";
    DDLogLine(words);
    error = {FMErrorDomain, SQLITE_MISUSE, words};
    return false;
  }
  const bool succeeded = stepUpdate(*statement, sql, error);
  statement->addUse();
  if (const int code = statement->reset(); code != SQLITE_OK) {
    logFailure("Unknown error finalizing or resetting statement (" + std::to_string(code) + ": " +
                   current->errorMessageFor(code) + ")",
               sql);
  }
  const std::lock_guard lock(mutex_);
  if (connection_ == current && use == TextUse::Repeated) cacheStatement(statement, sql);
  statement->setInUse(false);
  return succeeded;
}

bool FMDatabase_Time::stepUpdate(FMStatement_Time& statement, std::string_view sql,
                                 NSError& error) const {
  const int code = sqlite3_step(statement.statement());
  if (code == SQLITE_DONE || code == SQLITE_OK) return true;
  error = statement.connection().error(code);
  const std::string reason = std::to_string(code) + ": " + error.localizedDescription;
  switch (code) {
    case SQLITE_ROW:
      error.localizedDescription =
          "A executeUpdate is being called with a query string '" + std::string(sql) + "'";
      logFailure(error.localizedDescription, sql);
      break;
    case SQLITE_ERROR:
      logFailure("Error calling sqlite3_step (" + reason + ") SQLITE_ERROR", sql);
      break;
    case SQLITE_MISUSE:
      logFailure("Error calling sqlite3_step (" + reason + ") SQLITE_MISUSE", sql);
      break;
    default:
      logFailure("Unknown error calling sqlite3_step (" + reason + ") eu", sql);
  }
  return false;
}

void FMDatabase_Time::cacheStatement(const std::shared_ptr<FMStatement_Time>& statement,
                                     std::string_view sql) {
  // One that came from the cache knows its text.
  if (!cachedStatements_ || sql.empty() || !statement->query().empty()) return;
  statement->setQuery(sql);
  (*cachedStatements_)[statement->query()].push_back(statement);
}

int FMDatabase_Time::bindArguments(const FMArguments& arguments, sqlite3_stmt* statement) const {
  int bound = 0;
  if (arguments.dictionary != nullptr) {
    for (const auto& [name, value] : *arguments.dictionary) {
      const int column = sqlite3_bind_parameter_index(statement, (":" + name).c_str());
      if (column > 0) {
        if (bindObject(value, column, statement)) ++bound;
      } else {
        DDLogLine("Could not find index for " + name);
      }
    }
  } else if (arguments.array != nullptr) {
    const auto count = static_cast<size_t>(sqlite3_bind_parameter_count(statement));
    for (size_t index = 0; index < std::min(count, arguments.array->size()); ++index) {
      if (bindObject((*arguments.array)[index], static_cast<int>(index) + 1, statement)) ++bound;
    }
  }
  return bound;
}

bool FMDatabase_Time::bindObject(const PropertyList& object, int column,
                                 sqlite3_stmt* statement) const {
  const auto bindText = [&](const std::string& text) {
    return sqlite3_bind_text64(statement, column, text.data(), text.size(), SQLITE_TRANSIENT,
                               SQLITE_UTF8);
  };
  const auto bind = [&] {
    if (object.isNull()) return sqlite3_bind_null(statement, column);
    if (const auto* value = object.boolean())
      return sqlite3_bind_int(statement, column, *value ? 1 : 0);
    if (const auto* value = object.integer()) return sqlite3_bind_int64(statement, column, *value);
    if (const auto* value = object.real()) return sqlite3_bind_double(statement, column, *value);
    if (const auto* value = object.string()) return bindText(*value);
    if (const auto* value = object.data()) {
      // Without an address it would be a null and no blob.
      const void* bytes = value->empty() ? "" : static_cast<const void*>(value->data());
      return sqlite3_bind_blob64(statement, column, bytes, value->size(), SQLITE_TRANSIENT);
    }
    if (const auto* value = object.date()) {
      if (const auto format = dateFormat()) {
        return bindText(
            format->stringFromDate(NSDate::dateWithTimeIntervalSince1970(value->seconds)));
      }
      return sqlite3_bind_double(statement, column, value->seconds);
    }
    return bindText(dataWithPropertyList(object));
  };
  // A value too large for the database is left unbound, which fails the call: a null in its place
  // would be a loss.
  return bind() == SQLITE_OK;
}
