#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a zone's clocks showed from one moment to the next.
struct TimeZonePeriod {
  int64_t start;   ///< Seconds since 1970 UTC, first second of the period.
  int64_t end;     ///< First second of the next period.
  int32_t offset;  ///< Seconds to add to UTC, east-positive.
  bool daylight;   ///< Declared as daylight saving time.
  std::string_view abbreviation;
};

/// The offsets of one time zone for all time, from the system's compiled zone files (RFC 8536) or
/// from a rule text of the POSIX `TZ` form. Behind the last transition of a file its closing rule
/// goes on for ever. Immutable, so safe from any thread.
class TimeZoneRules {
 public:
  /// Reads a compiled file. Nothing if it is missing or damaged.
  static std::shared_ptr<const TimeZoneRules> fromFile(const std::filesystem::path& path);

  /// From a rule text such as "CET-1CEST,M3.5.0,M10.5.0/3". Nothing if it does not read.
  static std::shared_ptr<const TimeZoneRules> fromPosixRule(std::string_view rule);

  /// Clocks that never change.
  static std::shared_ptr<const TimeZoneRules> fixed(int32_t offset, std::string_view abbreviation);

  TimeZonePeriod periodAt(int64_t time) const;

  /// The period of a wall-clock reading (seconds since 1970 as if it were UTC). A reading that
  /// comes twice means the first time; one that is skipped is taken by the clocks before the jump.
  TimeZonePeriod periodAtLocal(int64_t wallClock) const;

  bool usesDaylight() const;

 private:
  struct Kind {
    int32_t offset;
    bool daylight;
    std::string abbreviation;
  };
  struct Transition {
    int64_t time;
    uint8_t kind;
  };

  bool parse(std::string_view bytes);
  bool parseBlock(std::string_view block, int timeSize, const uint32_t (&counts)[6]);
  bool extendByRule(std::string_view text);
  uint8_t kindNumber(const Kind& kind);

  std::vector<Kind> kinds_;
  std::vector<Transition> transitions_;
  uint8_t firstKind_ = 0;
  /// Times from here on repeat every 400 years.
  std::optional<int64_t> cycleStart_;
};
