#include "Shared/Database/HistoryDatabaseController.h"

#include <filesystem>

#include "Platform/Foundation/NSPathUtilities.h"
#include "Shared/External/Logging/DDLogLine.h"

namespace {

std::string lastPathComponent(std::string_view text) {
  const std::filesystem::path path(text);
  return path.has_filename() ? path.filename().string() : path.parent_path().filename().string();
}

void removeFiles(const std::filesystem::path& file) {
  // A journal that a crash has left would be played back into the next database of that name.
  for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
    std::error_code error;
    std::filesystem::remove(file.string() + suffix, error);
  }
}

}  // namespace

HistoryDatabaseController_Time& HistoryDatabaseController_Time::sharedHistoryDatabaseController() {
  static HistoryDatabaseController_Time controller;
  return controller;
}

std::shared_ptr<HistoryDatabaseItem_Time> HistoryDatabaseController_Time::databaseWithPath(
    std::string_view path) {
  if (path.empty()) return nullptr;
  const std::lock_guard lock(mutex_);
  auto& item = databases_[lastPathComponent(path)];
  if (!item) item = std::make_shared<HistoryDatabaseItem_Time>(std::string(path));
  return item;
}

void HistoryDatabaseController_Time::closeDatabase(std::string_view path) {
  std::shared_ptr<HistoryDatabaseItem_Time> item;
  {
    const std::lock_guard lock(mutex_);
    const auto found = databases_.find(lastPathComponent(path));
    if (found == databases_.end()) return;
    item = std::move(found->second);
    databases_.erase(found);
  }
  item->close();
}

void HistoryDatabaseController_Time::deleteDatabase(std::string_view path) {
  closeDatabase(path);
  removeFiles(resolvedPath(path));
}

bool HistoryDatabaseController_Time::restoreBackup(std::string_view backup, std::string_view path) {
  const auto source = resolvedPath(backup);
  const auto target = resolvedPath(path);
  std::error_code error;
  if (path.empty() || !std::filesystem::is_regular_file(source, error)) return false;
  // A database that is its own backup must not be removed.
  if (std::filesystem::equivalent(source, target, error)) return false;

  closeDatabase(path);
  // Copied first and put in place whole, so that a full disk leaves the present database.
  const std::filesystem::path copy = target.string() + ".restored";
  const auto replace = std::filesystem::copy_options::overwrite_existing;
  if (std::filesystem::copy_file(source, copy, replace, error)) {
    removeFiles(target);
    std::filesystem::rename(copy, target, error);
  }
  if (error) {
    DDLogLine("Could not put the backup " + source.string() + " in place: " + error.message());
    removeFiles(copy);
    return false;
  }

  bool isValid = false;
  databaseWithPath(path)->queryDatabase(
      [&](FMDatabase_Time& database) { isValid = database.isDatabaseValid(); });
  if (!isValid) deleteDatabase(path);
  return isValid;
}

std::shared_ptr<HistoryDatabaseItem_Time> databaseItemWithPath(std::string_view path) {
  return HistoryDatabaseController_Time::sharedHistoryDatabaseController().databaseWithPath(path);
}

std::shared_ptr<FMDatabase_Time> databaseWithPath(std::string_view path) {
  const auto item = databaseItemWithPath(path);
  return item ? item->database() : nullptr;
}
