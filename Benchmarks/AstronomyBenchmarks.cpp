// What the records of Sun and Moon cost, beside a general astronomical library doing the same
// work: link benchmark::benchmark and nova (Debian: libnova-dev).

#include <benchmark/benchmark.h>
#include <libnova/libnova.h>

#include "Targets/VelmoraTime/Classes/MoonData.h"
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

/// The rival: rise, set and three twilights only.
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

/// The rival: equatorial positions of both by its full series, and sidereal time.
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
