#pragma once

// For the platform's own sources only: this header shows ICU.

#include <unicode/rbtz.h>

#include <memory>

#include "Platform/Foundation/Zones/NSTimeZone.h"

/// Gives ICU's calendars and formatters the rules of an `NSTimeZone` in the place of those that are
/// built into ICU, which are as old as the ICU package. It bears the zone's own name, so that ICU
/// still finds the names and abbreviations to print.
///
/// ICU asks only zones of its own classes when their clocks change, and takes a wrong turn to the
/// generic names ("CET (Germany)") without an answer. The one of these classes that is meant for
/// rules from elsewhere is the base here; its own rules stay empty.
class IcuTimeZone : public icu::RuleBasedTimeZone {
 public:
  explicit IcuTimeZone(const NSTimeZone& zone);

  static UClassID getStaticClassID();
  UClassID getDynamicClassID() const override { return getStaticClassID(); }
  IcuTimeZone* clone() const override { return std::make_unique<IcuTimeZone>(*this).release(); }
  bool operator==(const icu::TimeZone& other) const override;

  using icu::TimeZone::getOffset;
  int32_t getOffset(uint8_t era, int32_t year, int32_t month, int32_t day, uint8_t dayOfWeek,
                    int32_t milliseconds, UErrorCode& status) const override;
  int32_t getOffset(uint8_t era, int32_t year, int32_t month, int32_t day, uint8_t dayOfWeek,
                    int32_t milliseconds, int32_t monthLength, UErrorCode& status) const override;
  void getOffset(UDate date, UBool local, int32_t& rawOffset, int32_t& daylightOffset,
                 UErrorCode& status) const override;
  /// As `getOffset` by the wall clock, whatever the options: `TimeZoneRules` tells which of two
  /// readings is meant.
  void getOffsetFromLocal(UDate date, UTimeZoneLocalOption skipped, UTimeZoneLocalOption repeated,
                          int32_t& rawOffset, int32_t& daylightOffset,
                          UErrorCode& status) const override;

  void setRawOffset(int32_t) override {}
  int32_t getRawOffset() const override;
  UBool useDaylightTime() const override;
  UBool inDaylightTime(UDate date, UErrorCode& status) const override;
  UBool hasSameRules(const icu::TimeZone& other) const override;

  UBool getNextTransition(UDate base, UBool inclusive,
                          icu::TimeZoneTransition& result) const override;
  UBool getPreviousTransition(UDate base, UBool inclusive,
                              icu::TimeZoneTransition& result) const override;

 private:
  NSTimeZone zone_;
};
