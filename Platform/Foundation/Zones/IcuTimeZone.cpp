#include "Platform/Foundation/Zones/IcuTimeZone_p.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>

#include "Platform/Foundation/Zones/TimeZoneRules.h"

namespace {

constexpr int32_t Milliseconds = 1000;

// The start and the end of periods that are not bounded.
constexpr int64_t Earliest = std::numeric_limits<int64_t>::min();
constexpr int64_t Latest = std::numeric_limits<int64_t>::max();

int64_t wholeSeconds(UDate date) {
  constexpr double Furthest = 9e15;
  return static_cast<int64_t>(std::clamp(std::floor(date / Milliseconds), -Furthest, Furthest));
}

/// The last whole second before the instant.
int64_t secondBefore(UDate date) { return -wholeSeconds(-date) - 1; }

/// The offset of the standard clocks which a daylight period departs from or, where the zone moves
/// at its beginning, comes back to: the next lower one.
int32_t standardOfDaylight(const TimeZoneRules& rules, const TimeZonePeriod& daylight) {
  // Further summer times may lie between, as in the war years.
  constexpr int Furthest = 16;
  TimeZonePeriod before = daylight;
  for (int i = 0; i < Furthest && before.daylight && before.start > Earliest; ++i) {
    before = rules.periodAt(before.start - 1);
  }
  const TimeZonePeriod after = daylight.end < Latest ? rules.periodAt(daylight.end) : daylight;

  std::optional<int32_t> lower;
  bool isBehind = false;
  for (const TimeZonePeriod& standard : {before, after}) {
    if (standard.daylight || standard.offset == daylight.offset) continue;
    if (standard.offset < daylight.offset) {
      lower = std::max(lower.value_or(standard.offset), standard.offset);
    } else {
      isBehind = true;
    }
  }
  if (lower) return *lower;
  // Behind its standard time, such as Dublin's winter: ICU's names go by the later clocks being the
  // daylight ones.
  return isBehind ? daylight.offset : daylight.offset - 3600;
}

/// The standard offset of a period, in the sense of ICU's names.
int32_t standardOffset(const TimeZoneRules& rules, const TimeZonePeriod& period) {
  if (period.daylight) return standardOfDaylight(rules, period);
  constexpr int64_t Year = 366 * 86'400;
  if (period.end == Latest || period.start < period.end - Year) return period.offset;
  // A daylight time behind it makes this one the later clocks.
  const TimeZonePeriod next = rules.periodAt(period.end);
  return next.daylight ? std::min(period.offset, next.offset) : period.offset;
}

/// Tells the change from one period to the next, if ICU would see any: a new abbreviation alone is
/// none to it.
bool tellTransition(const TimeZoneRules& rules, const TimeZonePeriod& before,
                    const TimeZonePeriod& after, icu::TimeZoneTransition& result) {
  const int32_t standardBefore = standardOffset(rules, before);
  const int32_t standardAfter = standardOffset(rules, after);
  if (before.offset == after.offset && standardBefore == standardAfter) return false;
  const auto rule = [](int32_t offset, int32_t standard) {
    return icu::InitialTimeZoneRule({}, standard * Milliseconds,
                                    (offset - standard) * Milliseconds);
  };
  result.setFrom(rule(before.offset, standardBefore));
  result.setTo(rule(after.offset, standardAfter));
  result.setTime(static_cast<UDate>(after.start) * Milliseconds);
  return true;
}

/// Changes that ICU does not see are few in a row. A rule whose summer never ends has nothing but
/// such.
constexpr int MaximumUnseen = 4;

}  // namespace

IcuTimeZone::IcuTimeZone(const NSTimeZone& zone)
    : icu::RuleBasedTimeZone(icu::UnicodeString::fromUTF8(zone.name()),
                             std::make_unique<icu::InitialTimeZoneRule>("", 0, 0).release()),
      zone_(zone) {}

UClassID IcuTimeZone::getStaticClassID() {
  static char classId = 0;
  return static_cast<UClassID>(&classId);
}

bool IcuTimeZone::operator==(const icu::TimeZone& other) const {
  // The rules are the zone's own, and not those that the parent compares.
  // NOLINTNEXTLINE(bugprone-parent-virtual-call)
  return icu::TimeZone::operator==(other) && hasSameRules(other);
}

UBool IcuTimeZone::hasSameRules(const icu::TimeZone& other) const {
  const auto* same = dynamic_cast<const IcuTimeZone*>(&other);
  return static_cast<UBool>(same != nullptr && same->zone_ == zone_);
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

void IcuTimeZone::getOffsetFromLocal(UDate date, UTimeZoneLocalOption, UTimeZoneLocalOption,
                                     int32_t& rawOffset, int32_t& daylightOffset,
                                     UErrorCode& status) const {
  getOffset(date, true, rawOffset, daylightOffset, status);
}

int32_t IcuTimeZone::getRawOffset() const {
  const TimeZoneRules& rules = zone_.rules();
  const auto now = static_cast<int64_t>(NSDate::date().timeIntervalSince1970());
  return standardOffset(rules, rules.periodAt(now)) * Milliseconds;
}

UBool IcuTimeZone::useDaylightTime() const {
  return static_cast<UBool>(zone_.rules().usesDaylight());
}

UBool IcuTimeZone::inDaylightTime(UDate date, UErrorCode& status) const {
  int32_t rawOffset = 0;
  int32_t daylightOffset = 0;
  getOffset(date, false, rawOffset, daylightOffset, status);
  return static_cast<UBool>(daylightOffset != 0);
}

UBool IcuTimeZone::getNextTransition(UDate base, UBool inclusive,
                                     icu::TimeZoneTransition& result) const {
  const TimeZoneRules& rules = zone_.rules();
  TimeZonePeriod before = rules.periodAt(inclusive ? secondBefore(base) : wholeSeconds(base));
  for (int i = 0; i < MaximumUnseen && before.end < Latest; ++i) {
    const TimeZonePeriod after = rules.periodAt(before.end);
    if (tellTransition(rules, before, after, result)) return true;
    before = after;
  }
  return false;
}

UBool IcuTimeZone::getPreviousTransition(UDate base, UBool inclusive,
                                         icu::TimeZoneTransition& result) const {
  const TimeZoneRules& rules = zone_.rules();
  TimeZonePeriod after = rules.periodAt(inclusive ? wholeSeconds(base) : secondBefore(base));
  for (int i = 0; i < MaximumUnseen && after.start > Earliest; ++i) {
    const TimeZonePeriod before = rules.periodAt(after.start - 1);
    if (tellTransition(rules, before, after, result)) return true;
    after = before;
  }
  return false;
}
