#include "Targets/VelmoraTime/Classes/SunMath.h"

#include "Targets/VelmoraTime/Classes/RiseSetSearch.h"

#include <tuple>

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

// MiniSun keeps to 0.02 degree.
TEST(SunPosition, AgreesWithPublishedPositions) {
  for (const auto& [modifiedJulianDate, east, north] :
       casesOf<double, double, double>("sun positions")) {
    SCOPED_TRACE(modifiedJulianDate);
    double declination = 0, rightAscension = 0;
    sunPosition(declination, rightAscension, (modifiedJulianDate - 51544.5) / 36525);
    EXPECT_NEAR(rightAscension, east / 15, 0.02 / 15);
    EXPECT_NEAR(declination, north, 0.02);
  }
}

// Hours and minutes are added to the date, and not to each other's place.
TEST(SunHorizon, HoursAndMinutesCount) {
  EXPECT_NEAR(sunSinAlt(60482, 9, 30, 0, 0.6, 0.8), sunSinAlt(60482 + 9.5 / 24, 0, 0, 0, 0.6, 0.8),
              1e-9);
}

TEST(Quad, RootsAndExtremaOfParabolas) {
  using List = std::vector<double>;
  for (const auto& [y, expected] : casesOf<List, List>("parabolas")) {
    SCOPED_TRACE(testing::PrintToString(y));
    List found(5);
    quad(found[0], found[1], found[2], found[3], found[4], y[0], y[1], y[2]);
    for (size_t index = 0; index < found.size(); ++index)
      EXPECT_NEAR(found[index], expected[index], 1e-12) << index;
  }
}

// By hand: 20:13:20 of the day before is 0.1574 days before midnight.
TEST(DayOffset, FractionOfTheUtcDay) {
  EXPECT_DOUBLE_EQ(dayOffset(86400 * 20000.0 + 21600), 0.25);
  EXPECT_NEAR(dayOffset(-100000), 72800 / 86400.0 - 1, 1e-12);
  EXPECT_DOUBLE_EQ(dayOffset(-86400), -1);
}

TEST(Lengths, WholeHoursAndMinutes) {
  for (const auto& [seconds, hours, minutes] :
       {std::tuple{3599, 0, 59}, {3600, 1, 0}, {59929, 16, 38}, {86400, 24, 0}, {-1, -1, 59}}) {
    EXPECT_EQ(hourFromSeconds(seconds), hours) << seconds;
    EXPECT_EQ(minuteFromSeconds(seconds), minutes) << seconds;
  }
}

}  // namespace
