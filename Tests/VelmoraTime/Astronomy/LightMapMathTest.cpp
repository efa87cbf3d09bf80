#include "Targets/VelmoraTime/LightMapMath.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Targets/VelmoraTime/EarthSeries.h"

namespace {

const LightMapEphemeris& update(double year, double month, double day, double hour, double minute,
                                double second) {
  setLightMapTime(year, month, day, hour, minute, second);
  TimeMeasures();
  Nutation();
  Aries();
  Sun();
  Moon();
  return lightMapEphemeris();
}

// Meeus, "Astronomical Algorithms", ch. 25, worked example: 1992 October 13, 0h TD.
TEST(EarthSeries, WorkedExample) {
  const EarthPosition earth = earthPosition(-0.007218343600);
  EXPECT_NEAR(earth.longitude, -43.63484796, 1e-8);
  EXPECT_NEAR(earth.latitude, -0.00000312, 1e-8);
  EXPECT_NEAR(earth.distance, 0.99760775, 1e-8);
}

// The almanac stands at Julian date 1721027.5, whatever date it is given. PyEphem 4.1.4 for that
// moment of dynamical time. The Sun lacks the nutation in longitude (0.005 degree); the Moon's
// older mean longitude is a tenth of a degree away so far from our time.
TEST(LightMapEphemeris, PositionsOfTheFixedDate) {
  const LightMapEphemeris& ephemeris = update(2024, 6, 21, 0, 0, 0);
  EXPECT_EQ(ephemeris.JD, 1721027.5);
  EXPECT_NEAR(ephemeris.RAsun, 246.1002, 0.01);
  EXPECT_NEAR(_DECsun(), -21.8633, 0.01);
  EXPECT_NEAR(ephemeris.R, 0.982523, 1e-5);
  EXPECT_NEAR(ephemeris.GHAAtrue, 67.9699, 0.01);
  EXPECT_NEAR(_GHAsun(), 67.9699 - 246.1002 + 360, 0.015);
  EXPECT_NEAR(ephemeris.RAmoon, 305.0803, 0.15);
  EXPECT_NEAR(_DECmoon(), -18.3440, 0.1);
  EXPECT_NEAR(_GHAmoon(), 67.9699 - 305.0803 + 360, 0.15);
  EXPECT_NEAR(ephemeris.dEM, 396018, 100);
  // By hand from the theory's polynomials and tables: 23.695286 degrees of mean obliquity with the
  // nutation of that moment, and in longitude the 105th term alone.
  EXPECT_NEAR(ephemeris.eps, 23.6960390, 1e-7);
  EXPECT_NEAR(ephemeris.delta_psi, 9.08639e-9, 1e-13);
}

// The first run turns month 0 into December of the year before and must not do so again.
TEST(LightMapEphemeris, DateIsAdjustedOnce) {
  for (int run = 0; run < 5; ++run)
    update(2026, 1, 2, 3, 4, 5);
  EXPECT_EQ(lightMapEphemeris().year, -1);
  EXPECT_EQ(lightMapEphemeris().month, 12);
  EXPECT_EQ(lightMapEphemeris().day, 0);
}

TEST(LightMapEphemeris, OnlyTheTimeOfDayCounts) {
  const LightMapEphemeris winter = update(1999, 1, 3, 17, 42, 30);
  const LightMapEphemeris summer = update(2031, 7, 30, 17, 42, 30);
  EXPECT_EQ(winter.GHAsun, summer.GHAsun);
  EXPECT_EQ(winter.DECmoon, summer.DECmoon);
  EXPECT_DOUBLE_EQ(summer.dayfraction, (17 + 42.0 / 60 + 30.0 / 3600) / 24);
}

// Half a day turns the Sun by half a turn and the Moon by some six degrees less; the equation of
// time stays small at every minute, also where the hour angle passes 360.
TEST(LightMapEphemeris, TurnsWithTheHours) {
  const LightMapEphemeris midnight = update(2024, 1, 1, 0, 0, 0);
  const LightMapEphemeris noon = update(2024, 1, 1, 12, 0, 0);
  EXPECT_NEAR(std::abs(noon.GHAsun - midnight.GHAsun), 180, 0.1);
  EXPECT_NEAR(noon.GHAmoon - midnight.GHAmoon, 174.3, 1.0);
  for (int minute = 0; minute < 1440; ++minute) {
    const LightMapEphemeris& moment = update(2024, 1, 1, 0, minute, 0);
    // PyEphem 4.1.4: 7.5 minutes at 0h, and 25 seconds less a day later.
    EXPECT_NEAR(moment.EOT, 7.3, 0.3) << minute;
    EXPECT_GE(moment.GHAsun, 0);
    EXPECT_LT(moment.GHAsun, 360);
  }
}

}  // namespace
