#include "Targets/VelmoraTime/Classes/SunData.h"

#include <cmath>

#include "Targets/VelmoraTime/Classes/AstronomyArithmetic.h"

namespace {

constexpr int32_t SecondsInDay = 86400;
constexpr int32_t SecondsToNoon = 43200;

// Sines of -0.833, -6, -12 and -18 degrees.
constexpr double SunThreshold = -0.01453808048588594;
constexpr double CivilThreshold = -0.1045284631486492;
constexpr double NauticalThreshold = -0.20791169058366948;
constexpr double AstronomicalThreshold = -0.3090169940335378;

struct EventPair {
  int32_t rise = 0;
  int32_t set = 0;

  int32_t length() const { return _daylength(rise, set); }
};

EventPair eventPair(const ZoneMidnight& midnight, double longitude, double latitude,
                    double sinThreshold) {
  EventPair pair;
  sunRiseSet(pair.rise, pair.set, midnight.modifiedJulianDate, midnight.zoneHours, longitude,
             latitude, sinThreshold);
  return pair;
}

EventPair since1970(EventPair pair, const ZoneMidnight& midnight) {
  return {eventSince1970(pair.rise, midnight), eventSince1970(pair.set, midnight)};
}

double azimuth(const ZoneMidnight& midnight, double longitude, double latitude, double seconds) {
  const CalendarFields& date = midnight.date;
  return sunAzimuth2(date.year, date.month, date.day, longitude, latitude, dayOffset(seconds));
}

double azimuthOfEvent(const ZoneMidnight& midnight, double longitude, double latitude,
                      int32_t event) {
  return isEventTime(event) ? azimuth(midnight, longitude, latitude, event) : NoAzimuth;
}

double altitude(const ZoneMidnight& midnight, double longitude, double latitude, double seconds) {
  const double moment = midnight.modifiedJulianDate + dayOffset(seconds);
  return sunAltitude2(static_cast<float>(moment), longitude, latitude);
}

}  // namespace

ZoneMidnight zoneMidnight(const NSDate& date, const NSTimeZone& timeZone) {
  ZoneMidnight midnight;
  midnight.zoneHours = timeZone.secondsFromGMTForDate(date) / 60.0 / 60.0;
  const CalendarFields shown = systemCalendarFields(correctedDate(date, timeZone));
  midnight.date = {.year = shown.year, .month = shown.month, .day = shown.day};
  midnight.secondsSince1970 = dateFromUniversalCalendar(midnight.date).timeIntervalSince1970();
  midnight.modifiedJulianDate = mjd(shown.day, shown.month, shown.year, 0);
  return midnight;
}

int32_t eventSince1970(int32_t value, const ZoneMidnight& midnight) {
  return value >= RiseSetNoRise ? truncatedTo32Bits(value + midnight.secondsSince1970) : value;
}

int32_t _noon(int32_t rise, int32_t set) {
  if (!isEventTime(rise) || !isEventTime(set)) return RiseSetNoRise;
  const auto between = static_cast<float>(int64_t{set} - rise);
  return static_cast<int32_t>(int64_t{rise} + truncatedTo32Bits(between * 0.5));
}

int32_t _daylength(int32_t rise, int32_t set) {
  if (rise == RiseSetAlwaysUp) return SecondsInDay;
  if (rise == RiseSetAlwaysDown) return 0;
  return static_cast<int32_t>(int64_t{set} - rise);
}

SunData calculateSunRiseAndSet(const NSDate& date, const NSTimeZone& timeZone, double longitude,
                               double latitude) {
  const ZoneMidnight today = zoneMidnight(date, timeZone);
  ZoneMidnight yesterday = today;
  yesterday.modifiedJulianDate -= 1;

  const auto pairOf = [&](const ZoneMidnight& midnight, double sinThreshold) {
    return eventPair(midnight, longitude, latitude, sinThreshold);
  };
  const EventPair sun = since1970(pairOf(today, SunThreshold), today);
  const EventPair sunYesterday = since1970(pairOf(yesterday, SunThreshold), today);
  const EventPair civil = since1970(pairOf(today, CivilThreshold), today);
  const EventPair nautical = since1970(pairOf(today, NauticalThreshold), today);
  const EventPair astronomical = since1970(pairOf(today, AstronomicalThreshold), today);

  int32_t noon = _noon(sun.rise, sun.set);
  if (noon == RiseSetNoRise && sun.rise == RiseSetAlwaysUp) {
    const int32_t offset = timeZone.secondsFromGMTForDate(date);
    noon = truncatedTo32Bits(today.secondsSince1970 + SecondsToNoon - offset);
  }

  int32_t length = sun.length();
  if (length == 0) length = civil.length();
  int32_t lengthYesterday = sunYesterday.length();
  if (lengthYesterday == 0) lengthYesterday = pairOf(yesterday, CivilThreshold).length();

  const double now = NSDate::date().timeIntervalSince1970();
  return {
      {"rise-sun", sun.rise},
      {"set-sun", sun.set},
      {"rise-civil", civil.rise},
      {"set-civil", civil.set},
      {"rise-nautical", nautical.rise},
      {"set-nautical", nautical.set},
      {"rise-astronomical", astronomical.rise},
      {"set-astronomical", astronomical.set},
      {"noon", noon},
      {"azimuth-now", azimuth(today, longitude, latitude, now)},
      {"altitude-now", altitude(today, longitude, latitude, now)},
      {"azimuth-rise-sun", azimuthOfEvent(today, longitude, latitude, sun.rise)},
      {"azimuth-set-sun", azimuthOfEvent(today, longitude, latitude, sun.set)},
      {"azimuth-noon", azimuthOfEvent(today, longitude, latitude, noon)},
      {"altitude-noon", altitude(today, longitude, latitude, noon)},
      {"daylength", length},
      {"daylength-yesterday", lengthYesterday},
  };
}
