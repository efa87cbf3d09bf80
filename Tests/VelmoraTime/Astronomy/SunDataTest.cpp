#include "Targets/VelmoraTime/Classes/SunData.h"

#include "Tests/VelmoraTime/Astronomy/AstronomyTesting.h"

namespace {

SunData recordOf(std::string_view name, const NSDate& date) {
  const Place place(name);
  return calculateSunRiseAndSet(date, place.zone, place.longitude, place.latitude);
}

/// Of noon there.
SunData recordOf(std::string_view name, const std::string& date) {
  return recordOf(name, Place(name).noonOf(date));
}

class SunRecord : public AstronomyTest {};

// A wrong zone offset, theory, threshold or marker.
TEST_F(SunRecord, EventsAgreeWithAnIndependentCalculation) {
  constexpr const char* Keys[] = {"rise-sun",          "set-sun",         "rise-civil",
                                  "set-civil",         "rise-nautical",   "set-nautical",
                                  "rise-astronomical", "set-astronomical"};
  for (const auto& row : fieldsOfCases("VelmoraTime/Astronomy/AstronomyTests.txt", "sun events")) {
    ASSERT_EQ(row.size(), 2 + std::size(Keys));
    const SunData record = recordOf(row[0], row[1]);
    for (size_t index = 0; index < std::size(Keys); ++index) {
      SCOPED_TRACE(row[0] + " " + row[1] + " " + Keys[index]);
      const double missing = index % 2 == 0 ? secondsAt(row[1]) + RiseSetNoRise : RiseSetNoSet;
      // An hour's parabolas are good for half a minute, less where the Sun grazes the horizon.
      expectEvent(record.at(Keys[index]), row[index + 2], 30, RiseSetAlwaysUp, RiseSetAlwaysDown,
                  missing);
    }
  }
}

TEST_F(SunRecord, HasWhatElseIsKnownOfADay) {
  for (const auto& [place, date, key, value, tolerance] :
       casesOf<std::string, std::string, std::string, double, double>("sun records"))
    EXPECT_NEAR(recordOf(place, date).at(key), value, tolerance)
        << place << " " << date << " " << key;
}

// A sunrise that does not happen goes through the record as a time, a sunset as its marker.
TEST_F(SunRecord, NoonAndLengthComeOfRiseAndSet) {
  EXPECT_EQ(recordOf("London", "2024-06-21").size(), 17U);
  for (const auto& [place, date] :
       {std::pair{"London", "2024-06-21"}, {"Tromso", "2024-07-27"}, {"Tromso", "2024-05-16"}}) {
    const SunData record = recordOf(place, std::string(date));
    const double rise = record.at("rise-sun");
    const double set = record.at("set-sun");
    EXPECT_EQ(record.at("daylength"), set - rise) << date;
    if (set != RiseSetNoSet) {
      EXPECT_NEAR(record.at("noon"), (rise + set) / 2, 0.5) << date;
    }
  }
}

TEST_F(SunRecord, LengthsOfDaysAndPolarDates) {
  for (const auto& [place, date, length, tolerance, growth, marker, noon] :
       casesOf<std::string, std::string, double, double, double, std::string, std::string>(
           "day lengths")) {
    SCOPED_TRACE(place + " " + date);
    const SunData record = recordOf(place, date);
    EXPECT_NEAR(record.at("daylength"), length, tolerance);
    EXPECT_NEAR(record.at("daylength") - record.at("daylength-yesterday"), growth, 20);
    if (marker == "-") continue;
    EXPECT_EQ(record.at("rise-sun"), std::stod(marker));
    EXPECT_EQ(record.at("set-sun"), std::stod(marker));
    EXPECT_EQ(record.at("noon"), noon == "none" ? -100000 : secondsAt(noon));
    EXPECT_EQ(record.at("azimuth-rise-sun"), -100000.0);
    EXPECT_EQ(record.at("azimuth-set-sun"), -100000.0);
    EXPECT_EQ(record.at("azimuth-noon") > -99999, noon != "none");
  }
}

// The present instant counts for "now", not the record's date. The altitude moves in steps of 2^-8
// day, 337.5 seconds; the azimuth does not. PyEphem 4.1.4, London: 111.238 and 45.305 at 09:00.
TEST_F(SunRecord, PositionNowMovesInSteps) {
  const auto positionsAt = [&](const std::string& present) {
    clock.setTimeIntervalSince1970(secondsAt(present));
    const SunData record = recordOf("London", utc("2024-06-21 03:00"));
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
  // Near the epoch no term of the centuries may count.
  clock.setTimeIntervalSince1970(secondsAt("2000-01-03 09:00"));
  EXPECT_NEAR(recordOf("London", "2000-01-03").at("azimuth-now"), 138.120, 0.05);
}

// The record is of the date that the zone shows, whatever the machine's own zone and its date.
TEST_F(SunRecord, DateIsTheZonesOwn) {
  const NSDate evening = utc("2025-01-31 23:30");
  for (const char* systemZone : {"UTC", "Pacific/Honolulu", "Pacific/Kiritimati"}) {
    SCOPED_TRACE(systemZone);
    setSystemZone(systemZone);
    // In Kathmandu it is the morning of the 1st: PyEphem's sunrise is 01:05 UTC.
    EXPECT_NEAR(recordOf("Kathmandu", evening).at("rise-sun"), secondsAt("2025-02-01 01:05:30"),
                60);
    // In New York it is still the 31st.
    EXPECT_NEAR(recordOf("NewYork", evening).at("rise-sun"), secondsAt("2025-01-31 12:06:40"), 60);
  }
}

}  // namespace
