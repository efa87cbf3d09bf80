#include "Targets/VelmoraTime/Classes/MoonData.h"

#include <algorithm>
#include <cmath>

#include "Targets/VelmoraTime/Classes/JulianDate.h"
#include "Targets/VelmoraTime/Classes/MoonMath.h"
#include "Targets/VelmoraTime/Classes/MoonPhases.h"
#include "Targets/VelmoraTime/Classes/SunData.h"
#include "Targets/VelmoraTime/Classes/SystemCalendar.h"

namespace {

constexpr int32_t MostPhases = 100000;

struct PresentPhase {
  NSDate shown;  ///< The moment, shifted so that the system's calendar shows UTC.
  double julianDate = 0;
  double fraction = 0;
  double age = 0;
  double illumination = 0;

  double nextPrincipal() const {
    if (fraction >= 0.75) return 0;
    if (fraction >= 0.5) return 0.75;
    return fraction >= 0.25 ? 0.5 : 0.25;
  }
};

PresentPhase presentPhase(const NSDate& date) {
  PresentPhase present{.shown = dateShowingUniversalTime(date)};
  const CalendarFields now = systemCalendarFields(present.shown);
  present.julianDate = ucttoj(now.year, now.month - 1, now.day, now.hour, now.minute, now.second);
  double distance = 0, diameter = 0, sunDistance = 0, sunDiameter = 0;
  present.fraction = phase(present.illumination, present.age, distance, diameter, sunDistance,
                           sunDiameter, present.julianDate);
  return present;
}

CalendarFields fieldsOfPhase(double lunation, double fraction) {
  double written = 0;
  const double moment = truephase(written, lunation, fraction);
  CalendarFields fields;
  jyear(fields.year, fields.month, fields.day, moment);
  jhms(fields.hour, fields.minute, fields.second, moment);
  return fields;
}

/// The name index of a phase fraction. What falls between the ranges of a principal phase and the
/// next one belongs to the range below.
int32_t phaseIndex(double fraction) {
  struct Range {
    double from, to;
    int32_t index;
  };
  constexpr Range Ranges[] = {
      {0.76, 1, 7}, {0.75, 0.7525, 6}, {0.51, 1, 5}, {0.5, 0.5025, 4},
      {0.26, 1, 3}, {0.25, 0.2525, 2}, {0.01, 1, 1},
  };
  const auto* const range = std::ranges::find_if(
      Ranges, [=](const Range& r) { return fraction >= r.from && fraction <= r.to; });
  return range != std::end(Ranges) ? range->index : 0;
}

int32_t principalIndex(double fraction) {
  if (fraction >= 0.75) return 6;
  if (fraction >= 0.5) return 4;
  return fraction >= 0.25 ? 2 : 0;
}

}  // namespace

int32_t currentPhase(double& age, double& illumination, const NSDate& date) {
  const PresentPhase present = presentPhase(date);
  age = present.age;
  illumination = present.illumination;

  const double next = present.nextPrincipal();
  const double lunation = lunationstart(present.julianDate) + (next == 0 ? 1 : 0);
  // Both dates are read on the shifted scale, on which the system's calendar shows UTC.
  const bool isStillAhead = dateFromSystemCalendar(fieldsOfPhase(lunation, next)) > present.shown;
  return phaseIndex(isStillAhead ? present.fraction : next);
}

std::vector<MoonPhaseRecord> nextPhases(int32_t count, const NSDate& date) {
  const PresentPhase present = presentPhase(date);
  const double first = present.nextPrincipal();
  const double lunation = lunationstart(present.julianDate);
  const auto wanted = static_cast<size_t>(std::clamp(count, 0, MostPhases));

  std::vector<MoonPhaseRecord> phases;
  // A few phases before the first are skipped. Far from our era, where the phase of the moment and
  // the lunations drift apart, there may be more of them, but not without end.
  constexpr size_t MostSkipped = 64;
  for (size_t i = 0; phases.size() < wanted && i < wanted + MostSkipped; ++i) {
    const double x = first + 0.25 * static_cast<double>(i);
    const double whole = std::floor(x);
    const double fraction = x > 0.75 ? x - whole : x;
    // The phase is a true instant and the moment is on the shifted scale: that is how the list has
    // always been cut, within a zone's offset of the present.
    const NSDate time = dateFromUniversalCalendar(fieldsOfPhase(whole + lunation, fraction));
    if (present.shown >= time) continue;
    phases.push_back({principalIndex(fraction), time.timeIntervalSince1970(), 0.0F});
  }
  return phases;
}

MoonData calculateMoonRiseAndSet(const NSDate& date, const NSTimeZone& timeZone, double longitude,
                                 double latitude) {
  const ZoneMidnight midnight = zoneMidnight(date, timeZone);
  int32_t rise = 0, set = 0;
  moonRiseSet(rise, set, midnight.modifiedJulianDate, midnight.zoneHours, longitude, latitude);
  // A set before the rise stays: the next day's belongs to the next date.
  return {{"rise", eventSince1970(rise, midnight)}, {"set", eventSince1970(set, midnight)}};
}

void calculateMoonInfo(const NSDate& date, double& altitude, double& azimuth, double& distance) {
  const CalendarFields now = systemCalendarFields(date);
  const int32_t zoneMinutes = -(NSTimeZone::systemTimeZone().secondsFromGMTForDate(date) / 60);
  fetchMoonSkyData(now.year, now.month, now.day, now.hour, now.minute, zoneMinutes, azimuth,
                   altitude, distance, 0, 0);
}
