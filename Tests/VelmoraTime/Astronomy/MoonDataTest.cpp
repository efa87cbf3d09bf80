#include "Targets/VelmoraTime/Classes/MoonData.h"

#include "Targets/VelmoraTime/Classes/SunMath.h"
#include "Tests/VelmoraTime/Astronomy/AstronomyTesting.h"

namespace {

struct MoonCase {
  Place place;
  const char* date;
  const char* rise;
  const char* set;
};

// PyEphem 4.1.4, by the almanacs' convention: the upper limb, 34 minutes of arc of refraction,
// seen from sea level. UTC.
const MoonCase MoonCases[] = {
    {London, "2024-06-01", "2024-06-01 01:27:45", "2024-06-01 13:50:07"},
    // The set before the rise stays the date's own.
    {London, "2024-06-19", "2024-06-19 18:15:40", "2024-06-19 01:25:38"},
    {London, "2024-06-09", "2024-06-09 05:56:23", "none"},
    {London, "2024-06-25", "none", "2024-06-25 07:16:55"},
    {Sydney, "2026-03-01", "2026-03-01 07:18:53", "2026-02-28 16:50:04"},
    {Honolulu, "1999-08-10", "1999-08-10 15:24:27", "1999-08-11 04:49:17"},
    // Rises 25 minutes after a midnight that is no whole hour.
    {Kathmandu, "2024-06-30", "2024-06-29 18:40:24", "2024-06-30 07:48:13"},
    {Tromso, "2024-12-10", "2024-12-10 11:09:34", "2024-12-10 00:17:45"},
    {Tromso, "2024-12-15", "up", "up"},
    {Tromso, "2024-12-28", "down", "down"},
    // Up for fifty minutes within one step of the search: not announced.
    {Syowa, "2030-07-28", "down", "down"}};

class MoonEvents : public AstronomyTest {};

TEST_F(MoonEvents, AgreeWithAnIndependentCalculation) {
  for (const auto& [place, date, rise, set] : MoonCases) {
    SCOPED_TRACE(std::string(place.name) + " " + date);
    const NSTimeZone zone = zoneNamed(place.zone);
    const MoonData record =
        calculateMoonRiseAndSet(noonIn(zone, date), zone, place.longitude, place.latitude);
    // A Moon that stays up has risen for good but sets "down": the two markers differ.
    expectEvent(record.at("rise"), rise, 60, RiseSetAlwaysUp, RiseSetAlwaysDown,
                secondsAt(date) + RiseSetNoRise);
    expectEvent(record.at("set"), set, 60, RiseSetAlwaysDown, RiseSetAlwaysDown, RiseSetNoSet);
  }
}

class MoonPhases : public AstronomyTest {};

struct PrincipalPhase {
  const char* time;
  int32_t phase;
};

// UTC to the minute as the almanacs print them, recomputed with PyEphem 4.1.4; most are eclipses.
constexpr PrincipalPhase PublishedPhases[] = {
    {"1970-01-07 20:35", 0}, {"1999-08-11 11:08", 0}, {"2000-01-21 04:40", 4},
    {"2012-11-13 22:08", 0}, {"2022-11-08 11:02", 4}, {"2024-06-14 05:18", 2},
    {"2024-06-28 21:53", 6}, {"2026-08-12 17:37", 0}, {"2044-01-21 23:47", 6},
};

// The formulae give dynamical time, a minute or so ahead of UTC, and keep to two or three minutes.
TEST_F(MoonPhases, PublishedDates) {
  for (const auto& [time, phase] : PublishedPhases) {
    SCOPED_TRACE(time);
    const auto phases = nextPhases(1, dateAt(time).dateByAddingTimeInterval(-3 * 86400));
    ASSERT_EQ(phases.size(), 1U);
    EXPECT_EQ(phases[0].phase, phase);
    EXPECT_NEAR(phases[0].time, secondsAt(time), 300);
    EXPECT_EQ(phases[0].time, static_cast<int64_t>(phases[0].time));
  }
}

// From any day of a lunation, so from any phase: the next eight come in turn, a week apart, and
// none is left out at the turn of the lunation.
TEST_F(MoonPhases, NextPhasesFollowEachOther) {
  EXPECT_TRUE(nextPhases(-5, dateAt("2024-03-01")).empty());
  double previousFirst = 0;
  for (int day = 0; day < 60; ++day) {
    SCOPED_TRACE(day);
    const NSDate date = dateAt("2024-03-01 06:00").dateByAddingTimeInterval(day * 86400.0);
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

// The list is cut on the system zone's clock: hours after the last quarter of 2024 June 28, 21:53,
// Tokyo still lists it; hours before the first quarter of June 14, 05:18, Los Angeles has dropped
// it. The times themselves do not move. PyEphem 4.1.4.
TEST_F(MoonPhases, NextPhasesNearThePresent) {
  const double lastQuarter = secondsAt("2024-06-28 21:53");
  const double firstQuarter = secondsAt("2024-06-14 05:18");
  struct {
    const char* zone;
    double moment;
    int32_t first;
  } const cases[] = {
      {"UTC", lastQuarter + 5 * 3600, 0},
      {"Asia/Tokyo", lastQuarter + 5 * 3600, 6},
      {"UTC", firstQuarter - 3 * 3600, 2},
      {"America/Los_Angeles", firstQuarter - 3 * 3600, 4},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.zone);
    setSystemZone(c.zone);
    const auto phases = nextPhases(1, NSDate::dateWithTimeIntervalSince1970(c.moment));
    ASSERT_EQ(phases.size(), 1U);
    EXPECT_EQ(phases[0].phase, c.first);
    if (c.first != 0 && c.first != 4) {
      EXPECT_NEAR(phases[0].time, c.first == 2 ? firstQuarter : lastQuarter, 300);
    }
  }
}

// Around a principal phase the name steps forward, holds for under two hours, falls back to the
// name before, and moves on after seven. PyEphem 4.1.4; an hour is 0.0014 of a cycle.
TEST_F(MoonPhases, NamesAroundPrincipalPhases) {
  struct {
    const char* time;
    int32_t before, at, gap, after;
  } const cases[] = {
      {"2024-03-10 09:00", 7, 0, 0, 1},
      {"2024-06-14 05:18", 1, 2, 1, 3},
      {"2025-03-14 06:55", 3, 4, 3, 5},
      {"2024-06-28 21:53", 5, 6, 5, 7},
  };
  for (const char* zone : {"UTC", "America/Los_Angeles"}) {
    setSystemZone(zone);
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(c.time) + " " + zone);
      const auto indexAfter = [&](double hours) {
        double age = 0, illumination = 0;
        return currentPhase(age, illumination,
                            dateAt(c.time).dateByAddingTimeInterval(hours * 3600));
      };
      EXPECT_EQ(indexAfter(-3), c.before);
      EXPECT_EQ(indexAfter(1), c.at);
      EXPECT_EQ(indexAfter(4.5), c.gap);
      EXPECT_EQ(indexAfter(12), c.after);
    }
  }
}

// Lunations are counted from the mean new moon. One that comes before its mean moment, like that of
// 2024 August 4, 11:13, by 10.3 hours, counts to the lunation before until then, whose first
// quarter is long past and gives the name.
TEST_F(MoonPhases, NameBetweenTrueAndMeanNewMoon) {
  struct {
    const char* time;
    int32_t index;
  } const cases[] = {{"2024-08-04 08:00", 7},
                     {"2024-08-04 12:30", 2},
                     {"2024-08-04 20:00", 2},
                     {"2024-08-04 22:30", 1}};
  for (const auto& [time, index] : cases) {
    double age = 0, illumination = 0;
    EXPECT_EQ(currentPhase(age, illumination, dateAt(time)), index) << time;
  }
  // The list of phases is not led astray: its next one is the first quarter of August 12.
  const auto phases = nextPhases(1, dateAt("2024-08-04 12:30"));
  ASSERT_EQ(phases.size(), 1U);
  EXPECT_NEAR(phases[0].time, secondsAt("2024-08-12 15:19"), 300);
}

// Age and illumination do not depend on the machine's zone, nor on an hour that its clocks skip:
// half an hour before this moment they had jumped in New York. PyEphem 4.1.4; the age is the
// elongation of 0.89 degrees in parts of a month.
TEST_F(MoonPhases, AgeAndIllumination) {
  for (const char* zone : {"UTC", "America/New_York"}) {
    setSystemZone(zone);
    double age = 0, illumination = 0;
    currentPhase(age, illumination, dateAt("2024-03-10 10:30"));
    EXPECT_NEAR(illumination, 0.0004, 0.005) << zone;
    EXPECT_NEAR(age, 0.073, 0.05) << zone;
  }
}

// PyEphem 4.1.4, geocentric, at latitude 0 and longitude 0. The machine's zone must cancel out.
TEST_F(MoonPhases, MoonInfo) {
  for (const char* zone : {"UTC", "Asia/Kathmandu"}) {
    setSystemZone(zone);
    double altitude = 0, azimuth = 0, distance = 0;
    calculateMoonInfo(dateAt("2024-12-15 06:30:40"), altitude, azimuth, distance);
    EXPECT_NEAR(altitude, -9.275, 0.02);
    EXPECT_NEAR(azimuth, 298.540, 0.02);
    EXPECT_NEAR(distance, 370035, 12);
  }
}

}  // namespace
