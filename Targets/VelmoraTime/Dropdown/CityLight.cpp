#include "Targets/VelmoraTime/Dropdown/CityLight.h"

#include "Targets/VelmoraTime/Classes/SunMath.h"

namespace {

constexpr double Day = 86400;

double valueOf(const SunData& sun, std::string_view key) {
  const auto found = sun.find(key);
  return found != sun.end() ? found->second : 0;
}

/// How much of the way from `begin` to `end` is done.
float progress(double time, double begin, double end) {
  return static_cast<float>(time - begin) / static_cast<float>(end - begin);
}

/// The Sun's times on a date. Those of twilight fall together with the Sun's own where they are
/// missing; a dusk before its dawn is the next day's.
struct SunTimes {
  explicit SunTimes(const SunData& record) : rise(valueOf(record, "rise-sun")) {
    const double recordedSet = valueOf(record, "set-sun");
    const double recordedDawn = valueOf(record, "rise-civil");
    const double recordedDusk = valueOf(record, "set-civil");
    set = recordedSet < rise ? recordedSet + Day : recordedSet;
    dawn = recordedDawn < 0 ? rise : recordedDawn;
    dusk = recordedDusk < 0 ? recordedSet : recordedDusk;
    if (dusk < dawn) dusk += Day;
  }

  double rise;
  double set = 0;
  double dawn = 0;
  double dusk = 0;
};

CityLight lightWithoutSunrise(const SunTimes& sun, double time) {
  if (time <= sun.set) return {true, 1};
  if (time <= sun.dusk) return {true, progress(time, sun.set, sun.dusk)};
  return {false, 0};
}

CityLight lightWithoutSunset(const SunTimes& sun, double time) {
  if (time < sun.dawn) return {false, 0};
  if (time <= sun.rise) return {false, 1 - progress(time, sun.dawn, sun.rise)};
  return {true, 1};
}

CityLight lightOfOrdinaryDay(const SunTimes& sun, double time) {
  if (time <= sun.dawn) return {false, 1};
  if (time <= sun.rise) return {false, 1 - progress(time, sun.dawn, sun.rise)};
  if (time < sun.set) return {true, 1};
  if (time < sun.dusk) return {false, progress(time, sun.set, sun.dusk)};
  return {false, 1};
}

}  // namespace

CityLight lightOfCity(const SunData& record, double time) {
  const SunTimes sun(record);
  // Times below zero are markers.
  if (sun.rise < 0 && sun.set < 0) return {sun.rise != RiseSetAlwaysDown, 1};
  if (sun.rise < 0) return lightWithoutSunrise(sun, time);
  if (sun.set < 0) return lightWithoutSunset(sun, time);
  return lightOfOrdinaryDay(sun, time);
}
