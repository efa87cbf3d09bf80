#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/Foundation/Zones/NSTimeZone.h"

/// The clock by which a time of a calendar is written. A value; copies share the rules.
class EventZone {
 public:
  /// From `time` (seconds since 1970 UTC) on the clock is so many seconds ahead of UTC.
  struct Change {
    int64_t time;
    int32_t offset;
  };

  /// A zone as a calendar file defines it.
  struct Definition {
    int32_t firstOffset = 0;      ///< Before the first change.
    std::vector<Change> changes;  ///< Ascending.
  };

  /// Whatever clock is on the wall where the user is.
  static EventZone floating() { return EventZone(Kind::Floating); }
  static EventZone named(NSTimeZone zone);
  static EventZone defined(std::shared_ptr<const Definition> definition);

  /// The instant of a reading of this clock (seconds since 1970 as if it showed UTC), with
  /// `wallZone` for a floating one. A reading that comes twice means the first time; one that is
  /// skipped is taken by the clock before the jump (RFC 5545, section 3.3.5).
  int64_t instantOf(int64_t reading, const NSTimeZone& wallZone) const;

 private:
  enum class Kind : uint8_t { Floating, Named, Defined };
  explicit EventZone(Kind kind) : kind_(kind) {}

  Kind kind_;
  std::optional<NSTimeZone> zone_;
  std::shared_ptr<const Definition> definition_;
};
