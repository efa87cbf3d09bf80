#pragma once

#include <sys/types.h>

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "Platform/Foundation/PropertyList.h"

/// One preference domain's file: an XML property list that several processes read and write.
///
/// Reads see another process's write at once. A write reads, changes and replaces the whole file
/// under a lock: after a kill at any point the old file or the new one is there. A file that is no
/// property list is set aside as `<name>.corrupt-<time>`, which is logged, and the domain starts
/// empty.
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

  enum class State { Read, Unreadable, Damaged };

  /// Takes the file's content over; an absent, unreadable or damaged file counts as empty.
  State read();

  /// Moves a damaged file out of the way. The lock must be held.
  void setAside();

  /// Puts a new file in the place of the old one. The lock must be held.
  bool replace(const PropertyList::Dictionary& contents);
  bool failed(std::string_view what);

  std::filesystem::path path_;
  Signature seen_;
  PropertyList::Dictionary contents_;
  std::string lastFailure_;
};
