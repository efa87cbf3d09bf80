#include "Targets/VelmoraTime/Classes/SunData.h"

#include "Tests/VelmoraTime/Astronomy/AstronomyTesting.h"

namespace {

struct SunCase {
  Place place;
  const char* date;
  const char*
      events[8];  // Rise and set of the Sun, then of civil, nautical, astronomical twilight.
};

SunData recordOf(const Place& place, const NSDate& date) {
  return calculateSunRiseAndSet(date, zoneNamed(place.zone), place.longitude, place.latitude);
}

// PyEphem 4.1.4 (VSOP87), by the almanacs' convention: the centre 50 minutes of arc below a sea
// level horizon; without refraction for the twilights. UTC.
const SunCase SunCases[] = {
    SunCase{London,
            "2024-06-21",
            {"2024-06-21 03:43:15", "2024-06-21 20:21:36", "2024-06-21 02:55:29",
             "2024-06-21 21:09:21", "2024-06-21 01:40:53", "2024-06-21 22:23:55", "up", "up"}},
    SunCase{Sydney,
            "2023-12-22",
            {"2023-12-21 18:41:00", "2023-12-22 09:05:46", "2023-12-21 18:11:50",
             "2023-12-22 09:34:56", "2023-12-21 17:35:56", "2023-12-22 10:10:51",
             "2023-12-21 16:56:36", "2023-12-22 10:50:11"}},
    // A zone of three quarters of an hour since two weeks before.
    SunCase{Kathmandu,
            "1986-01-15",
            {"1986-01-15 01:10:53", "1986-01-15 11:45:20", "1986-01-15 00:45:40",
             "1986-01-15 12:10:34", "1986-01-15 00:16:56", "1986-01-15 12:39:17",
             "1986-01-14 23:48:40", "1986-01-15 13:07:33"}},
    SunCase{Ushuaia,
            "2037-06-21",
            {"2037-06-21 12:58:55", "2037-06-21 20:11:25", "2037-06-21 12:13:40",
             "2037-06-21 20:56:40", "2037-06-21 11:26:17", "2037-06-21 21:44:03",
             "2037-06-21 10:42:02", "2037-06-21 22:28:18"}},
    // The sunset of the night before falls after midnight: it is this date's.
    SunCase{Reykjavik,
            "2024-06-20",
            {"2024-06-20 02:55:08", "2024-06-20 00:03:37", "up", "up", "up", "up", "up", "up"}},
    SunCase{Tromso, "2024-06-21", {"up", "up", "up", "up", "up", "up", "up", "up"}},
    // The last sunrise before, and the first sunset after, the midnight sun.
    SunCase{
        Tromso, "2024-05-16", {"2024-05-15 23:25:24", "none", "up", "up", "up", "up", "up", "up"}},
    SunCase{
        Tromso, "2024-07-27", {"none", "2024-07-27 21:53:25", "up", "up", "up", "up", "up", "up"}},
    SunCase{Longyearbyen,
            "2024-12-21",
            {"down", "down", "down", "down", "2024-12-21 09:58:51", "2024-12-21 11:52:40",
             "2024-12-21 06:37:24", "2024-12-21 15:14:08"}},
    SunCase{Syowa,
            "2024-09-23",
            {"2024-09-23 03:02:17", "2024-09-23 15:27:36", "2024-09-23 02:03:49",
             "2024-09-23 16:26:31", "2024-09-23 00:49:39", "2024-09-23 17:41:41",
             "2024-09-22 23:12:10", "2024-09-23 19:22:44"}}};

class SunRecord : public AstronomyTest {};

// A wrong zone offset, theory, threshold or marker.
TEST_F(SunRecord, EventsAgreeWithAnIndependentCalculation) {
  constexpr const char* Keys[] = {"rise-sun",          "set-sun",         "rise-civil",
                                  "set-civil",         "rise-nautical",   "set-nautical",
                                  "rise-astronomical", "set-astronomical"};
  for (const auto& [place, date, events] : SunCases) {
    const SunData record = recordOf(place, noonIn(zoneNamed(place.zone), date));
    for (size_t index = 0; index < std::size(Keys); ++index) {
      SCOPED_TRACE(std::string(place.name) + " " + date + " " + Keys[index]);
      const double missing = index % 2 == 0 ? secondsAt(date) + RiseSetNoRise : RiseSetNoSet;
      // An hour's parabolas are good for half a minute, less where the Sun grazes the horizon.
      expectEvent(record.at(Keys[index]), events[index], 30, RiseSetAlwaysUp, RiseSetAlwaysDown,
                  missing);
    }
  }
}

// What the rest of the record makes of an ordinary day. The azimuths are those of a hand
// calculation, cos A = (sin d - sin p sin h) / (cos p cos h) with d = 23.437, p = 51.5, h = -0.833;
// the altitude is 90 - 51.5 + 23.437.
TEST_F(SunRecord, OrdinaryDay) {
  const SunData record = recordOf(London, dateAt("2024-06-21 12:00"));
  EXPECT_EQ(record.size(), 17U);
  EXPECT_NEAR(record.at("azimuth-rise-sun"), 48.9, 0.1);
  EXPECT_NEAR(record.at("azimuth-set-sun"), 311.1, 0.1);
  EXPECT_NEAR(record.at("azimuth-noon"), 180, 0.1);
  EXPECT_NEAR(record.at("altitude-noon"), 61.94, 0.02);
  const double rise = record.at("rise-sun");
  const double set = record.at("set-sun");
  EXPECT_NEAR(record.at("noon"), (rise + set) / 2, 0.5);
  EXPECT_EQ(record.at("daylength"), set - rise);
}

// Winter days grow: the two lengths must not be of the same date.
TEST_F(SunRecord, YesterdayIsTheDateBefore) {
  const SunData today = recordOf(NewYork, noonIn(zoneNamed(NewYork.zone), "2025-02-01"));
  // PyEphem 4.1.4: 10 h 08 m 24 s, and 2 m 13 s more than the day before.
  EXPECT_NEAR(today.at("daylength"), 36504, 40);
  EXPECT_NEAR(today.at("daylength") - today.at("daylength-yesterday"), 133, 20);
}

// The same in the polar night, for the civil twilights of both dates.
TEST_F(SunRecord, YesterdayOfThePolarNight) {
  const SunData record = recordOf(Tromso, noonIn(zoneNamed(Tromso.zone), "2024-12-05"));
  EXPECT_EQ(record.at("rise-sun"), RiseSetAlwaysDown);
  // PyEphem 4.1.4: 18197 s, and 295 s more on the day before.
  EXPECT_NEAR(record.at("daylength"), 18197, 40);
  EXPECT_NEAR(record.at("daylength-yesterday") - record.at("daylength"), 295, 20);
}

// The date with a sunset and no sunrise: the missing rise goes through the record as a time.
TEST_F(SunRecord, SetWithoutRise) {
  const SunData record = recordOf(Tromso, noonIn(zoneNamed(Tromso.zone), "2024-07-27"));
  const double missing = secondsAt("2024-07-27") - 100000;
  const double set = record.at("set-sun");
  EXPECT_EQ(record.at("rise-sun"), missing);
  EXPECT_NEAR(record.at("noon"), (missing + set) / 2, 0.5);
  EXPECT_EQ(record.at("daylength"), set - missing);
  // PyEphem 4.1.4 at 20:13:20, between the day before and the date that it is taken for.
  EXPECT_NEAR(record.at("azimuth-rise-sun"), 323.15, 0.1);
}

TEST_F(SunRecord, RiseWithoutSet) {
  const SunData record = recordOf(Tromso, noonIn(zoneNamed(Tromso.zone), "2024-05-16"));
  EXPECT_EQ(record.at("set-sun"), -100001);
  EXPECT_EQ(record.at("noon"), -100000);
  EXPECT_EQ(record.at("azimuth-set-sun"), -100000.0);
  EXPECT_EQ(record.at("azimuth-noon"), -100000.0);
  EXPECT_EQ(record.at("daylength"), -100001 - record.at("rise-sun"));
  // 100000 seconds before 1970 are 20:13:20 of a day, one day early: here in the evening of the
  // 15th, when the Sun is 2.53 degrees high in the north-west (PyEphem 4.1.4).
  EXPECT_NEAR(record.at("altitude-noon"), 2.53, 0.2);
}

struct PolarCase {
  Place place;
  const char* date;
  double event, noon, daylength;
  double tolerance;
};

// Markers of a polar date, and what stands in for the length of its day. The civil spans are
// PyEphem's.
TEST_F(SunRecord, PolarDates) {
  const PolarCase cases[] = {
      // 12:00 on the zone's clock, two hours ahead of UTC.
      {Tromso, "2024-06-21", -100002, secondsAt("2024-06-21 10:00"), 86400, 0},
      // Polar night with civil twilight, 08:31:32 to 12:53:22, and without.
      {Tromso, "2024-12-21", -100004, -100000, 15710, 40},
      {Longyearbyen, "2024-12-21", -100004, -100000, 0, 0},
  };
  for (const PolarCase& polar : cases) {
    SCOPED_TRACE(std::string(polar.place.name) + " " + polar.date);
    const SunData record = recordOf(polar.place, noonIn(zoneNamed(polar.place.zone), polar.date));
    EXPECT_EQ(record.at("rise-sun"), polar.event);
    EXPECT_EQ(record.at("set-sun"), polar.event);
    EXPECT_EQ(record.at("noon"), polar.noon);
    EXPECT_NEAR(record.at("daylength"), polar.daylength, polar.tolerance);
    EXPECT_NEAR(record.at("daylength-yesterday"), polar.daylength, polar.tolerance + 20);
    EXPECT_EQ(record.at("azimuth-rise-sun"), -100000.0);
    EXPECT_EQ(record.at("azimuth-set-sun"), -100000.0);
    EXPECT_EQ(record.at("azimuth-noon") > -99999, polar.noon > 0);
  }
}

// At Rothera the Sun dips below the horizon from 04:04 to 04:37 UTC (PyEphem 4.1.4), within one
// step of the search and nowhere else: such a pair is not announced.
TEST_F(SunRecord, PairWithinOneStepIsNotAnnounced) {
  const SunData record = recordOf(Rothera, noonIn(zoneNamed(Rothera.zone), "2024-11-29"));
  EXPECT_EQ(record.at("rise-sun"), RiseSetAlwaysUp);
  EXPECT_EQ(record.at("set-sun"), RiseSetAlwaysUp);
}

// The present instant counts for "now", not the record's date. The altitude moves in steps of 2^-8
// day, 337.5 seconds; the azimuth does not. PyEphem 4.1.4, London: 111.238 and 45.305 at 09:00.
TEST_F(SunRecord, PositionNowMovesInSteps) {
  const auto positionsAt = [&](const std::string& present) {
    setPresent(present);
    const SunData record = recordOf(London, dateAt("2024-06-21 03:00"));
    return std::pair(record.at("altitude-now"), record.at("azimuth-now"));
  };
  // 09:00 is the 96th step; its neighbourhood reaches from 08:57:11.25 to 09:02:48.75.
  const auto early = positionsAt("2024-06-21 08:57:12");
  const auto late = positionsAt("2024-06-21 09:02:48");
  const auto next = positionsAt("2024-06-21 09:02:49");
  EXPECT_NEAR(positionsAt("2024-06-21 09:00").second, 111.238, 0.05);
  EXPECT_NEAR(early.first, 45.305, 0.02);
  EXPECT_EQ(early.first, late.first);
  EXPECT_NE(early.second, late.second);
  EXPECT_GT(next.first, late.first + 0.5);
}

// The record is of the date that the zone shows, whatever the machine's own zone and its date.
TEST_F(SunRecord, DateIsTheZonesOwn) {
  const NSDate evening = dateAt("2025-01-31 23:30");
  for (const char* systemZone : {"UTC", "Pacific/Honolulu", "Pacific/Kiritimati"}) {
    SCOPED_TRACE(systemZone);
    setSystemZone(systemZone);
    // In Kathmandu it is the morning of the 1st: PyEphem's sunrise is 01:05 UTC.
    EXPECT_NEAR(recordOf(Kathmandu, evening).at("rise-sun"), secondsAt("2025-02-01 01:05:30"), 60);
    // In New York it is still the 31st.
    EXPECT_NEAR(recordOf(NewYork, evening).at("rise-sun"), secondsAt("2025-01-31 12:06:40"), 60);
  }
}

// Beyond 32 bits a time becomes the smallest number, which shows as an absent event, and never
// wraps into another century.
TEST_F(SunRecord, TimesOutside32Bits) {
  const SunData late = recordOf(London, dateAt("2040-06-21 12:00"));
  EXPECT_EQ(late.at("rise-sun"), -2147483648.0);
  EXPECT_EQ(late.at("noon"), -100000);
  const SunData last = recordOf(London, dateAt("2038-01-18 12:00"));
  EXPECT_NEAR(last.at("rise-sun"), secondsAt("2038-01-18 08:00"), 300);
}

}  // namespace
