#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/Files/FileDescriptor.h"
#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// One preference domain's file: an XML property list that several processes read and write.
///
/// Reads see another process's write at once. A write reads, changes and replaces the whole file
/// under a lock: after a kill at any point the old file or the new one is there. Where the path is
/// a link, the file behind it is replaced. A file that is no property list, and is not just being
/// written by a program that knows no lock, is set aside as `<name>.corrupt-<time>`, which is
/// logged, and the domain starts empty. A file that cannot be read is left alone, and what was read
/// of it last holds.
class PreferenceFile {
 public:
  using Changes = std::map<std::string, PropertyList, std::less<>>;

  explicit PreferenceFile(std::filesystem::path path) : path_(std::move(path)) {}

  /// The file's present content.
  const PropertyList::Dictionary& contents();

  /// Sets the given keys, or removes those whose value is null, and leaves every other key as the
  /// file has it. False, with the reason logged, if the file could not be written; it is unchanged.
  bool apply(const Changes& changes);

 private:
  struct Signature {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = -1;
    int64_t modified = 0;
    friend bool operator==(const Signature&, const Signature&) = default;
  };

  Signature signature() const;

  /// Waits for the writers' lock, but not for ever; nothing, with the reason logged, without it.
  FileDescriptor lock();

  enum class State { Read, Unreadable, Damaged };

  /// Takes the file's content over; an absent file counts as empty.
  State read();

  /// Reads a file until it is whole or, while it is damaged, at rest. The lock must be held.
  State readAtRest(const FileDescriptor& locked);

  /// Moves a damaged file out of the way. The lock must be held.
  bool setAside();

  /// Keeps a copy of a file before the values in it that cannot be read are lost to a write.
  bool keepCopy();

  /// Puts a new file in the place of the old one. The lock must be held.
  bool replace(const PropertyList::Dictionary& contents);

  /// Logs what is wrong with the file, once; false.
  bool failed(std::string_view problem);

  std::filesystem::path path_;
  Signature seen_;
  PropertyList::Dictionary contents_;
  std::vector<std::string> droppedKeys_;
  std::string lastProblem_;
};
