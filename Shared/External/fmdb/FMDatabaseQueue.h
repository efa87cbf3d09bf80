#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Dispatch/DispatchQueue.h"
#include "Platform/Foundation/NSError.h"
#include "Shared/External/fmdb/FMDatabase.h"

/// One connection for many threads: work on it runs one piece after another, and whoever asks waits
/// for its piece. A piece must not ask for another: that would wait for ever, so it ends the
/// program with a word about it. An exception in a piece reaches its caller.
class FMDatabaseQueue_Time {
 public:
  static constexpr int DefaultFlags = FMOpenReadWrite | FMOpenCreate;

  /// Null, and a log line, if the database does not open.
  static std::unique_ptr<FMDatabaseQueue_Time> databaseQueueWithPath(
      std::optional<std::string> path, int flags = DefaultFlags,
      std::optional<std::string> vfs = std::nullopt);

  FMDatabaseQueue_Time(const FMDatabaseQueue_Time&) = delete;
  FMDatabaseQueue_Time& operator=(const FMDatabaseQueue_Time&) = delete;
  ~FMDatabaseQueue_Time();

  const std::optional<std::string>& path() const { return path_; }
  int openFlags() const { return openFlags_; }

  /// Closes the connection; the next piece of work opens it again.
  void close();

  /// False, and nothing is run, if a closed connection could not be opened again.
  bool inDatabase(const std::function<void(FMDatabase_Time& db)>& block);
  /// Commits what `block` did, or undoes it if it asks for that or throws. False also if the
  /// transaction could not be begun, in which case nothing is run, or not be ended.
  bool inTransaction(const std::function<void(FMDatabase_Time& db, bool& rollback)>& block);
  bool inDeferredTransaction(const std::function<void(FMDatabase_Time& db, bool& rollback)>& block);
  /// The error, if the save point could not be made or ended.
  std::optional<NSError> inSavePoint(
      const std::function<void(FMDatabase_Time& db, bool& rollback)>& block);

 private:
  FMDatabaseQueue_Time(std::optional<std::string> path, int flags, std::optional<std::string> vfs);

  void assertNotOnQueue() const;
  /// The open connection, or null. On the queue.
  FMDatabase_Time* database();

  const std::optional<std::string> path_;
  const int openFlags_;
  const std::optional<std::string> vfs_;
  const std::shared_ptr<FMDatabase_Time> db_;
  const dispatch_queue_t queue_;
};
