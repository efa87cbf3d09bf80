#include "Shared/External/fmdb/FMDatabasePool.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Platform/Dispatch/DispatchFunctions.h"
#include "Platform/Foundation/Text/ObjectDescription.h"
#include "Shared/External/Logging/DDLogLine.h"

FMDatabasePool_Time::FMDatabasePool_Time(std::optional<std::string> path, int flags)
    : path_(std::move(path)),
      openFlags_(flags),
      lockQueue_(dispatch_queue_create("fmdb." + objectDescription("FMDatabasePool_Time", this))) {}

FMDatabasePool_Time::~FMDatabasePool_Time() = default;

template <typename Reader>
auto FMDatabasePool_Time::locked(Reader read) const {
  decltype(read()) result{};
  dispatch_sync(lockQueue_, [&] { result = read(); });
  return result;
}

std::weak_ptr<FMDatabasePoolDelegate> FMDatabasePool_Time::delegate() const {
  return locked([this] { return delegate_; });
}

void FMDatabasePool_Time::setDelegate(std::weak_ptr<FMDatabasePoolDelegate> delegate) {
  dispatch_sync(lockQueue_, [&] { delegate_ = std::move(delegate); });
}

uint64_t FMDatabasePool_Time::maximumNumberOfDatabasesToCreate() const {
  return locked([this] { return maximumNumberOfDatabasesToCreate_; });
}

void FMDatabasePool_Time::setMaximumNumberOfDatabasesToCreate(uint64_t count) {
  dispatch_sync(lockQueue_, [&] { maximumNumberOfDatabasesToCreate_ = count; });
}

size_t FMDatabasePool_Time::countOfCheckedInDatabases() const {
  return locked([this] { return databaseInPool_.size(); });
}

size_t FMDatabasePool_Time::countOfCheckedOutDatabases() const {
  return locked([this] { return databaseOutPool_.size(); });
}

size_t FMDatabasePool_Time::countOfOpenDatabases() const {
  return locked([this] { return databaseInPool_.size() + databaseOutPool_.size(); });
}

void FMDatabasePool_Time::releaseAllDatabases() {
  dispatch_sync(lockQueue_, [this] {
    databaseInPool_.clear();
    databaseOutPool_.clear();
  });
}

std::shared_ptr<FMDatabase_Time> FMDatabasePool_Time::db() {
  return locked([this] { return takeDatabase(); });
}

std::shared_ptr<FMDatabase_Time> FMDatabasePool_Time::takeDatabase() {
  std::shared_ptr<FMDatabase_Time> database;
  const bool isNew = databaseInPool_.empty();
  if (!isNew) {
    database = std::move(databaseInPool_.back());
    databaseInPool_.pop_back();
  } else {
    const size_t count = databaseOutPool_.size();
    if (maximumNumberOfDatabasesToCreate_ > 0 && count >= maximumNumberOfDatabasesToCreate_) {
      DDLogLine("Maximum number of databases (" + std::to_string(count) +
                ") has already been reached!");
      return nullptr;
    }
    database = FMDatabase_Time::databaseWithPath(path_);
  }
  // One that was put back may have been closed by its user.
  if (!database->openWithFlags(openFlags_)) {
    DDLogLine("Could not open up the database at path " + path_.value_or(""));
    return nullptr;
  }
  database->setCheckedOut(true);
  databaseOutPool_.push_back(database);
  if (const auto delegate = delegate_.lock(); delegate && isNew) {
    delegate->databasePoolDidAddDatabase(*this, *database);
  }
  return database;
}

void FMDatabasePool_Time::pushDatabaseBackInPool(const std::shared_ptr<FMDatabase_Time>& database) {
  if (!database) return;
  dispatch_sync(lockQueue_, [&] {
    if (std::find(databaseInPool_.begin(), databaseInPool_.end(), database) !=
        databaseInPool_.end()) {
      throw std::logic_error("Database already in pool");
    }
    // One that was released while it was out does not come back.
    if (std::erase(databaseOutPool_, database) == 0) return;
    database->setCheckedOut(false);
    databaseInPool_.push_back(database);
  });
}

bool FMDatabasePool_Time::inDatabase(const std::function<void(FMDatabase_Time& db)>& block) {
  const auto database = db();
  if (!database) return false;
  try {
    block(*database);
  } catch (...) {
    pushDatabaseBackInPool(database);
    throw;
  }
  pushDatabaseBackInPool(database);
  return true;
}

bool FMDatabasePool_Time::inTransaction(
    const std::function<void(FMDatabase_Time& db, bool& rollback)>& block) {
  bool succeeded = false;
  inDatabase([&](FMDatabase_Time& database) {
    succeeded = database.inTransaction(FMTransactionKind::Exclusive,
                                       [&](bool& rollback) { block(database, rollback); });
  });
  return succeeded;
}

bool FMDatabasePool_Time::inDeferredTransaction(
    const std::function<void(FMDatabase_Time& db, bool& rollback)>& block) {
  bool succeeded = false;
  inDatabase([&](FMDatabase_Time& database) {
    succeeded = database.inTransaction(FMTransactionKind::Deferred,
                                       [&](bool& rollback) { block(database, rollback); });
  });
  return succeeded;
}

std::optional<NSError> FMDatabasePool_Time::inSavePoint(
    const std::function<void(FMDatabase_Time& db, bool& rollback)>& block) {
  std::optional<NSError> error;
  const bool ran = inDatabase([&](FMDatabase_Time& database) {
    error = database.inSavePoint([&](bool& rollback) { block(database, rollback); });
  });
  if (!ran) return NSError{"FMDatabase", 0, "There is no database to be had from the pool."};
  return error;
}
