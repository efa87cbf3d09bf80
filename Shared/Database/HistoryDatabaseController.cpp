#include "Shared/Database/HistoryDatabaseController.h"

#include <filesystem>
#include <system_error>

#include "Platform/Foundation/Files/NSFileHandle.h"
#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Platform/Foundation/SharedInstance.h"
#include "Shared/External/Logging/DDLogLine.h"

namespace {

std::string lastPathComponent(std::string_view text) {
  const std::filesystem::path path(text);
  return path.has_filename() ? path.filename().string() : path.parent_path().filename().string();
}

/// A journal that a crash has left would be played back into the next database of that name.
void removeJournals(const std::filesystem::path& file) {
  for (const char* suffix : {"-journal", "-wal", "-shm"}) {
    std::error_code error;
    std::filesystem::remove(file.string() + suffix, error);
  }
}

/// Has the journal of a crash played back into its own database.
void settle(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::exists(file, error)) return;
  const auto database = FMDatabase_Time::databaseWithPath(file.string());
  database->setLogsErrors(false);
  if (database->openWithFlags(FMOpenReadWrite)) {
    database->validateSQL("select 1 from sqlite_master", nullptr);
  }
}

/// Returns when the copy is on the disk.
void copyToDisk(const std::filesystem::path& source, const std::filesystem::path& copy,
                std::error_code& error) {
  const auto replace = std::filesystem::copy_options::overwrite_existing;
  if (!std::filesystem::copy_file(source, copy, replace, error)) return;
  try {
    const auto file = NSFileHandle::fileHandleForAppendingAtPath(copy);
    if (file) file->synchronizeFile();
  } catch (const std::system_error& failure) {
    error = failure.code();
  }
}

}  // namespace

HistoryDatabaseController_Time& HistoryDatabaseController_Time::sharedHistoryDatabaseController() {
  static SharedInstance<HistoryDatabaseController_Time> controller;
  return controller.get();
}

std::shared_ptr<HistoryDatabaseItem_Time> HistoryDatabaseController_Time::databaseWithPath(
    std::string_view path) {
  const std::lock_guard lock(mutex_);
  return path.empty() ? nullptr : openItem(path);
}

void HistoryDatabaseController_Time::closeDatabase(std::string_view path) {
  const std::lock_guard lock(mutex_);
  closeItem(path);
}

void HistoryDatabaseController_Time::deleteDatabase(std::string_view path) {
  const std::lock_guard lock(mutex_);
  deleteItem(path);
}

bool HistoryDatabaseController_Time::restoreBackup(std::string_view backup, std::string_view path) {
  const auto source = resolvedPath(backup);
  const auto target = resolvedPath(path);
  std::error_code error;
  if (path.empty() || !std::filesystem::is_regular_file(source, error)) return false;
  // A database that is its own backup must not be removed.
  if (std::filesystem::equivalent(source, target, error)) return false;

  const std::lock_guard lock(mutex_);
  // Copied first and put in place whole, so that a full disk or a crash leaves the present
  // database.
  const std::filesystem::path copy = target.string() + ".restored";
  error.clear();
  copyToDisk(source, copy, error);
  if (!error) {
    closeItem(path);
    settle(target);
    removeJournals(target);
    std::filesystem::rename(copy, target, error);
  }
  if (error) {
    DDLogLine("Could not put the backup " + source.string() + " in place: " + error.message());
    std::error_code ignored;
    std::filesystem::remove(copy, ignored);
    return false;
  }

  bool isValid = false;
  openItem(path)->queryDatabase(
      [&](FMDatabase_Time& database) { isValid = database.isDatabaseValid(); });
  if (!isValid) deleteItem(path);
  return isValid;
}

std::shared_ptr<HistoryDatabaseItem_Time> HistoryDatabaseController_Time::openItem(
    std::string_view path) {
  auto& item = databases_[lastPathComponent(path)];
  if (!item) item = std::make_shared<HistoryDatabaseItem_Time>(std::string(path));
  return item;
}

void HistoryDatabaseController_Time::closeItem(std::string_view path) {
  const auto found = databases_.find(lastPathComponent(path));
  if (found == databases_.end()) return;
  const auto item = std::move(found->second);
  databases_.erase(found);
  item->close();
}

void HistoryDatabaseController_Time::deleteItem(std::string_view path) {
  closeItem(path);
  const auto file = resolvedPath(path);
  std::error_code error;
  std::filesystem::remove(file, error);
  removeJournals(file);
}

std::shared_ptr<HistoryDatabaseItem_Time> databaseItemWithPath(std::string_view path) {
  return HistoryDatabaseController_Time::sharedHistoryDatabaseController().databaseWithPath(path);
}

std::shared_ptr<FMDatabase_Time> databaseWithPath(std::string_view path) {
  const auto item = databaseItemWithPath(path);
  return item ? item->database() : nullptr;
}
