#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Platform/Support/VirtualTime.h"

/// The cases of a section of this folder's table.
template <typename... Fields>
auto casesOf(const std::string& section) {
  return casesIn<Fields...>("VelmoraTime/Astronomy/AstronomyTests.txt", section);
}

/// Seconds since 1970 of a text as `utc` reads it.
inline double secondsAt(std::string_view text) { return utc(text).timeIntervalSince1970(); }

inline NSTimeZone zoneNamed(std::string_view name) {
  return NSTimeZone::timeZoneWithName(name).value();
}

/// A place of the table.
struct Place {
  explicit Place(std::string_view name) {
    for (const auto& [known, zoneName, north, east] :
         casesOf<std::string, std::string, double, double>("places")) {
      if (known != name) continue;
      zone = zoneNamed(zoneName);
      latitude = north;
      longitude = east;
    }
    EXPECT_NE(latitude, 0) << name;
  }

  /// Noon of a calendar date.
  NSDate noonOf(const std::string& date) const {
    const NSDate noon = utc(date + " 12:00");
    return noon.dateByAddingTimeInterval(-zone.secondsFromGMTForDate(noon));
  }

  NSTimeZone zone = zoneNamed("UTC");
  double latitude = 0;
  double longitude = 0;
};

inline void setSystemZone(std::string_view name) { NSTimeZone::setSystemTimeZone(zoneNamed(name)); }

/// Tests in UTC with a present instant of their own, 2024-06-21 12:00 at first.
class AstronomyTest : public testing::Test, protected VirtualTime {
 protected:
  AstronomyTest() : VirtualTime(secondsAt("2024-06-21 12:00")) {}
};

/// Compares an event with what the table holds: a time, or one of the words "up", "down", "none"
/// for the markers given.
inline void expectEvent(double value, const std::string& expected, double tolerance,
                        double markerUp, double markerDown, double markerNone) {
  if (expected == "up") {
    EXPECT_EQ(value, markerUp);
  } else if (expected == "down") {
    EXPECT_EQ(value, markerDown);
  } else if (expected == "none") {
    EXPECT_EQ(value, markerNone);
  } else {
    EXPECT_NEAR(value, secondsAt(expected), tolerance) << expected;
    EXPECT_EQ(value, static_cast<int64_t>(value)) << "a whole number of seconds";
  }
}
