#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Dispatch/DispatchQueue.h"
#include "Platform/Foundation/PropertyLists/PropertyList.h"
#include "Shared/External/fmdb/FMDatabase.h"

/// A database of measured values. Writes are collected and run together in one transaction, and
/// everything runs on the database's own queue, so no caller waits for the disk unless it asks to.
///
/// Held by a `shared_ptr`; work on its way keeps it alive. Any thread may call. The operations that
/// wait end the program when they are called from work on this queue, where they would wait for
/// themselves.
class HistoryDatabaseItem_Time : public std::enable_shared_from_this<HistoryDatabaseItem_Time> {
 public:
  /// Opens the file, or creates it, and waits for that. A failure is logged and leaves the item
  /// with a closed database.
  explicit HistoryDatabaseItem_Time(std::string path);
  HistoryDatabaseItem_Time(const HistoryDatabaseItem_Time&) = delete;
  HistoryDatabaseItem_Time& operator=(const HistoryDatabaseItem_Time&) = delete;
  ~HistoryDatabaseItem_Time();

  const std::string& path() const { return path_; }
  const std::shared_ptr<FMDatabase_Time>& database() const { return database_; }
  /// Whether writes are being run.
  bool busy() const { return busy_; }

  /// Closes the database after the work before it, and waits for that. Writes of failed commits are
  /// tried once more; those that no commit has taken are not written.
  void close();

  /// Adds a write for the next commit: "format", an SQL statement in which "%@" stands for the
  /// table's name; "table", that name; "args", the list of values to be bound.
  void addItem(PropertyList::Dictionary write);

  /// Runs the writes collected so far; one that is faulty does not stop the others. Where the
  /// database takes none, because another program holds it for longer than the connection waits or
  /// the disk is full, all of them stay for the next commit. `commit` does not wait, but a process
  /// that ends in order does.
  void commit();
  void commitSync();

  /// Runs `callback` on the queue and waits for it.
  void queryDatabase(const std::function<void(FMDatabase_Time& database)>& callback);
  void queryDatabaseAsync(std::function<void(FMDatabase_Time& database)> callback);

 private:
  void runAndWait(const std::function<void()>& work);
  void takeQueries();
  void runQueries();
  /// Writes what was taken, or nothing of it.
  bool runTransaction(std::optional<NSError>& error);

  const std::string path_;
  const std::shared_ptr<FMDatabase_Time> database_;
  const dispatch_queue_t queue_;
  // On the queue only.
  PropertyList::Array queries_;
  PropertyList::Array taken_;  ///< By commits, and not yet in the file.

  std::atomic<bool> busy_ = false;
};
