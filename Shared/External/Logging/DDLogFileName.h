#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/Time/NSDate.h"

/// What the name of a log file tells: "<application> 2026-11-21 15-04.log", or with " 2", " 3" and
/// so on before the extension where that name was taken. The time is in UTC.
struct DDLogFileName {
  static constexpr std::string_view Extension = ".log";

  NSDate creationDate;
  uint64_t number = 1;  ///< 1 for a name without one.

  /// Nothing if it is no such name. Application names have no blanks.
  static std::optional<DDLogFileName> parsed(std::string_view fileName);

  static std::string text(std::string_view applicationName, const NSDate& creationDate,
                          uint64_t number);
};
