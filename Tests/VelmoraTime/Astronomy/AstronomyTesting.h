#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>

#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Time/SystemClock.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"

/// Seconds since 1970 of "2024-06-21 03:43:15", "2024-06-21 03:43" or "2024-06-21", UTC.
inline double secondsAt(const std::string& text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  const int read =
      std::sscanf(text.c_str(), "%d-%d-%d %d:%d:%d", &year, &month, &day, &hour, &minute, &second);
  EXPECT_GE(read, 3) << text;
  const std::chrono::sys_days date = std::chrono::year(year) / month / day;
  return static_cast<double>(date.time_since_epoch().count()) * 86400.0 + hour * 3600 +
         minute * 60 + second;
}

inline NSDate dateAt(const std::string& text) {
  return NSDate::dateWithTimeIntervalSince1970(secondsAt(text));
}

inline NSTimeZone zoneNamed(std::string_view name) {
  const auto zone = NSTimeZone::timeZoneWithName(name);
  EXPECT_TRUE(zone.has_value()) << name;
  return zone.value_or(*NSTimeZone::timeZoneWithAbbreviation("UTC"));
}

/// Tests with a system zone and a present instant of their own; UTC and 2024-06-21 12:00 at first.
class AstronomyTest : public testing::Test {
 protected:
  AstronomyTest() {
    setSystemZone("UTC");
    SystemClock::install(&clock_);
  }
  ~AstronomyTest() override {
    SystemClock::install(nullptr);
    NSTimeZone::setSystemTimeZone(std::nullopt);
  }

  static void setSystemZone(std::string_view name) {
    NSTimeZone::setSystemTimeZone(zoneNamed(name));
  }
  void setPresent(const std::string& text) { clock_.setTimeIntervalSince1970(secondsAt(text)); }

  /// Noon of a calendar date in a zone.
  static NSDate noonIn(const NSTimeZone& zone, const std::string& date) {
    const NSDate noon = dateAt(date + " 12:00");
    return noon.dateByAddingTimeInterval(-zone.secondsFromGMTForDate(noon));
  }

 private:
  ManualClock clock_{secondsAt("2024-06-21 12:00")};
};

/// A place of the test tables.
struct Place {
  const char* name;
  const char* zone;
  double latitude;
  double longitude;
};

inline constexpr Place London{"London", "Europe/London", 51.5, -0.1278};
inline constexpr Place Sydney{"Sydney", "Australia/Sydney", -33.8688, 151.2093};
inline constexpr Place Kathmandu{"Kathmandu", "Asia/Kathmandu", 27.7172, 85.324};
inline constexpr Place NewYork{"New York", "America/New_York", 40.7128, -74.006};
inline constexpr Place Honolulu{"Honolulu", "Pacific/Honolulu", 21.3069, -157.8583};
inline constexpr Place Ushuaia{"Ushuaia", "America/Argentina/Ushuaia", -54.8019, -68.303};
inline constexpr Place Reykjavik{"Reykjavik", "Atlantic/Reykjavik", 64.1466, -21.9426};
inline constexpr Place Tromso{"Tromso", "Europe/Oslo", 69.6492, 18.9553};
inline constexpr Place Longyearbyen{"Longyearbyen", "Arctic/Longyearbyen", 78.2232, 15.6267};
inline constexpr Place Rothera{"Rothera", "Antarctica/Rothera", -67.5681, -68.1278};
inline constexpr Place Syowa{"Syowa", "Antarctica/Syowa", -69.0041, 39.5817};

/// Compares an event with what a table holds: a time in UTC, or one of the words "up", "down",
/// "none" for the markers given.
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
