#include "Targets/VelmoraTime/Classes/MoonMath.h"

#include <cmath>

#include "Targets/VelmoraTime/Classes/JulianDate.h"
#include "Targets/VelmoraTime/Classes/MoonPhases.h"
#include "Targets/VelmoraTime/LunarSeries.h"
#include "Tests/VelmoraTime/Astronomy/AstronomyTesting.h"

namespace {

TEST(JulianDate, PublishedExamplesBothWays) {
  for (const auto& [fields, julianDate] : casesOf<std::vector<int32_t>, double>("julian dates")) {
    SCOPED_TRACE(julianDate);
    EXPECT_NEAR(ucttoj(fields[0], fields[1] - 1, fields[2], fields[3], fields[4], fields[5]),
                julianDate, 1e-6);
    std::vector<int32_t> found(6);
    jyear(found[0], found[1], found[2], julianDate);
    jhms(found[3], found[4], found[5], julianDate);
    EXPECT_EQ(found, fields);
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

struct Sky {
  double azimuth = 0;
  double altitude = 0;
  double distance = 0;
};

/// At a year, month, day, hour and minute.
Sky skyOf(const std::vector<int32_t>& t, int32_t zoneMinutes = 0, double longitude = 0,
          double latitude = 0) {
  Sky sky;
  fetchMoonSkyData(t[0], t[1], t[2], t[3], t[4], zoneMinutes, sky.azimuth, sky.altitude,
                   sky.distance, longitude, latitude);
  return sky;
}

TEST(MoonSky, AgreesWithAnIndependentCalculation) {
  for (const auto& [moment, azimuth, altitude, distance] :
       casesOf<std::vector<int32_t>, double, double, double>("moon sky")) {
    SCOPED_TRACE(moment[0]);
    const Sky sky = skyOf(moment);
    EXPECT_NEAR(sky.azimuth, azimuth, 0.02);
    EXPECT_NEAR(sky.altitude, altitude, 0.02);
    EXPECT_NEAR(sky.distance, distance, 12);
    EXPECT_EQ(sky.distance, std::round(sky.distance));
  }
}

// Zone minutes make the time of day UTC, and longitude counts westward here: the same instant seen
// 90 degrees further west is six hours of sidereal time earlier in the Moon's day.
TEST(MoonSky, ZoneMinutesAndWesternLongitude) {
  const Sky sky = skyOf({2024, 12, 15, 6, 30}, 0, 20, 45);
  const Sky shifted = skyOf({2024, 12, 15, 12, 15}, -345, 20, 45);
  EXPECT_NEAR(sky.azimuth, shifted.azimuth, 1e-6);
  EXPECT_NEAR(sky.altitude, shifted.altitude, 1e-6);

  // The Moon is 80.7 degrees west of the meridian at 0 (altitude -9.3 with declination 28): west of
  // there it stands high, east of there deep.
  EXPECT_GT(skyOf({2024, 12, 15, 6, 30}, 0, 90).altitude, 55);
  EXPECT_LT(skyOf({2024, 12, 15, 6, 30}, 0, -90).altitude, -55);
}

// MiniMoon keeps to 5 minutes of arc in longitude and 1 in latitude, nutation apart.
TEST(MoonPosition, AgreesWithPublishedPositions) {
  for (const auto& [modifiedJulianDate, east, north] :
       casesOf<double, double, double>("moon positions")) {
    SCOPED_TRACE(modifiedJulianDate);
    double declination = 0, rightAscension = 0;
    moonPosition(declination, rightAscension, (modifiedJulianDate - 51544.5) / 36525);
    EXPECT_NEAR(rightAscension, east / 15, 0.1 / 15);
    EXPECT_NEAR(declination, north, 0.05);
  }
}

// The 1980 elements keep to half a degree.
TEST(Phase, IlluminationAndAge) {
  for (const auto& [julianDate, illuminated, days] :
       casesOf<double, double, double>("illumination")) {
    SCOPED_TRACE(julianDate);
    double illumination = 0, age = 0, distance = 0, diameter = 0, sunDistance = 0, sunDiameter = 0;
    const double fraction =
        phase(illumination, age, distance, diameter, sunDistance, sunDiameter, julianDate);
    EXPECT_NEAR(illumination, illuminated, 0.005);
    EXPECT_NEAR(std::remainder(age - days, 29.53058868), 0, 0.05);
    EXPECT_NEAR(age, fraction * 29.53058868, 1e-9);
    // Apparent diameters of both bodies at any time.
    EXPECT_NEAR(diameter, 0.52, 0.05);
    EXPECT_NEAR(sunDiameter, 0.533, 0.01);
    EXPECT_NEAR(sunDistance, 149.6e6, 2.6e6);
    // An ellipse without perturbations, good to two percent; Meeus' example has 368409.7 km.
    if (julianDate == 2448724.5) {
      EXPECT_NEAR(distance, 368410, 7400);
    }
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
