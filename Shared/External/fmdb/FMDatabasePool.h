#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Dispatch/DispatchQueue.h"
#include "Platform/Foundation/NSError.h"
#include "Shared/External/fmdb/FMDatabase.h"

class FMDatabasePool_Time;

/// Told what a pool does.
class FMDatabasePoolDelegate {
 public:
  virtual ~FMDatabasePoolDelegate() = default;

  /// A new connection was opened, to be set up before its first use. On the pool's own queue, so
  /// the pool must not be called from here.
  virtual void databasePoolDidAddDatabase(FMDatabasePool_Time& pool, FMDatabase_Time& database) = 0;
};

/// A connection for each user at a time: a call takes a free one, or opens another, and puts it
/// back. Any thread may call, also from within a call. An exception reaches the caller.
class FMDatabasePool_Time {
 public:
  explicit FMDatabasePool_Time(std::optional<std::string> path,
                               int flags = FMOpenReadWrite | FMOpenCreate);
  FMDatabasePool_Time(const FMDatabasePool_Time&) = delete;
  FMDatabasePool_Time& operator=(const FMDatabasePool_Time&) = delete;
  /// No connection may be out.
  ~FMDatabasePool_Time();

  const std::optional<std::string>& path() const { return path_; }
  int openFlags() const { return openFlags_; }

  std::weak_ptr<FMDatabasePoolDelegate> delegate() const;
  void setDelegate(std::weak_ptr<FMDatabasePoolDelegate> delegate);
  /// 0 means no limit.
  uint64_t maximumNumberOfDatabasesToCreate() const;
  void setMaximumNumberOfDatabasesToCreate(uint64_t count);

  size_t countOfCheckedInDatabases() const;
  size_t countOfCheckedOutDatabases() const;
  size_t countOfOpenDatabases() const;
  /// Closes the connections that nobody uses; those in use are closed with their last user.
  void releaseAllDatabases();

  /// A connection of one's own, or null, and a log line, if the limit is reached or the file does
  /// not open. It goes back with `pushDatabaseBackInPool`.
  std::shared_ptr<FMDatabase_Time> db();
  /// Raises `std::logic_error` for a connection that is in already.
  void pushDatabaseBackInPool(const std::shared_ptr<FMDatabase_Time>& database);

  /// False, and nothing is run, if there is no connection to be had.
  bool inDatabase(const std::function<void(FMDatabase_Time& db)>& block);
  /// As those of `FMDatabaseQueue_Time`.
  bool inTransaction(const std::function<void(FMDatabase_Time& db, bool& rollback)>& block);
  bool inDeferredTransaction(const std::function<void(FMDatabase_Time& db, bool& rollback)>& block);
  std::optional<NSError> inSavePoint(
      const std::function<void(FMDatabase_Time& db, bool& rollback)>& block);

 private:
  using Databases = std::vector<std::shared_ptr<FMDatabase_Time>>;

  /// What `read` gives on the lock queue.
  template <typename Reader>
  auto locked(Reader read) const;
  std::shared_ptr<FMDatabase_Time> takeDatabase();

  const std::optional<std::string> path_;
  const int openFlags_;
  const dispatch_queue_t lockQueue_;

  // On the lock queue only.
  std::weak_ptr<FMDatabasePoolDelegate> delegate_;
  uint64_t maximumNumberOfDatabasesToCreate_ = 0;
  Databases databaseInPool_;
  Databases databaseOutPool_;
};
