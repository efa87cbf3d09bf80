#include "Platform/Foundation/IcuTimeZone.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "Platform/Foundation/TimeZoneRules.h"

namespace {

constexpr int32_t Milliseconds = 1000;

int64_t wholeSeconds(UDate date) {
  constexpr double Furthest = 9e15;
  return static_cast<int64_t>(std::clamp(std::floor(date / Milliseconds), -Furthest, Furthest));
}

/// The standard offset of a period. Zones such as Dublin's declare their winter as the daylight
/// time, behind the standard one; ICU's names go by the later clocks being the daylight ones.
int32_t standardOffset(const TimeZoneRules& rules, const TimeZonePeriod& period) {
  constexpr int64_t Year = 366 * 86'400;
  const bool hasNeighbour = period.end < std::numeric_limits<int64_t>::max() - 1;
  if (!hasNeighbour) return period.offset;
  const TimeZonePeriod next = rules.periodAt(period.end);
  if (next.daylight == period.daylight)
    return period.daylight ? period.offset - 3600 : period.offset;
  if (!period.daylight && period.start < period.end - Year) return period.offset;
  return std::min(period.offset, next.offset);
}

}  // namespace

IcuTimeZone::IcuTimeZone(const NSTimeZone& zone)
    : icu::TimeZone(icu::UnicodeString::fromUTF8(zone.name())), zone_(zone) {}

UClassID IcuTimeZone::getStaticClassID() {
  static char classId = 0;
  return static_cast<UClassID>(&classId);
}

bool IcuTimeZone::operator==(const icu::TimeZone& other) const {
  return icu::TimeZone::operator==(other) && hasSameRules(other);
}

UBool IcuTimeZone::hasSameRules(const icu::TimeZone& other) const {
  const auto* same = dynamic_cast<const IcuTimeZone*>(&other);
  return same != nullptr && same->zone_ == zone_;
}

void IcuTimeZone::getOffset(UDate date, UBool local, int32_t& rawOffset, int32_t& daylightOffset,
                            UErrorCode& status) const {
  if (U_FAILURE(status)) return;
  const TimeZoneRules& rules = zone_.rules();
  const int64_t seconds = wholeSeconds(date);
  const TimeZonePeriod period = local ? rules.periodAtLocal(seconds) : rules.periodAt(seconds);
  const int32_t standard = standardOffset(rules, period);
  rawOffset = standard * Milliseconds;
  daylightOffset = (period.offset - standard) * Milliseconds;
}

int32_t IcuTimeZone::getOffset(uint8_t era, int32_t year, int32_t month, int32_t day,
                               uint8_t dayOfWeek, int32_t milliseconds, UErrorCode& status) const {
  return getOffset(era, year, month, day, dayOfWeek, milliseconds, 31, status);
}

int32_t IcuTimeZone::getOffset(uint8_t era, int32_t year, int32_t month, int32_t day, uint8_t,
                               int32_t milliseconds, int32_t, UErrorCode& status) const {
  if (U_FAILURE(status)) return 0;
  // ICU gives a date by the standard clocks here; era 0 counts years before 1.
  const int calendarYear = era == 0 ? 1 - year : year;
  const std::chrono::sys_days date = std::chrono::year(calendarYear) / (month + 1) / day;
  const int64_t seconds = int64_t{date.time_since_epoch().count()} * 86'400 +
                          milliseconds / Milliseconds - getRawOffset() / Milliseconds;
  return zone_.rules().periodAt(seconds).offset * Milliseconds;
}

int32_t IcuTimeZone::getRawOffset() const {
  const TimeZoneRules& rules = zone_.rules();
  const auto now = static_cast<int64_t>(NSDate::date().timeIntervalSince1970());
  return standardOffset(rules, rules.periodAt(now)) * Milliseconds;
}

UBool IcuTimeZone::useDaylightTime() const { return zone_.rules().usesDaylight(); }

UBool IcuTimeZone::inDaylightTime(UDate date, UErrorCode& status) const {
  int32_t rawOffset = 0;
  int32_t daylightOffset = 0;
  getOffset(date, false, rawOffset, daylightOffset, status);
  return daylightOffset != 0;
}
