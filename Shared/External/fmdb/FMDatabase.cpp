#include "Shared/External/fmdb/FMDatabase.h"

#include <utility>

#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Platform/Foundation/Process/NSAssert.h"
#include "Platform/Foundation/Text/ObjectDescription.h"
#include "Shared/External/fmdb/FMConnection.h"
#include "Shared/External/fmdb/FMStatement.h"
#include "Shared/External/Logging/DDLogLine.h"

static_assert(FMOpenReadOnly == SQLITE_OPEN_READONLY && FMOpenReadWrite == SQLITE_OPEN_READWRITE &&
              FMOpenCreate == SQLITE_OPEN_CREATE && FMResultConstraint == SQLITE_CONSTRAINT);

bool FMIsErrorOfStatement(int64_t code) {
  switch (code) {
    case SQLITE_ERROR:
    case SQLITE_TOOBIG:
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
    case SQLITE_MISUSE:
    case SQLITE_RANGE:
      return true;
    default:
      return false;
  }
}

std::shared_ptr<FMDatabase_Time> FMDatabase_Time::databaseWithPath(
    std::optional<std::string> path) {
  struct Database : FMDatabase_Time {
    explicit Database(std::optional<std::string> databasePath)
        : FMDatabase_Time(std::move(databasePath)) {}
  };
  return std::make_shared<Database>(std::move(path));
}

FMDatabase_Time::FMDatabase_Time(std::optional<std::string> path) : databasePath_(std::move(path)) {
  if (sqlite3_threadsafe() == 0) NSAssertionFailed("sqlite3_threadsafe()");
}

FMDatabase_Time::~FMDatabase_Time() { close(); }

std::string FMDatabase_Time::description() const {
  return objectDescription("FMDatabase_Time", this);
}

bool FMDatabase_Time::open() { return openWithFlags(FMOpenReadWrite | FMOpenCreate); }

bool FMDatabase_Time::openWithFlags(int flags, const std::optional<std::string>& vfs) {
  NSError error;
  {
    const std::lock_guard lock(mutex_);
    if (connection_) return true;
    // A lookup and a search share a connection, whatever the library was built for.
    if ((flags & SQLITE_OPEN_NOMUTEX) == 0) flags |= SQLITE_OPEN_FULLMUTEX;
    const std::string file = databasePath_ ? resolvedPath(*databasePath_).string() : ":memory:";
    connection_ = FMConnection::open(file, flags, vfs ? vfs->c_str() : nullptr, error);
    openError_ = error;
    if (connection_) {
      if (maxBusyRetryTimeInterval_ > 0) {
        connection_->setMaxBusyRetryTimeInterval(maxBusyRetryTimeInterval_);
      }
      return true;
    }
  }
  DDLogLine("error opening!: " + std::to_string(error.code));
  return false;
}

bool FMDatabase_Time::close() {
  std::shared_ptr<FMConnection> connection;
  {
    // First of all: what a call in progress makes now is no longer kept.
    const std::lock_guard lock(mutex_);
    connection = std::move(connection_);
  }
  clearCachedStatements();
  closeOpenResultSets();
  return true;
}

sqlite3* FMDatabase_Time::db() const {
  const auto current = connection();
  return current ? current->handle() : nullptr;
}

std::shared_ptr<FMConnection> FMDatabase_Time::connection() const {
  const std::lock_guard lock(mutex_);
  return connection_;
}

void FMDatabase_Time::setMaxBusyRetryTimeInterval(double seconds) {
  maxBusyRetryTimeInterval_ = seconds;
  if (const auto current = connection()) current->setMaxBusyRetryTimeInterval(seconds);
}

bool FMDatabase_Time::shouldCacheStatements() const {
  const std::lock_guard lock(mutex_);
  return cachedStatements_.has_value();
}

void FMDatabase_Time::setShouldCacheStatements(bool caches) {
  std::optional<StatementCache> dropped;
  const std::lock_guard lock(mutex_);
  if (!caches) {
    dropped.swap(cachedStatements_);
  } else if (!cachedStatements_) {
    cachedStatements_.emplace();
  }
}

void FMDatabase_Time::clearCachedStatements() {
  // Finalised behind the lock, which is not for SQLite's work.
  StatementCache dropped;
  const std::lock_guard lock(mutex_);
  if (cachedStatements_) dropped.swap(*cachedStatements_);
}

std::shared_ptr<FMStatement_Time> FMDatabase_Time::cachedStatementForQuery(std::string_view sql) {
  std::shared_ptr<FMStatement_Time> statement;
  {
    const std::lock_guard lock(mutex_);
    if (!cachedStatements_) return nullptr;
    const auto found = cachedStatements_->find(sql);
    if (found == cachedStatements_->end()) return nullptr;
    for (const auto& candidate : found->second) {
      if (!candidate->inUse()) statement = candidate;
    }
    if (!statement) return nullptr;
    statement->setInUse(true);
  }
  statement->reset();
  return statement;
}

bool FMDatabase_Time::hasOpenResultSets() const {
  const std::lock_guard lock(mutex_);
  return !openResultSets_.empty();
}

void FMDatabase_Time::closeOpenResultSets() {
  decltype(openResultSets_) resultSets;
  {
    const std::lock_guard lock(mutex_);
    resultSets = openResultSets_;
  }
  for (const auto& [address, reference] : resultSets) {
    // One that is being destroyed closes itself.
    if (const auto resultSet = reference.lock()) resultSet->close();
  }
}

void FMDatabase_Time::resultSetDidClose(const FMResultSet_Time& resultSet) {
  const std::lock_guard lock(mutex_);
  openResultSets_.erase(&resultSet);
}

std::string FMDatabase_Time::lastErrorMessage() const {
  if (const auto current = connection()) return current->errorMessage();
  const std::lock_guard lock(mutex_);
  return openError_.code != 0 ? openError_.localizedDescription : "The database is not open.";
}

int FMDatabase_Time::lastErrorCode() const {
  if (const auto current = connection()) return current->errorCode();
  const std::lock_guard lock(mutex_);
  return openError_.code != 0 ? static_cast<int>(openError_.code) : SQLITE_MISUSE;
}

bool FMDatabase_Time::hadError() const {
  constexpr int FirstNoError = 100;
  const int code = lastErrorCode();
  return code > SQLITE_OK && code < FirstNoError;
}

NSError FMDatabase_Time::lastError() const {
  return {FMErrorDomain, lastErrorCode(), lastErrorMessage()};
}

int64_t FMDatabase_Time::lastInsertRowId() const {
  const auto current = connection();
  return current ? sqlite3_last_insert_rowid(current->handle()) : 0;
}

int FMDatabase_Time::changes() const {
  const auto current = connection();
  return current ? sqlite3_changes(current->handle()) : 0;
}

void FMDatabase_Time::setDateFormat(std::optional<FMDateFormat> format) {
  const std::lock_guard lock(mutex_);
  dateFormat_ = std::move(format);
}

std::optional<FMDateFormat> FMDatabase_Time::dateFormat() const {
  const std::lock_guard lock(mutex_);
  return dateFormat_;
}
