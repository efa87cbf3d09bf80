#include "Targets/VelmoraTime/Classes/SunMath.h"

#include "Targets/VelmoraTime/Classes/RiseSetSearch.h"

#include <cmath>

#include "Targets/VelmoraTime/Classes/JulianDate.h"
#include "Tests/VelmoraTime/Astronomy/AstronomyTesting.h"

namespace {

// Published Julian dates, less 2400000.5. Meeus, "Astronomical Algorithms", ch. 7.
TEST(ModifiedJulianDate, PublishedDates) {
  EXPECT_EQ(mjd(1, 1, 2000, 12), 51544.5F);
  EXPECT_EQ(mjd(27, 1, 1987, 0), 46822.0F);
  EXPECT_EQ(mjd(29, 2, 2024, 0), 60369.0F);
  EXPECT_EQ(mjd(17, 11, 1858, 0), 0.0F);
  // 32 bits hold 2^-8 of a day in this era: 20 minutes are lost to the nearest 337.5 seconds.
  EXPECT_EQ(mjd(1, 1, 2000, 1.0 / 3), 51544.0F + 4.0F / 256);
}

// Meeus, "Astronomical Algorithms", ch. 12: mean sidereal time at Greenwich on 1987 April 10, at
// 0h 13h10m46.3668s and at 19h21m 8h34m57.0896s; 77.065 degrees west it is 5.13767 hours less.
TEST(LocalMeanSiderealTime, PublishedExamples) {
  EXPECT_NEAR(lmst(46895, 0), 13 + 10 / 60.0 + 46.3668 / 3600, 1e-6);
  EXPECT_NEAR(lmst(46895 + 19.35 / 24, 0), 8 + 34 / 60.0 + 57.0896 / 3600, 1e-6);
  EXPECT_NEAR(lmst(46895 + 19.35 / 24, -77.065) - lmst(46895 + 19.35 / 24, 0), -77.065 / 15, 1e-9);
  // Before 2000 the truncated remainder is negative and takes a turn more.
  EXPECT_GE(lmst(40000, 0), 0);
}

struct PositionCase {
  double modifiedJulianDate, rightAscension, declination;
};

// Apparent positions by PyEphem 4.1.4; the first is the worked example of Meeus, "Astronomical
// Algorithms", ch. 25 (198.38083 and -7.78507 degrees, 0h TD). MiniSun keeps to 0.02 degree.
TEST(SunPosition, AgreesWithPublishedPositions) {
  const PositionCase cases[] = {{48908, 198.38083 / 15, -7.78507},
                                {40738.25, 4.58117, 22.0038},
                                {69806.75, 18.76090, -23.0165}};
  for (const PositionCase& position : cases) {
    SCOPED_TRACE(position.modifiedJulianDate);
    double declination = 0, rightAscension = 0;
    sunPosition(declination, rightAscension, (position.modifiedJulianDate - 51544.5) / 36525);
    EXPECT_NEAR(rightAscension, position.rightAscension, 0.02 / 15);
    EXPECT_NEAR(declination, position.declination, 0.02);
  }
}

// Hours and minutes are added to the date, and not to each other's place.
TEST(SunHorizon, HoursAndMinutesCount) {
  EXPECT_NEAR(sunSinAlt(60482, 9, 30, 0, 0.6, 0.8), sunSinAlt(60482 + 9.5 / 24, 0, 0, 0, 0.6, 0.8),
              1e-9);
}

// In the zenith of the subsolar point and below it. 51544.5 is J2000.0: declination -23.03 degrees,
// the Sun 0.8 degrees east of Greenwich (equation of time -3.3 minutes).
TEST(SunHorizon, ZenithAndNadir) {
  EXPECT_NEAR(sunAltitude2(51544.5F, 0.82, -23.03), 90, 0.1);
  EXPECT_NEAR(sunAltitude2(51544.5F, 180.82, 23.03), -90, 0.1);
}

struct QuadCase {
  double yMinus, y0, yPlus;
  double nz, z1, z2, xe, ye;
};

// Parabolas with known roots.
TEST(Quad, RootsAndExtrema) {
  const QuadCase cases[] = {
      {6, 2, 0, 1, 1, 2, 1.5, -0.25},               // (x - 1)(x - 2): a zero at the very end counts
      {0.75, -0.25, 0.75, 2, -0.5, 0.5, 0, -0.25},  // (x - 1/2)(x + 1/2)
      {2, 1, 2, 0, 0, 0, 0, 1},                     // x^2 + 1: none
      {-1.25, 0.75, 0.75, 1, -0.5, 1.5, 0.5, 1},    // (x + 1/2)(3/2 - x)
      {0.75, 0.75, -1.25, 1, 0.5, 0.5, -0.5, 1},  // (x + 3/2)(1/2 - x): the zero in range is first
  };
  for (const QuadCase& c : cases) {
    double nz = 0, z1 = 0, z2 = 0, xe = 0, ye = 0;
    quad(nz, z1, z2, xe, ye, c.yMinus, c.y0, c.yPlus);
    EXPECT_EQ(nz, c.nz);
    EXPECT_NEAR(z1, c.z1, 1e-12);
    EXPECT_NEAR(z2, c.z2, 1e-12);
    EXPECT_NEAR(xe, c.xe, 1e-12);
    EXPECT_NEAR(ye, c.ye, 1e-12);
  }
}

// By hand: 20:13:20 of the day before is 0.1574 days before midnight.
TEST(DayOffset, FractionOfTheUtcDay) {
  EXPECT_DOUBLE_EQ(dayOffset(86400 * 20000.0 + 21600), 0.25);
  EXPECT_NEAR(dayOffset(-100000), 72800 / 86400.0 - 1, 1e-12);
  EXPECT_DOUBLE_EQ(dayOffset(-86400), -1);
}

TEST(Lengths, WholeHoursAndMinutes) {
  struct {
    int32_t seconds, hours, minutes;
  } const cases[] = {{3599, 0, 59}, {3600, 1, 0}, {59929, 16, 38}, {86400, 24, 0}, {-1, -1, 59}};
  for (const auto& c : cases) {
    EXPECT_EQ(hourFromSeconds(c.seconds), c.hours) << c.seconds;
    EXPECT_EQ(minuteFromSeconds(c.seconds), c.minutes) << c.seconds;
  }
}

}  // namespace
