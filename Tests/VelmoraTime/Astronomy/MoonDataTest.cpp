#include "Targets/VelmoraTime/Classes/MoonData.h"

#include "Targets/VelmoraTime/Classes/SunMath.h"
#include "Tests/VelmoraTime/Astronomy/AstronomyTesting.h"

namespace {

class MoonEvents : public AstronomyTest {};

TEST_F(MoonEvents, AgreeWithAnIndependentCalculation) {
  for (const auto& [name, date, rise, set] :
       casesOf<std::string, std::string, std::string, std::string>("moon events")) {
    SCOPED_TRACE(name + " " + date);
    const Place place(name);
    const MoonData record =
        calculateMoonRiseAndSet(place.noonOf(date), place.zone, place.longitude, place.latitude);
    // A Moon that stays up has risen for good but sets "down": the two markers differ.
    expectEvent(record.at("rise"), rise, 60, RiseSetAlwaysUp, RiseSetAlwaysDown,
                secondsAt(date) + RiseSetNoRise);
    expectEvent(record.at("set"), set, 60, RiseSetAlwaysDown, RiseSetAlwaysDown, RiseSetNoSet);
  }
}

class MoonPhases : public AstronomyTest {};

// The formulae give dynamical time, a minute or so ahead of UTC, and keep to two or three minutes.
TEST_F(MoonPhases, PublishedDates) {
  for (const auto& [zone, moment, phase, time] :
       casesOf<std::string, std::string, int, std::string>("next phases")) {
    SCOPED_TRACE(zone + " " + moment);
    setSystemZone(zone);
    const auto phases = nextPhases(1, utc(moment));
    ASSERT_EQ(phases.size(), 1U);
    EXPECT_EQ(phases[0].phase, phase);
    EXPECT_EQ(phases[0].time, static_cast<int64_t>(phases[0].time));
    if (time != "-") {
      EXPECT_NEAR(phases[0].time, secondsAt(time), 300);
    }
  }
}

// From any day of a lunation, so from any phase: the next eight come in turn, a week apart, and
// none is left out at the turn of the lunation.
TEST_F(MoonPhases, NextPhasesFollowEachOther) {
  EXPECT_TRUE(nextPhases(-5, utc("2024-03-01")).empty());
  double previousFirst = 0;
  for (int day = 0; day < 60; ++day) {
    SCOPED_TRACE(day);
    const NSDate date = utc("2024-03-01 06:00").dateByAddingTimeInterval(day * 86400.0);
    const auto phases = nextPhases(8, date);
    ASSERT_EQ(phases.size(), 8U);
    EXPECT_LT(phases[0].time, date.timeIntervalSince1970() + 8.5 * 86400);
    for (size_t i = 1; i < phases.size(); ++i) {
      EXPECT_EQ(phases[i].phase, (phases[i - 1].phase + 2) % 8);
      EXPECT_EQ(phases[i].age, 0.0F);
    }
    EXPECT_GE(phases[0].time, previousFirst);
    previousFirst = phases[0].time;
  }
}

int32_t nameAt(const NSDate& date) {
  double age = 0;
  double illumination = 0;
  return currentPhase(age, illumination, date);
}

TEST_F(MoonPhases, NamesAroundPrincipalPhases) {
  using List = std::vector<int>;
  for (const char* zone : {"UTC", "America/Los_Angeles"}) {
    setSystemZone(zone);
    for (const auto& [time, names] : casesOf<std::string, List>("names around phases")) {
      List found;
      for (const double hours : {-3.0, 1.0, 4.5, 12.0})
        found.push_back(nameAt(utc(time).dateByAddingTimeInterval(hours * 3600)));
      EXPECT_EQ(found, names) << time << " in " << zone;
    }
  }
  setSystemZone("UTC");
  for (const auto& [time, index] : casesOf<std::string, int>("names before the mean new moon"))
    EXPECT_EQ(nameAt(utc(time)), index) << time;
}

// The machine's zone must cancel out, also in an hour that its clocks skip: half an hour before the
// first moment they had jumped in New York. PyEphem 4.1.4; the age is the elongation of 0.89
// degrees in parts of a month, the place geocentric at latitude 0 and longitude 0.
TEST_F(MoonPhases, AreThoseOfTheMomentInAnyZone) {
  for (const char* zone : {"UTC", "America/New_York", "Asia/Kathmandu"}) {
    SCOPED_TRACE(zone);
    setSystemZone(zone);
    double age = 0, illumination = 0;
    currentPhase(age, illumination, utc("2024-03-10 10:30"));
    EXPECT_NEAR(illumination, 0.0004, 0.005);
    EXPECT_NEAR(age, 0.073, 0.05);
    double altitude = 0, azimuth = 0, distance = 0;
    calculateMoonInfo(utc("2024-12-15 06:30:40"), altitude, azimuth, distance);
    EXPECT_NEAR(altitude, -9.275, 0.02);
    EXPECT_NEAR(azimuth, 298.540, 0.02);
    EXPECT_NEAR(distance, 370035, 12);
  }
}

}  // namespace
