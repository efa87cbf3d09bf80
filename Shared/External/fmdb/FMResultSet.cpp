#include "Shared/External/fmdb/FMResultSet.h"

#include <utility>

#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Shared/External/fmdb/FMConnection.h"
#include "Shared/External/fmdb/FMStatement.h"

FMResultSet_Time::FMResultSet_Time(std::shared_ptr<FMStatement_Time> statement,
                                   std::weak_ptr<FMResultSetParent> parentDB,
                                   std::string_view query)
    : query_(query),
      statement_(std::move(statement)),
      handle_(statement_->statement()),
      parentDB_(std::move(parentDB)) {
  statement_->setInUse(true);
}

FMResultSet_Time::~FMResultSet_Time() { close(); }

bool FMResultSet_Time::nextWithError(std::optional<NSError>* error) {
  std::unique_lock lock(mutex_);
  const int code = statement_ ? sqlite3_step(handle_) : SQLITE_MISUSE;
  if (code == SQLITE_ROW) {
    rowColumnCount_ = sqlite3_data_count(handle_);
    // The first step may have prepared the statement anew for a table that has changed since.
    if (!std::exchange(hasStepped_, true)) columnNameToIndexMap_.reset();
    return true;
  }
  rowColumnCount_ = 0;
  const auto statement = statement_;
  const auto parent = parentDB_.lock();
  lock.unlock();
  if (code != SQLITE_DONE) reportFailure(code, statement.get(), parent.get(), error);
  close();
  return false;
}

void FMResultSet_Time::reportFailure(int code, const FMStatement_Time* statement,
                                     const FMResultSetParent* parent,
                                     std::optional<NSError>* error) {
  NSError failure = statement != nullptr ? statement->connection().error(code)
                                         : NSError{FMErrorDomain, code, sqlite3_errstr(code)};
  if (code == SQLITE_BUSY || code == SQLITE_LOCKED) {
    const std::string path = parent != nullptr ? parent->databasePath().value_or("") : "";
    NSLog(std::string(__func__) + ":" + std::to_string(__LINE__) + " Database busy (" + path + ")");
    NSLog("Database busy");
  } else {
    const char* words = code == SQLITE_ERROR || code == SQLITE_MISUSE
                            ? "Error calling sqlite3_step ("
                            : "Unknown error calling sqlite3_step (";
    NSLog(words + std::to_string(code) + ": " + failure.localizedDescription + ") rs");
  }
  if (error == nullptr) return;
  if (code == SQLITE_MISUSE && parent == nullptr) {
    failure.localizedDescription = "parentDB does not exist";
  }
  *error = std::move(failure);
}

bool FMResultSet_Time::hasAnotherRow() const {
  const std::lock_guard lock(mutex_);
  return rowColumnCount_ > 0;
}

void FMResultSet_Time::close() {
  std::shared_ptr<FMStatement_Time> statement;
  std::shared_ptr<FMResultSetParent> parent;
  {
    const std::lock_guard lock(mutex_);
    statement = std::move(statement_);
    handle_ = nullptr;
    rowColumnCount_ = 0;
    parent = std::exchange(parentDB_, {}).lock();
  }
  if (statement) {
    statement->reset();
    statement->setInUse(false);
  }
  if (parent) parent->resultSetDidClose(*this);
}

int FMResultSet_Time::columnCount() const {
  const std::lock_guard lock(mutex_);
  return sqlite3_column_count(handle_);
}

int FMResultSet_Time::columnIndexForName(std::string_view name) const {
  {
    const std::lock_guard lock(mutex_);
    if (!columnNameToIndexMap_) {
      columnNameToIndexMap_.emplace();
      for (int index = 0; index < sqlite3_column_count(handle_); ++index) {
        columnNameToIndexMap_->insert_or_assign(
            lowercaseString(sqlite3_column_name(handle_, index)), index);
      }
    }
    auto found = columnNameToIndexMap_->find(name);
    if (found == columnNameToIndexMap_->end()) {
      found = columnNameToIndexMap_->find(lowercaseString(name));
    }
    if (found != columnNameToIndexMap_->end()) return found->second;
  }
  NSLog("Warning: I could not find the column named '" + std::string(name) + "'.");
  return -1;
}

std::optional<std::string> FMResultSet_Time::columnNameForIndex(int index) const {
  const std::lock_guard lock(mutex_);
  if (index < 0 || index >= sqlite3_column_count(handle_)) return std::nullopt;
  return sqlite3_column_name(handle_, index);
}
