#pragma once

// For the platform's own sources only: this header shows ICU.

#include <unicode/timezone.h>

#include <memory>

#include "Platform/Foundation/NSTimeZone.h"

/// Gives ICU's calendars and formatters the rules of an `NSTimeZone` in the place of those that are
/// built into ICU, which are as old as the ICU package. It bears the zone's own name, so that ICU
/// still finds the names and abbreviations to print.
class IcuTimeZone : public icu::TimeZone {
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

  void setRawOffset(int32_t) override {}
  int32_t getRawOffset() const override;
  UBool useDaylightTime() const override;
  UBool inDaylightTime(UDate date, UErrorCode& status) const override;
  UBool hasSameRules(const icu::TimeZone& other) const override;

 private:
  NSTimeZone zone_;
};
