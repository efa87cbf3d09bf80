#pragma once

#include <sys/stat.h>

#include <compare>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/EventKit/ICalendarFile_p.h"
#include "Platform/EventKit/StoredCalendar_p.h"

/// Names in a folder that is a calendar, by the vdir convention.
constexpr std::string_view DisplayNameFile = "displayname";
constexpr std::string_view ColorFile = "color";

/// Whether a file of this name holds events: it ends in ".ics", in any case of letters, and is not
/// hidden.
bool isCalendarFileName(std::string_view name);

/// What tells one state of a file from another.
struct FileState {
  uint64_t device = 0;
  uint64_t number = 0;
  int64_t size = 0;
  int64_t changed = 0;   ///< Nanoseconds since 1970, its contents or what is known of it.
  int64_t modified = 0;  ///< The same, its contents.

  friend auto operator<=>(const FileState&, const FileState&) = default;
};

/// The state of a regular file, also through a link. Nothing for what is none, such as a pipe, a
/// device, or a link that leads nowhere.
std::optional<FileState> regularFileState(const std::filesystem::path& path);

/// A file as it was read.
struct ReadFile {
  FileState state;
  StoredCalendar calendar;
};

/// Reads the events of a file of at most 128 MiB, as long as it was at the beginning. Nothing, and
/// a line in the log, for what cannot be read.
std::optional<ReadFile> readCalendarFile(const std::filesystem::path& path, ReadingTables& tables);
