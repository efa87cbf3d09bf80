#include "Targets/VelmoraTime/Classes/MoonMath.h"

#include <cmath>

#include "Targets/VelmoraTime/Classes/JulianDate.h"
#include "Targets/VelmoraTime/Classes/MoonPhases.h"
#include "Targets/VelmoraTime/LunarSeries.h"
#include "Tests/VelmoraTime/Astronomy/AstronomyTesting.h"

namespace {

struct JulianCase {
  int32_t year, month, day, hour, minute, second;
  double julianDate;
};

// Meeus, "Astronomical Algorithms", ch. 7, examples and the table of page 62; the second last is
// the last Julian, the last the first Gregorian day.
constexpr JulianCase JulianCases[] = {
    {1957, 10, 4, 19, 26, 24, 2436116.31}, {1988, 1, 27, 0, 0, 0, 2447187.5},
    {837, 4, 10, 7, 12, 0, 2026871.8},     {-1000, 7, 12, 12, 0, 0, 1356001.0},
    {-4712, 1, 1, 12, 0, 0, 0.0},          {1582, 10, 4, 0, 0, 0, 2299159.5},
    {1582, 10, 15, 0, 0, 0, 2299160.5},
};

TEST(JulianDate, PublishedExamplesBothWays) {
  for (const JulianCase& c : JulianCases) {
    SCOPED_TRACE(c.julianDate);
    EXPECT_NEAR(ucttoj(c.year, c.month - 1, c.day, c.hour, c.minute, c.second), c.julianDate, 1e-6);
    int32_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    jyear(year, month, day, c.julianDate);
    jhms(hour, minute, second, c.julianDate);
    EXPECT_EQ(year, c.year);
    EXPECT_EQ(month, c.month);
    EXPECT_EQ(day, c.day);
    EXPECT_EQ(hour * 3600 + minute * 60 + second, c.hour * 3600 + c.minute * 60 + c.second);
  }
  // The nearest second of the last half second is hour 24 of the same day.
  int32_t hour = 0, minute = 0, second = 0;
  jhms(hour, minute, second, 2451544.5 - 0.3 / 86400);
  EXPECT_EQ(hour * 3600 + minute * 60 + second, 86400);
}

// Meeus, "Astronomical Algorithms", ch. 47, worked example: 1992 April 12, 0h TD.
TEST(LunarSeries, WorkedExample) {
  const LunarPeriodicTerms terms = lunarPeriodicTerms({.elongation = 113.842304,
                                                       .sunAnomaly = 97.643514,
                                                       .moonAnomaly = 5.150833,
                                                       .latitudeArgument = 219.889721,
                                                       .meanLongitude = 134.290182,
                                                       .a1 = 109.57,
                                                       .a2 = 123.78,
                                                       .a3 = 229.53,
                                                       .eccentricity = 1.000194});
  // The arguments are printed to a millionth of a degree: the sums agree to a unit or two.
  EXPECT_NEAR(terms.longitude, -1127527, 2);
  EXPECT_NEAR(terms.latitude, -3229126, 2);
  EXPECT_NEAR(terms.distance, -16590875, 4);
}

// Rows with twice the Sun's anomaly count by the square of the eccentricity. By hand: at M = 45
// degrees and all else 0 the six of table 47.A give -2236 - 2069 - 2048 - 713 - 700 - 323 = -8089,
// the two of table 47.B -302 - 107 = -409, and a square's second difference is twice that.
TEST(LunarSeries, SquareOfTheEccentricity) {
  const auto termsAt = [](double eccentricity) {
    LunarArguments arguments{};
    arguments.sunAnomaly = 45;
    arguments.eccentricity = eccentricity;
    return lunarPeriodicTerms(arguments);
  };
  const LunarPeriodicTerms none = termsAt(0), once = termsAt(1), twice = termsAt(2);
  EXPECT_NEAR(twice.longitude - 2 * once.longitude + none.longitude, 2 * -8089, 1e-6);
  EXPECT_NEAR(twice.latitude - 2 * once.latitude + none.latitude, 2 * -409, 1e-6);
}

struct SkyCase {
  int32_t year, month, day, hour, minute;
  double azimuth, altitude, distance;
};

// PyEphem 4.1.4, geocentric, as from latitude 0, longitude 0; the first is the worked example,
// whose distance is 368409.7 km. UTC stands for dynamical time: half a second of arc in a second.
TEST(MoonSky, AgreesWithAnIndependentCalculation) {
  const SkyCase cases[] = {
      {1992, 4, 12, 0, 0, 285.039, 23.512, 368410},
      {2024, 4, 8, 18, 20, 277.939, -4.688, 359806},
      {2030, 11, 17, 21, 45, 78.858, -27.493, 394934},
      {2024, 12, 15, 6, 30, 298.540, -9.275, 370035},
  };
  for (const SkyCase& c : cases) {
    SCOPED_TRACE(c.year);
    double azimuth = 0, altitude = 0, distance = 0;
    fetchMoonSkyData(c.year, c.month, c.day, c.hour, c.minute, 0, azimuth, altitude, distance, 0,
                     0);
    EXPECT_NEAR(azimuth, c.azimuth, 0.02);
    EXPECT_NEAR(altitude, c.altitude, 0.02);
    EXPECT_NEAR(distance, c.distance, 12);
    EXPECT_EQ(distance, std::round(distance));
  }
}

// Zone minutes make the time of day UTC, and longitude counts westward here: the same instant seen
// 90 degrees further west is six hours of sidereal time earlier in the Moon's day.
TEST(MoonSky, ZoneMinutesAndWesternLongitude) {
  double azimuth = 0, altitude = 0, distance = 0;
  double shiftedAzimuth = 0, shiftedAltitude = 0, shiftedDistance = 0;
  fetchMoonSkyData(2024, 12, 15, 6, 30, 0, azimuth, altitude, distance, 20, 45);
  fetchMoonSkyData(2024, 12, 15, 12, 15, -345, shiftedAzimuth, shiftedAltitude, shiftedDistance, 20,
                   45);
  EXPECT_NEAR(azimuth, shiftedAzimuth, 1e-6);
  EXPECT_NEAR(altitude, shiftedAltitude, 1e-6);

  // The Moon is 80.7 degrees west of the meridian at 0 (altitude -9.3 with declination 28): west of
  // there it stands high, east of there deep.
  fetchMoonSkyData(2024, 12, 15, 6, 30, 0, azimuth, altitude, distance, 90, 0);
  fetchMoonSkyData(2024, 12, 15, 6, 30, 0, azimuth, shiftedAltitude, distance, -90, 0);
  EXPECT_GT(altitude, 55);
  EXPECT_LT(shiftedAltitude, -55);
}

// Apparent positions by PyEphem 4.1.4; the first is Meeus' worked example (134.688470 and 13.768368
// degrees). MiniMoon keeps to 5 minutes of arc in longitude and 1 in latitude, nutation apart.
TEST(MoonPosition, AgreesWithPublishedPositions) {
  struct {
    double modifiedJulianDate, rightAscension, declination;
  } const cases[] = {{48724, 134.688470 / 15, 13.768368},
                     {51564 + 4 / 24.0 + 40 / 1440.0, 8.17075, 19.76263},
                     {60659 + 6.5 / 24, 5.42526, 28.13382}};
  for (const auto& c : cases) {
    double declination = 0, rightAscension = 0;
    moonPosition(declination, rightAscension, (c.modifiedJulianDate - 51544.5) / 36525);
    EXPECT_NEAR(rightAscension, c.rightAscension, 0.1 / 15);
    EXPECT_NEAR(declination, c.declination, 0.05);
  }
}

// Illuminated fraction: Meeus, "Astronomical Algorithms", ch. 48 (1992 April 12: 0.6786), and
// PyEphem 4.1.4; the age is its elongation (110.836, 268.397, 179.996 degrees) in parts of a month.
// The 1980 elements keep to half a degree.
TEST(Phase, IlluminationAndAge) {
  struct {
    double julianDate, illumination, age;
  } const cases[] = {
      {2448724.5, 0.6786, 9.0918},
      {2442595.04653, 0.5153, 22.0165},
      {2451564.69444, 1.0, 14.7649},  // A total lunar eclipse.
      {2460409.26458, 0.0, 29.5306},  // A total solar eclipse.
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.julianDate);
    double illumination = 0, age = 0, distance = 0, diameter = 0, sunDistance = 0, sunDiameter = 0;
    const double fraction =
        phase(illumination, age, distance, diameter, sunDistance, sunDiameter, c.julianDate);
    EXPECT_NEAR(illumination, c.illumination, 0.005);
    EXPECT_NEAR(std::remainder(age - c.age, 29.53058868), 0, 0.05);
    EXPECT_NEAR(age, fraction * 29.53058868, 1e-9);
    // Apparent diameters of both bodies at any time.
    EXPECT_NEAR(diameter, 0.52, 0.05);
    EXPECT_NEAR(sunDiameter, 0.533, 0.01);
    EXPECT_NEAR(sunDistance, 149.6e6, 2.6e6);
    // An ellipse without perturbations, good to two percent; Meeus' example has 368409.7 km.
    if (c.julianDate != 2448724.5) continue;
    EXPECT_NEAR(distance, 368410, 7400);
  }
}

// Meeus, "Astronomical Algorithms", ch. 49: new moon of 1977 February 18, 3h37m42s TD (lunation 954
// from 1900), last quarter of 2044 January 21, 23h48m17s TD (lunation 1781). The older formulae
// keep to some two minutes, the quarters to three.
TEST(TruePhase, WorkedExamples) {
  double written = -1;
  EXPECT_NEAR(truephase(written, 954, 0), 2443192.65118, 2.5 / 1440);
  EXPECT_EQ(written, 0);
  EXPECT_NEAR(truephase(written, 1781, 0.75), 2467636.49186, 3.0 / 1440);
  EXPECT_EQ(written, 0.75);
  // Other fractions give the mean moment.
  EXPECT_NEAR(truephase(written, 954, 0.375) - truephase(written, 954, 0.125), 29.53058868 / 4,
              1e-4);
}

// The search gives the lunation whose mean new moon is the last, from antiquity to far ahead; it
// must also end where it cannot be right.
TEST(LunationStart, LastMeanNewMoon) {
  for (const int32_t year : {-500, 1582, 1900, 2024, 4000}) {
    for (int32_t month = 0; month < 12; ++month) {
      const double julianDate = ucttoj(year, month, 17, 5, 0, 0);
      const double lunation = lunationstart(julianDate);
      // Between a mean new moon and the next one; a few hours for the terms of higher order.
      const double age = julianDate - (2415020.75933 + 29.53058868 * lunation);
      EXPECT_GT(age, -0.2) << year << " " << month;
      EXPECT_LT(age, 29.53058868 + 0.2) << year << " " << month;
    }
  }
}

}  // namespace
