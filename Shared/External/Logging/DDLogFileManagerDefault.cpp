#include "Shared/External/Logging/DDLogFileManagerDefault.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "Platform/Dispatch/Dispatch.h"
#include "Platform/Foundation/Files/NSFileHandle.h"
#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Process/NSProcessInfo.h"
#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogFileName.h"

namespace fs = std::filesystem;

namespace {

/// A blank, a date, a blank, a time of day.
constexpr size_t LengthOfDate = 17;

/// The parts of a file's name are told apart by blanks.
std::string applicationNameOf(std::string name) {
  std::ranges::replace(name, ' ', '-');
  return name;
}

fs::path directoryFor(std::string_view given) {
  return resolvedPath(given.empty() ? "~/Library/Logs/" + processName() : std::string(given));
}

}  // namespace

DDLogFileManagerDefault_Time::DDLogFileManagerDefault_Time(std::string_view logsDirectory)
    : logsDirectory_(directoryFor(logsDirectory)),
      applicationName_(applicationNameOf(processName())) {}

void DDLogFileManagerDefault_Time::setMaximumNumberOfLogFiles(uint64_t number) {
  if (maximumNumberOfLogFiles_.exchange(number) == number) return;
  dispatch_async(DDLog_Time::loggingQueue(), [manager = weak_from_this()] {
    if (const auto self = manager.lock()) self->deleteOldLogFiles();
  });
}

const fs::path& DDLogFileManagerDefault_Time::logsDirectory() {
  std::error_code error;
  fs::create_directories(logsDirectory_, error);
  if (error) {
    report("DDLogFileManagerDefault: Error creating logsDirectory: " + error.message() + " (" +
           logsDirectory_.string() + ")");
  }
  return logsDirectory_;
}

bool DDLogFileManagerDefault_Time::isLogFile(std::string_view fileName) const {
  const size_t around = applicationName_.size() + DDLogFileName::Extension.size();
  return fileName.starts_with(applicationName_) && fileName.size() >= around + LengthOfDate &&
         DDLogFileName::parsed(fileName).has_value();
}

std::vector<DDLogFileInfo_Time> DDLogFileManagerDefault_Time::unsortedLogFileInfos() {
  std::vector<DDLogFileInfo_Time> infos;
  std::error_code error;
  for (fs::directory_iterator entry(logsDirectory(), error);
       !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code gone;
    if (isLogFile(entry->path().filename().string()) && entry->is_regular_file(gone)) {
      infos.emplace_back(entry->path());
    }
  }
  return infos;
}

std::vector<DDLogFileInfo_Time> DDLogFileManagerDefault_Time::sortedLogFileInfos() {
  auto infos = unsortedLogFileInfos();
  const auto order = [](const DDLogFileInfo_Time& info) {
    const auto name = DDLogFileName::parsed(info.fileName()).value();
    return std::pair(name.creationDate, name.number);
  };
  std::ranges::sort(infos, std::greater(), order);
  return infos;
}

std::optional<DDLogFileInfo_Time> DDLogFileManagerDefault_Time::createNewLogFile() {
  const NSDate now = NSDate::date();
  // Behind the highest number in use: to take up a deleted file's lower one would make the new file
  // older than those of the same minute.
  uint64_t number = 1;
  const auto minute = DDLogFileName::parsed(DDLogFileName::text("", now, 1));
  for (const DDLogFileInfo_Time& info : unsortedLogFileInfos()) {
    const auto name = DDLogFileName::parsed(info.fileName());
    if (minute && name->creationDate == minute->creationDate) {
      number = std::max(number, name->number + 1);
    }
  }
  std::error_code error;
  for (;; ++number) {
    const fs::path path = logsDirectory_ / DDLogFileName::text(applicationName_, now, number);
    error = NSFileHandle::createFileAtPath(path);
    // Another process may have been faster.
    if (error == std::errc::file_exists) continue;
    if (error) break;
    DDLogFileInfo_Time info(path, now);
    info.setIsArchived(false);  // What stood for a deleted file's mark may be left.
    deleteOldLogFilesBut(path);
    return info;
  }
  // That the folder is missing has been said.
  std::error_code ignored;
  if (fs::is_directory(logsDirectory_, ignored)) {
    report("DDLogFileManagerDefault: Error creating a log file: " + error.message() + " (" +
           logsDirectory_.string() + ")");
  }
  return std::nullopt;
}

void DDLogFileManagerDefault_Time::deleteOldLogFiles() { deleteOldLogFilesBut({}); }

void DDLogFileManagerDefault_Time::deleteOldLogFilesBut(const fs::path& kept) {
  const uint64_t maximum = maximumNumberOfLogFiles_;
  if (maximum == 0) return;
  auto infos = sortedLogFileInfos();
  // A new file is the newest, unless the clock was set back.
  const auto current = std::ranges::find(infos, kept, &DDLogFileInfo_Time::filePath);
  if (current != infos.end()) {
    infos.erase(current);
  } else if (!infos.empty() && !infos.front().isArchived()) {
    infos.erase(infos.begin());
  }
  for (uint64_t index = maximum; index < infos.size(); ++index)
    infos[index].removeFile();
}

void DDLogFileManagerDefault_Time::report(const std::string& failure) {
  const std::lock_guard guard(reportMutex_);
  if (failure != lastReport_) NSLog(failure);
  lastReport_ = failure;
}
