#pragma once

#include <cstdint>
#include <optional>

/// The parts of a date in some calendar, or amounts of its units to add to one. Months count from
/// 1, Sunday is weekday 1. A part that is not set is not asked for.
struct NSDateComponents {
  std::optional<int64_t> era = std::nullopt;
  std::optional<int64_t> year = std::nullopt;
  std::optional<int64_t> month = std::nullopt;
  std::optional<int64_t> day = std::nullopt;
  std::optional<int64_t> hour = std::nullopt;
  std::optional<int64_t> minute = std::nullopt;
  std::optional<int64_t> second = std::nullopt;
  std::optional<int64_t> weekday = std::nullopt;
  std::optional<int64_t> weekOfYear = std::nullopt;

  friend bool operator==(const NSDateComponents&, const NSDateComponents&) = default;
};
