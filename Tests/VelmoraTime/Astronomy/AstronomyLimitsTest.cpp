#include <cmath>
#include <future>
#include <limits>
#include <tuple>

#include "Targets/VelmoraTime/Classes/JulianDate.h"
#include "Targets/VelmoraTime/Classes/MoonData.h"
#include "Targets/VelmoraTime/Classes/MoonMath.h"
#include "Targets/VelmoraTime/Classes/MoonPhases.h"
#include "Targets/VelmoraTime/Classes/SunData.h"
#include "Tests/VelmoraTime/Astronomy/AstronomyTesting.h"

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

class AstronomyLimits : public AstronomyTest {};

// Nothing may hang, trap or leave the range of a marker or a time: whole numbers within 32 bits.
// The sanitizers watch the conversions.
TEST_F(AstronomyLimits, ImpossiblePlacesAndDates) {
  const NSTimeZone zone = zoneNamed("Asia/Kolkata");
  const double dates[] = {secondsAt("-5000-03-01"), 1.72e9, 1e18, 1e300, Infinity, NotANumber};
  const double angles[] = {91, -1000, 1e300, Infinity, NotANumber};
  for (const double seconds : dates) {
    const NSDate date = NSDate::dateWithTimeIntervalSince1970(seconds);
    for (const double angle : angles) {
      for (const auto& [longitude, latitude] : {std::pair(angle, 45.0), std::pair(10.0, angle)}) {
        const SunData sun = calculateSunRiseAndSet(date, zone, longitude, latitude);
        for (const char* key : {"rise-sun", "set-astronomical", "noon", "daylength"}) {
          EXPECT_EQ(sun.at(key), static_cast<int32_t>(sun.at(key))) << key;
        }
        EXPECT_EQ(calculateMoonRiseAndSet(date, zone, longitude, latitude).size(), 2U);
      }
    }
  }
  // Where nothing can be computed, nothing happens.
  const SunData nowhere = calculateSunRiseAndSet(utc("2024-06-21"), zone, NotANumber, 0);
  EXPECT_EQ(nowhere.at("rise-sun"), RiseSetAlwaysDown);
  EXPECT_EQ(nowhere.at("daylength"), 0);
}

TEST_F(AstronomyLimits, PhasesOfAnyDate) {
  double age = 0, illumination = 0, altitude = 0, azimuth = 0, distance = 0;
  for (const double seconds : {secondsAt("-5000-03-01"), 1e15, 1e300, -Infinity, NotANumber}) {
    const NSDate date = NSDate::dateWithTimeIntervalSince1970(seconds);
    const int32_t index = currentPhase(age, illumination, date);
    EXPECT_GE(index, 0);
    EXPECT_LE(index, 7);
    EXPECT_LE(nextPhases(8, date).size(), 8U);
    calculateMoonInfo(date, altitude, azimuth, distance);
  }
  // In the years that a calendar shows, the list is full.
  for (const char* text : {"0001-01-01", "9999-01-01"})
    EXPECT_EQ(nextPhases(8, utc(text)).size(), 8U) << text;
  // A hostile count is cut, not counted out.
  EXPECT_EQ(nextPhases(std::numeric_limits<int32_t>::max(), utc("2024-01-01")).size(), 100000U);
}

TEST_F(AstronomyLimits, JulianDates) {
  int32_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  for (const double julianDate : {1e300, -1e300, Infinity, NotANumber, 1e8}) {
    jyear(year, month, day, julianDate);
    jhms(hour, minute, second, julianDate);
    EXPECT_EQ(year, -4712);
    EXPECT_EQ(hour, 12);
    const double months = lunationstart(julianDate);
    if (std::isfinite(julianDate)) {
      EXPECT_NEAR(months * 29.53058868 / julianDate, 1, 0.03);
    }
    double unused = 0;
    phase(unused, unused, unused, unused, unused, unused, julianDate);
  }
  for (const int32_t n :
       {std::numeric_limits<int32_t>::max(), std::numeric_limits<int32_t>::min()}) {
    EXPECT_TRUE(std::isfinite(ucttoj(n, n, n, n, n, n)));
    EXPECT_TRUE(std::isfinite(mjd(n, n, n, 0)));
    EXPECT_TRUE(std::isfinite(sunAzimuth2(n, n, n, 0, 0, 0)));
  }
}

// Four threads at once get what one gets alone; the thread sanitizer watches.
TEST_F(AstronomyLimits, FunctionsShareNothing) {
  const NSTimeZone zone = zoneNamed("Europe/Oslo");
  const auto recordsOf = [&zone](int seed) {
    std::vector<std::tuple<SunData, MoonData, int32_t>> records;
    for (int i = 0; i < 40; ++i) {
      const NSDate date = NSDate::dateWithTimeIntervalSince1970(1.7e9 + (seed * 40 + i) * 1e5);
      const double longitude = -180 + 8.9 * i;
      const double latitude = -78 + 3.9 * i;
      double age = 0, illumination = 0;
      records.emplace_back(calculateSunRiseAndSet(date, zone, longitude, latitude),
                           calculateMoonRiseAndSet(date, zone, longitude, latitude),
                           currentPhase(age, illumination, date));
    }
    return records;
  };
  std::vector<std::future<decltype(recordsOf(0))>> found;
  for (int seed = 0; seed < 4; ++seed)
    found.push_back(std::async(std::launch::async, recordsOf, seed));
  for (int seed = 0; seed < 4; ++seed)
    EXPECT_EQ(found[static_cast<size_t>(seed)].get(), recordsOf(seed)) << seed;
}

}  // namespace
