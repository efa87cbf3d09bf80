// The map of day and night, by its pixels and by what is drawn on it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/VelmoraTime/Map/LightMapDescription.h"
#include "Targets/VelmoraTime/Map/NightOutline.h"
#include "Targets/VelmoraTime/Map/StatInterfaceLightMap.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

class LightMap : public testing::Test {
 protected:
  /// Pictures are missing, so that nothing but day and night is to be seen.
  LightMap() : LightMap(freshFolder().string()) {}
  explicit LightMap(const std::string& pictures) : support("VELMORA_SUPPORT_DIR", pictures) {
    map.load();
  }

  /// How much of each point is night, by the green of day and night.
  std::vector<std::vector<double>> night() {
    BitmapSurface surface({320, 160}, 1);
    surface.context().flip(160);
    const NSCurrentGraphicsContext current(surface.context());
    map.displayRect(map.bounds());
    std::vector<std::vector<double>> rows(160, std::vector<double>(320));
    for (int y = 0; y < 160; ++y) {
      const double day = 0.722 + (0.427 - 0.722) * (y + 0.5) / 160;
      for (int x = 0; x < 320; ++x) {
        rows[static_cast<size_t>(y)][static_cast<size_t>(x)] =
            (surface.pixelAt(x, y).greenComponent() - day) / (0.0862745 - day);
      }
    }
    return rows;
  }
  std::vector<std::vector<double>> nightAt(double moment) {
    time.clock.setTimeIntervalSince1970(moment);
    map.update();
    return night();
  }

  std::vector<DrawingRecord> drawnAt(double moment) {
    time.clock.setTimeIntervalSince1970(moment);
    map.update();
    RecordingGraphicsContext context;
    const NSCurrentGraphicsContext current(context);
    map.cityLayer()->displayRect(map.bounds());
    return context.records();
  }

  SimulatedTime time;
  const EnvironmentVariable support;
  StatInterfaceLightMap_Time map{NSMakeRect(0, 0, 320, 160)};
};

class LightMapPictures : public LightMap {
 protected:
  LightMapPictures() : LightMap(VELMORA_SOURCE_DIR "/Resources") {}
};

// The Sun's altitudes are PyEphem's, without refraction: all are so high or low that the soft edge
// does not reach there.
TEST_F(LightMap, IsDarkWhereTheSunIsDown) {
  const struct {
    double moment;
    double latitude, longitude;
    double altitude;
  } cases[] = {{utc(2026, 1, 1), 35.7, 139.7, 20},
               {utc(2026, 1, 1), 51.5, -0.1, -62},
               {utc(2026, 1, 1), 85, 30, -27},
               {utc(2026, 1, 1), -85, -100, 24},
               {utc(2026, 1, 1), -10, 179.8, 77},
               {utc(2026, 1, 1), 10, -179.8, 57},
               {utc(2026, 3, 21, 6), -12, -77, -74},
               {utc(2026, 3, 21, 6), 35.7, 139.7, 33},
               {utc(2026, 6, 21, 12), 85, 30, 28},
               {utc(2026, 6, 21, 12), -85, -100, -24},
               {utc(2026, 6, 21, 12), -10, 179.8, -77},
               {utc(2026, 6, 21, 12), 10, -179.8, -57},
               {utc(2026, 6, 21, 23, 59), 21.3, -158, 70},
               {utc(2026, 6, 21, 23, 59), -33.9, 18.4, -71},
               {utc(2026, 9, 15, 18), 35.7, 139.7, -29},
               {utc(2026, 9, 15, 18), 21.3, -158, 23},
               {utc(2026, 12, 21, 3), 85, 30, -25},
               {utc(2026, 12, 21, 3), -12, -77, -43}};
  for (const auto& [moment, latitude, longitude, altitude] : cases) {
    const double share = nightAt(moment)[static_cast<size_t>((90 - latitude) / 180 * 160)]
                                        [static_cast<size_t>((longitude + 180) / 360 * 320)];
    EXPECT_NEAR(share, altitude < 0 ? 1 : 0, 0.03) << moment << ' ' << latitude << ' ' << longitude;
  }
}

// An edge blurred by 5 points changes by 0.08 a point at most, two of them that meet at a corner by
// 0.16; a seam or a gap by a half or more. The left and the right side are neighbours.
TEST_F(LightMap, HasNoSeamsAndNoGaps) {
  for (double moment = utc(2026, 1, 1); moment < utc(2027, 1, 1); moment += 86400 * 9.37) {
    const auto rows = nightAt(moment);
    for (size_t y = 0; y < 160; ++y) {
      for (size_t x = 0; x < 320; ++x) {
        ASSERT_NEAR(rows[y][x], rows[y][(x + 1) % 320], 0.11) << moment << ' ' << x << ' ' << y;
        ASSERT_NEAR(rows[y][x], rows[std::min<size_t>(159, y + 1)][x], 0.11) << moment << ' ' << y;
      }
    }
  }
}

TEST_F(LightMap, SlidesByAPointEachFourMinutesAndAHalf) {
  for (const auto& [hour, minute, second, offset] :
       {std::tuple{0, 0, 0, 0}, {0, 4, 29, 0}, {0, 4, 30, -1}, {12, 0, 0, -160}, {23, 59, 0, -319}})
    EXPECT_EQ(nightOffset(320, hour, minute, second), offset) << hour << ':' << minute;
  const auto before = nightAt(utc(2026, 5, 1, 0, 4, 29));
  const auto behind = nightAt(utc(2026, 5, 1, 0, 4, 30));
  for (size_t x = 1; x < 320; ++x)
    ASSERT_NEAR(before[70][x], behind[70][x - 1], 0.006) << x;
}

// Kiritimati is 14 hours ahead of UTC, Pago Pago 11 behind; 2028 is a leap year, and in Iran the
// year begins in March. One row is dark all over, the others have no night.
TEST_F(LightMap, TakesTheRowOfTheDayHere) {
  const struct {
    const char* locale;
    const char* zone;
    double moment;
    size_t row;
  } cases[] = {{"en_GB", "Pacific/Kiritimati", utc(2026, 12, 31, 9, 59), 364},
               {"fa_IR", "Pacific/Kiritimati", utc(2026, 12, 31, 10), 0},
               {"fa_IR", "Pacific/Pago_Pago", utc(2027, 1, 1, 10, 59), 364},
               {"en_GB", "Pacific/Pago_Pago", utc(2027, 1, 1, 11), 0},
               {"en_GB", "UTC", utc(2028, 3, 1), 60},
               {"en_GB", "UTC", utc(2028, 12, 31), 364}};
  SunlightMapPaths_Time paths;
  const std::vector<std::string_view> clear(366, "0,0,0");
  for (const auto& [locale, zone, moment, row] : cases) {
    auto rows = clear;
    rows[row] = "0,0,1024,0,0,0,1024,0,1024,512,1024,0,1024,512,0,512,1024,512,0,512,0,0,0,512,0,0";
    paths.setPaths(rows);
    map.setPaths(paths);
    NSLocale::setCurrentLocale(locale);
    NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName(zone));
    EXPECT_NEAR(nightAt(moment)[80][160], 1, 0.01) << zone << ' ' << moment;
    paths.setPaths(clear);
    map.setPaths(paths);
    EXPECT_NEAR(nightAt(moment)[80][160], 0, 0.01);
  }
}

TEST_F(LightMap, ADamagedRowLeavesTheNightAsItWas) {
  const auto before = nightAt(utc(2026, 5, 1, 6));
  SunlightMapPaths_Time paths;
  for (const auto& rows : {std::vector<std::string_view>(366, "0,0"), {366, ""}, {}}) {
    paths.setPaths(rows);
    map.setPaths(paths);
    EXPECT_EQ(nightAt(utc(2026, 5, 1, 12)), before);
  }
}

TEST_F(LightMapPictures, PinsAllCitiesWithItsOwnInFront) {
  map.cityLayer()->setPlaces([] {
    return std::vector<LightMapPlace>{
        {1, 0.5, 0.5}, {7, 0.25, 0.25}, {2, 1, 0}, {7, 0.1, 0.1}, {3, 0, 1}};
  });
  map.cityLayer()->setCurrentCity({7, 0.75, 0.25});
  std::vector<std::pair<std::string, NSPoint>> pins;
  for (const auto& record : drawnAt(utc(2026, 5, 1, 10)))
    pins.emplace_back(record.name, record.rect.origin);
  ASSERT_EQ(pins.size(), 6U);
  EXPECT_EQ(pins[0], (std::pair{std::string("map-location"), NSPoint{154, 74}}));
  EXPECT_EQ(pins[1].second, (NSPoint{314, -6})) << "longitude 180, at the north pole";
  EXPECT_EQ(pins[2].second, (NSPoint{-6, 154})) << "longitude -180";
  EXPECT_EQ(pins[3], (std::pair{std::string("map-location-selected"), NSPoint{234, 34}}));
  EXPECT_EQ(pins[4].first + pins[5].first, "map-icon-sunmap-icon-moon");
}

TEST_F(LightMapPictures, SunAndMoonComeInAgainAtTheOtherEdge) {
  for (const auto& [degX, degY, x, y] : {std::tuple{0.0, 0.0, 152.0, 72.0},
                                         {90, 45, 72, 32},
                                         {180, -90, 312, 152},
                                         {179.0, 90.0, -8 + 320 / 360.0, -8.0},
                                         {270, 0, 232, 72}}) {
    EXPECT_NEAR(map.cityLayer()->elementPosition(degX, degY).x, x, 1e-9) << degX;
    EXPECT_NEAR(map.cityLayer()->elementPosition(degX, degY).y, y, 1e-9) << degY;
  }
  std::map<std::string, int> wrapped;
  for (double moment = utc(2026, 5, 1); moment < utc(2026, 5, 2); moment += 60) {
    std::map<std::string, std::vector<double>> places;
    for (const auto& record : drawnAt(moment))
      places[record.name].push_back(record.rect.origin.x);
    for (const auto* icon : {"map-icon-sun", "map-icon-moon"}) {
      const auto& x = places[icon];
      ASSERT_FALSE(x.empty()) << icon;
      const bool isWhole = x[0] >= 0 && x[0] <= 304;
      ASSERT_EQ(x.size(), isWhole ? 1U : 2U) << icon << moment;
      if (isWhole) continue;
      ASSERT_NEAR(std::abs(x[0] - x[1]), 320, 1e-9);
      ++wrapped[icon];
    }
  }
  // 16 points of 320 are 72 minutes of a day; the Moon falls behind a little.
  EXPECT_NEAR(wrapped["map-icon-sun"], 72, 1);
  EXPECT_NEAR(wrapped["map-icon-moon"], 74, 3);
}

// PyEphem; the shores are those of a map.
TEST_F(LightMap, IsDescribed) {
  const struct {
    double moment;
    double latitude, longitude;
    const char* region;
  } cases[] = {{utc(2026, 6, 21, 12), 23.44, 0.45, "Africa"},
               {utc(2026, 12, 21, 3), -23.44, 134.47, "Australia"},
               {utc(2026, 3, 20, 16), 0.02, -58.15, "South America"},
               {utc(2026, 9, 23, 23), -0.37, -166.95, "the Pacific Ocean"}};
  for (const auto& [moment, latitude, longitude, region] : cases) {
    const NSDate date = NSDate::dateWithTimeIntervalSince1970(moment);
    EXPECT_NEAR(subSolarPlace(date).latitude, latitude, 0.1);
    EXPECT_NEAR(subSolarPlace(date).longitude, longitude, 0.1);
    EXPECT_EQ(lightMapDescription(date, "Tokyo", false),
              std::string("Day and night map: the Sun is over ") + region + ", night in Tokyo");
  }
}

}  // namespace
