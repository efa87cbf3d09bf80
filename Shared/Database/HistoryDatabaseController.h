#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "Shared/Database/HistoryDatabaseItem.h"

/// The databases of measured values, opened when they are first asked for. They are told apart by
/// their files' names alone: of two in different folders with one name, the first one opened is
/// given for both. Any thread may call, but not from work on a database's queue. Each call waits
/// for the one before, so what one gives is never the file that another is just replacing.
class HistoryDatabaseController_Time {
 public:
  static HistoryDatabaseController_Time& sharedHistoryDatabaseController();

  HistoryDatabaseController_Time() = default;
  HistoryDatabaseController_Time(const HistoryDatabaseController_Time&) = delete;
  HistoryDatabaseController_Time& operator=(const HistoryDatabaseController_Time&) = delete;

  /// Null for an empty path.
  std::shared_ptr<HistoryDatabaseItem_Time> databaseWithPath(std::string_view path);

  void closeDatabase(std::string_view path);
  /// Closes the database and removes its file.
  void deleteDatabase(std::string_view path);
  /// Puts the file `backup` in the place of the database and opens it. A file that is missing or
  /// cannot be copied changes nothing; one that is no valid database leaves none at `path`. A crash
  /// meanwhile leaves the present database or the backup. True if the backup is the database now.
  bool restoreBackup(std::string_view backup, std::string_view path);

 private:
  // Under the lock.
  std::shared_ptr<HistoryDatabaseItem_Time> openItem(std::string_view path);
  void closeItem(std::string_view path);
  void deleteItem(std::string_view path);

  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<HistoryDatabaseItem_Time>> databases_;
};

/// Of the shared controller; null for an empty path.
std::shared_ptr<HistoryDatabaseItem_Time> databaseItemWithPath(std::string_view path);
std::shared_ptr<FMDatabase_Time> databaseWithPath(std::string_view path);
