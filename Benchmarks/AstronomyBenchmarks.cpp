// What the records of Sun and Moon cost. The moon record stands beside the same search over the
// 60-term Moon of ERFA; libnova's functions show what the full theories would cost. Link
// benchmark::benchmark, erfa and nova (Debian: liberfa-dev, libnova-dev).

#include <benchmark/benchmark.h>
#include <erfa.h>
#include <erfam.h>
#include <libnova/libnova.h>

#include <cmath>

#include "Targets/VelmoraTime/Classes/MoonData.h"
#include "Targets/VelmoraTime/Classes/RiseSetSearch.h"
#include "Targets/VelmoraTime/Classes/SunData.h"
#include "Targets/VelmoraTime/LightMapMath.h"

namespace {

constexpr double Start = 1'795'000'000;
constexpr double Day = 86400;
constexpr double Longitude = 13.4;
constexpr double Latitude = 52.5;

NSTimeZone berlin() { return *NSTimeZone::timeZoneWithName("Europe/Berlin"); }
NSDate dateAt(double seconds) { return NSDate::dateWithTimeIntervalSince1970(seconds); }
double julianDateAt(double seconds) { return seconds / Day + 2440587.5; }

// Each pass takes another day of the next years, so that no branch is learned by heart.
double nextDay(double seconds) { return seconds < Start + 1000 * Day ? seconds + Day : Start; }

/// Rise, set, three twilights, the day before, noon and five positions.
void sunRecord(benchmark::State& state) {
  const NSTimeZone zone = berlin();
  double time = Start;
  for (auto _ : state) {
    time = nextDay(time);
    benchmark::DoNotOptimize(calculateSunRiseAndSet(dateAt(time), zone, Longitude, Latitude));
  }
}
BENCHMARK(sunRecord);

/// The full theory's cost, and for rise, set and three twilights only.
void libnovaSunEvents(benchmark::State& state) {
  ln_lnlat_posn observer{Longitude, Latitude};
  double time = Start;
  for (auto _ : state) {
    time = nextDay(time);
    for (const double horizon : {LN_SOLAR_STANDART_HORIZON, LN_SOLAR_CIVIL_HORIZON,
                                 LN_SOLAR_NAUTIC_HORIZON, LN_SOLAR_ASTRONOMICAL_HORIZON}) {
      ln_rst_time events{};
      benchmark::DoNotOptimize(
          ln_get_solar_rst_horizon(julianDateAt(time), &observer, horizon, &events));
    }
  }
}
BENCHMARK(libnovaSunEvents);

void moonRecord(benchmark::State& state) {
  const NSTimeZone zone = berlin();
  double time = Start;
  for (auto _ : state) {
    time = nextDay(time);
    benchmark::DoNotOptimize(calculateMoonRiseAndSet(dateAt(time), zone, Longitude, Latitude));
  }
}
BENCHMARK(moonRecord);

/// The record of the same search over ERFA's Moon: 60 terms each for longitude, distance and
/// latitude after Meeus, "Astronomical Algorithms", ch. 47, and their rates, which come with them.
MoonData erfaMoonRecord(const NSDate& date, const NSTimeZone& zone, double longitude,
                        double latitude) {
  const ZoneMidnight midnight = zoneMidnight(date, zone);
  const double start = midnight.modifiedJulianDate - midnight.zoneHours / 24;
  const double sinLatitude = std::sin(latitude * AltitudeDegree);
  const double cosLatitude = std::cos(latitude * AltitudeDegree);
  double toEquatorOfDate[3][3];
  eraPmat06(ERFA_DJM0, start, toEquatorOfDate);
  const RiseSetSearch search = searchRiseAndSet([&](double hour) {
    const double moment = start + hour / 24;
    double moon[2][3], ofDate[3], rightAscension = 0, declination = 0;
    eraMoon98(ERFA_DJM0, moment, moon);
    eraRxp(toEquatorOfDate, moon[0], ofDate);
    eraC2s(ofDate, &rightAscension, &declination);
    const double hourAngle = lmst(moment, longitude) * 15 - rightAscension * ERFA_DR2D;
    constexpr double EightMinutesOfArc = 0.00232710356629117;
    return sineOfAltitude(declination * ERFA_DR2D, hourAngle, cosLatitude, sinLatitude) -
           EightMinutesOfArc;
  });
  const auto event = [&](bool happens, double hour, int32_t absent) {
    const int32_t seconds = happens ? secondsOfEvent(hour, midnight.zoneHours) : absent;
    return eventSince1970(seconds, midnight);
  };
  return {{"rise", event(search.rises, search.riseHour, RiseSetNoRise)},
          {"set", event(search.sets, search.setHour, RiseSetNoSet)}};
}

void moonRecordOverErfa(benchmark::State& state) {
  const NSTimeZone zone = berlin();
  double time = Start;
  for (auto _ : state) {
    time = nextDay(time);
    benchmark::DoNotOptimize(erfaMoonRecord(dateAt(time), zone, Longitude, Latitude));
  }
  // Both must find the same events, or the comparison is void.
  constexpr int Days = 100;
  double apart = 0;
  for (int day = 0; day < Days; ++day) {
    const NSDate date = dateAt(Start + day * Day);
    apart += std::abs(calculateMoonRiseAndSet(date, zone, Longitude, Latitude).at("rise") -
                      erfaMoonRecord(date, zone, Longitude, Latitude).at("rise"));
  }
  state.counters["seconds_apart"] = apart / Days;
}
BENCHMARK(moonRecordOverErfa);

/// The full theory's cost: some thousand terms for each position.
void libnovaMoonEvents(benchmark::State& state) {
  ln_lnlat_posn observer{Longitude, Latitude};
  double time = Start;
  for (auto _ : state) {
    time = nextDay(time);
    ln_rst_time events{};
    benchmark::DoNotOptimize(ln_get_lunar_rst(julianDateAt(time), &observer, &events));
  }
}
BENCHMARK(libnovaMoonEvents);

/// The list of the dropdown. The library has no search for phases to compare with.
void eightNextPhases(benchmark::State& state) {
  double time = Start;
  for (auto _ : state) {
    time = nextDay(time);
    benchmark::DoNotOptimize(nextPhases(8, dateAt(time)));
  }
}
BENCHMARK(eightNextPhases);

void presentPhase(benchmark::State& state) {
  double time = Start;
  for (auto _ : state) {
    time = nextDay(time);
    double age = 0, illumination = 0;
    benchmark::DoNotOptimize(currentPhase(age, illumination, dateAt(time)));
  }
}
BENCHMARK(presentPhase);

/// One update of the light map's icons.
void ephemerisUpdate(benchmark::State& state) {
  double minute = 0;
  for (auto _ : state) {
    minute = minute < 1439 ? minute + 1 : 0;
    setLightMapTime(2026, 11, 21, 0, minute, 0);
    TimeMeasures();
    Nutation();
    Aries();
    Sun();
    Moon();
    benchmark::DoNotOptimize(_GHAmoon());
  }
}
BENCHMARK(ephemerisUpdate);

/// The full theories' cost: equatorial positions of both, and sidereal time.
void libnovaPositions(benchmark::State& state) {
  double time = Start;
  for (auto _ : state) {
    time += 60;
    ln_equ_posn sun{}, moon{};
    ln_get_solar_equ_coords(julianDateAt(time), &sun);
    ln_get_lunar_equ_coords(julianDateAt(time), &moon);
    benchmark::DoNotOptimize(ln_get_apparent_sidereal_time(julianDateAt(time)));
    benchmark::DoNotOptimize(sun);
    benchmark::DoNotOptimize(moon);
  }
}
BENCHMARK(libnovaPositions);

}  // namespace

BENCHMARK_MAIN();
