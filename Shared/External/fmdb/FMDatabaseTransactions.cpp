#include <atomic>

#include "Platform/Foundation/Text/NSString.h"
#include "Shared/External/fmdb/FMConnection.h"
#include "Shared/External/fmdb/FMDatabase.h"

namespace {

std::string savePointName(std::string_view name) {
  return "'" + stringByReplacingOccurrences(name, "'", "''") + "'";
}

}  // namespace

bool FMDatabase_Time::inTransaction() const {
  const auto current = connection();
  return current && sqlite3_get_autocommit(current->handle()) == 0;
}

bool FMDatabase_Time::beginTransaction(std::optional<NSError>* error) {
  return executeUpdateWithArguments("begin exclusive transaction", error, {});
}

bool FMDatabase_Time::beginDeferredTransaction() {
  return executeUpdate("begin deferred transaction");
}

bool FMDatabase_Time::commit(std::optional<NSError>* error) {
  return executeUpdateWithArguments("commit transaction", error, {});
}

bool FMDatabase_Time::rollback() { return executeUpdate("rollback transaction"); }

bool FMDatabase_Time::inTransaction(FMTransactionKind kind,
                                    const std::function<void(bool& rollback)>& block) {
  const bool begun =
      kind == FMTransactionKind::Exclusive ? beginTransaction() : beginDeferredTransaction();
  if (!begun) return false;
  bool undo = false;
  try {
    block(undo);
  } catch (...) {
    rollback();
    throw;
  }
  if (undo) return rollback();
  if (commit()) return true;
  // Left open, it would swallow whatever comes next.
  if (inTransaction()) rollback();
  return false;
}

bool FMDatabase_Time::startSavePointWithName(std::string_view name, std::optional<NSError>* error) {
  return executeUpdateWithArguments("savepoint " + savePointName(name), error, {}, TextUse::Once);
}

bool FMDatabase_Time::releaseSavePointWithName(std::string_view name,
                                               std::optional<NSError>* error) {
  return executeUpdateWithArguments("release savepoint " + savePointName(name), error, {},
                                    TextUse::Once);
}

bool FMDatabase_Time::rollbackToSavePointWithName(std::string_view name,
                                                  std::optional<NSError>* error) {
  return executeUpdateWithArguments("rollback transaction to savepoint " + savePointName(name),
                                    error, {}, TextUse::Once);
}

std::optional<NSError> FMDatabase_Time::inSavePoint(
    const std::function<void(bool& rollback)>& block) {
  static std::atomic<long> counter = 0;
  return inSavePointWithName("dbSavePoint" + std::to_string(counter++), block);
}

std::optional<NSError> FMDatabase_Time::inSavePointWithName(
    const std::string& name, const std::function<void(bool& rollback)>& block) {
  std::optional<NSError> error;
  if (!startSavePointWithName(name, &error)) return error;
  bool undo = false;
  try {
    block(undo);
  } catch (...) {
    rollbackToSavePointWithName(name, nullptr);
    releaseSavePointWithName(name, nullptr);
    throw;
  }
  if (undo) rollbackToSavePointWithName(name, &error);
  // A save point that was undone is still there.
  releaseSavePointWithName(name, error ? nullptr : &error);
  return error;
}
