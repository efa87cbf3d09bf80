#include "Shared/External/Logging/DDLogFileInfo.h"

#include <chrono>
#include <fstream>

#include "Platform/Foundation/Files/ExtendedAttributes.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Shared/External/Logging/DDLogFileName.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* ArchivedAttribute = "lumberjack.log.archived";
constexpr const char* MarkExtension = ".archived";

void report(const std::string& what, const std::string& reason) {
  NSLog("DDLogFileInfo: " + what + ": " + reason);
}

std::string attributeFailure(const char* call, const fs::path& file) {
  return std::string(call) + "(" + ArchivedAttribute + ", " + file.string() + ")";
}

NSDate dateOf(fs::file_time_type time) {
  const auto sinceEpoch = std::chrono::file_clock::to_sys(time).time_since_epoch();
  return NSDate::dateWithTimeIntervalSince1970(std::chrono::duration<double>(sinceEpoch).count());
}

}  // namespace

const DDLogFileInfo_Time::Attributes& DDLogFileInfo_Time::fileAttributes() {
  if (attributes_) return *attributes_;
  Attributes attributes;
  std::error_code error;
  const uintmax_t size = fs::file_size(filePath_, error);
  if (!error) attributes.fileSize = size;
  const fs::file_time_type time = fs::last_write_time(filePath_, error);
  if (!error) attributes.modificationDate = dateOf(time);
  attributes_ = attributes;
  return *attributes_;
}

NSDate DDLogFileInfo_Time::creationDate() {
  if (!creationDate_) {
    const auto name = DDLogFileName::parsed(fileName());
    creationDate_ = name ? name->creationDate : modificationDate();
  }
  return *creationDate_;
}

double DDLogFileInfo_Time::age() {
  return NSDate::date().timeIntervalSince1970() - creationDate().timeIntervalSince1970();
}

void DDLogFileInfo_Time::reset() {
  creationDate_.reset();
  attributes_.reset();
}

fs::path DDLogFileInfo_Time::markFile() const {
  return filePath_.parent_path() / ("." + fileName() + MarkExtension);
}

bool DDLogFileInfo_Time::isArchived() const {
  std::error_code error;
  return hasExtendedAttribute(filePath_, ArchivedAttribute) || fs::exists(markFile(), error);
}

void DDLogFileInfo_Time::setIsArchived(bool archived) {
  std::error_code error;
  if (!archived) fs::remove(markFile(), error);
  error = archived ? setExtendedAttribute(filePath_, ArchivedAttribute)
                   : removeExtendedAttribute(filePath_, ArchivedAttribute);
  // A file that was deleted from outside needs no mark and has none.
  if (!error || error == std::errc::no_such_file_or_directory) return;
  if (archived ? std::ofstream(markFile()).is_open() : error == std::errc::not_supported) return;
  report(attributeFailure(archived ? "setxattr" : "removexattr", filePath_),
         "error = " + error.message());
}

void DDLogFileInfo_Time::renameFile(const std::string& newFileName) {
  const bool archived = isArchived();
  const fs::path oldMark = markFile();
  const fs::path newPath = filePath_.parent_path() / newFileName;
  std::error_code error;
  fs::rename(filePath_, newPath, error);
  if (error) {
    return report("Error renaming file (" + fileName() + ")", error.message());
  }
  fs::remove(oldMark, error);
  filePath_ = newPath;
  reset();
  setIsArchived(archived);
}

void DDLogFileInfo_Time::removeFile() {
  std::error_code error;
  if (fs::remove(filePath_, error); !error) fs::remove(markFile(), error);
}
