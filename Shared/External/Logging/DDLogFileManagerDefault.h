#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Shared/External/Logging/DDLogFileInfo.h"

/// The log files in one folder: their names, their order, which are kept. Several processes of one
/// name may share the folder: no file is ever cut or replaced. Held by `std::shared_ptr`; from any
/// thread.
class DDLogFileManagerDefault_Time
    : public std::enable_shared_from_this<DDLogFileManagerDefault_Time> {
 public:
  /// The folder is given as the code names it (see `resolvedPath`); without one it is that of the
  /// process's name among the user's logs.
  explicit DDLogFileManagerDefault_Time(std::string_view logsDirectory = {});
  virtual ~DDLogFileManagerDefault_Time() = default;

  /// How many files `deleteOldLogFiles` keeps; 0 for all. A new value deletes soon, on the logging
  /// queue.
  uint64_t maximumNumberOfLogFiles() const { return maximumNumberOfLogFiles_; }
  void setMaximumNumberOfLogFiles(uint64_t number);

  /// The folder, made with its parents if it is missing.
  const std::filesystem::path& logsDirectory();

  /// What file names begin with: the process's name, without blanks.
  const std::string& applicationName() const { return applicationName_; }

  /// Whether a file of that name is one of this application's.
  bool isLogFile(std::string_view fileName) const;

  std::vector<DDLogFileInfo_Time> unsortedLogFileInfos();
  /// The file that was created last comes first.
  std::vector<DDLogFileInfo_Time> sortedLogFileInfos();

  /// Makes a new file and deletes those that are too many. Nothing if none can be made.
  std::optional<DDLogFileInfo_Time> createNewLogFile();

  /// Deletes the oldest files beyond the number to keep. A newest one that is not archived does not
  /// count.
  void deleteOldLogFiles();

  /// Told when a file is done with.
  virtual void didRollAndArchiveLogFile(const std::filesystem::path& /*filePath*/) {}

 private:
  void deleteOldLogFilesBut(const std::filesystem::path& kept);
  /// Writes each failure to the system log once, until another one comes between.
  void report(const std::string& failure);

  const std::filesystem::path logsDirectory_;
  const std::string applicationName_;
  std::atomic<uint64_t> maximumNumberOfLogFiles_ = 5;
  std::mutex reportMutex_;
  std::string lastReport_;
};
