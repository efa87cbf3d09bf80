#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "Platform/Foundation/Time/NSDate.h"

/// One log file. What it tells is looked up when it is first asked for and kept until `reset`. One
/// thread at a time.
class DDLogFileInfo_Time {
 public:
  struct Attributes {
    uint64_t fileSize = 0;
    NSDate modificationDate = NSDate::dateWithTimeIntervalSince1970(0);
  };

  explicit DDLogFileInfo_Time(std::filesystem::path filePath) : filePath_(std::move(filePath)) {}

  /// For the file's maker, who knows the moment better than the minute that its name tells.
  DDLogFileInfo_Time(std::filesystem::path filePath, const NSDate& creationDate)
      : filePath_(std::move(filePath)), creationDate_(creationDate) {}

  const std::filesystem::path& filePath() const { return filePath_; }
  std::string fileName() const { return filePath_.filename(); }

  /// All zero for a file that is not there.
  const Attributes& fileAttributes();
  uint64_t fileSize() { return fileAttributes().fileSize; }
  NSDate modificationDate() { return fileAttributes().modificationDate; }

  /// By the name. The file system's own is another one in a copy and is missing on some systems;
  /// for a name without a date it is the modification's.
  NSDate creationDate();

  /// Seconds since the creation.
  double age();

  void reset();

  /// Whether the file is done with. It is noted in an extended attribute of the file or, where it
  /// can have none, by a hidden file beside it that goes with it.
  bool isArchived() const;
  void setIsArchived(bool archived);

  /// Gives the file another name in its folder.
  void renameFile(const std::string& newFileName);

  /// Deletes the file and what stands for its attribute.
  void removeFile();

 private:
  std::filesystem::path markFile() const;

  std::filesystem::path filePath_;
  std::optional<NSDate> creationDate_;
  std::optional<Attributes> attributes_;
};
