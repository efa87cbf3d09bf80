#include <atomic>

#include "Platform/Foundation/NSString.h"
#include "Shared/External/fmdb/FMDatabase.h"

namespace {

std::string savePointName(std::string_view name) {
  return "'" + stringByReplacingOccurrences(name, "'", "''") + "'";
}

}  // namespace

bool FMDatabase_Time::beginTransaction() {
  if (!executeUpdate("begin exclusive transaction")) return false;
  inTransaction_ = true;
  return true;
}

bool FMDatabase_Time::beginDeferredTransaction() {
  if (!executeUpdate("begin deferred transaction")) return false;
  inTransaction_ = true;
  return true;
}

bool FMDatabase_Time::commit() {
  if (!executeUpdate("commit transaction")) return false;
  inTransaction_ = false;
  return true;
}

bool FMDatabase_Time::rollback() {
  if (!executeUpdate("rollback transaction")) return false;
  inTransaction_ = false;
  return true;
}

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
  rollback();
  return false;
}

bool FMDatabase_Time::startSavePointWithName(std::string_view name, std::optional<NSError>* error) {
  return executeUpdate("savepoint " + savePointName(name), error, PropertyList::Array{});
}

bool FMDatabase_Time::releaseSavePointWithName(std::string_view name,
                                               std::optional<NSError>* error) {
  return executeUpdate("release savepoint " + savePointName(name), error, PropertyList::Array{});
}

bool FMDatabase_Time::rollbackToSavePointWithName(std::string_view name,
                                                  std::optional<NSError>* error) {
  return executeUpdate("rollback transaction to savepoint " + savePointName(name), error,
                       PropertyList::Array{});
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
