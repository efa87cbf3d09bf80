// The map of day and night, by its pixels and by what is drawn on it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <tuple>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/VelmoraTime/Map/NightOutline.h"
#include "Targets/VelmoraTime/Map/StatInterfaceLightMap.h"
#include "Tests/Platform/Support/CaseTable.h"
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

TEST_F(LightMap, IsDarkWhereTheSunIsDown) {
  for (const auto& [moment, latitude, longitude, altitude] :
       casesIn<NSDate, double, double, double>("Targets/VelmoraTime/Cases/night.txt")) {
    const auto rows = nightAt(moment.timeIntervalSince1970());
    const double share = rows[static_cast<size_t>((90 - latitude) / 180 * 160)]
                             [static_cast<size_t>((longitude + 180) / 360 * 320)];
    EXPECT_NEAR(share, altitude < 0 ? 1 : 0, 0.03)
        << moment.description() << ' ' << latitude << ' ' << longitude;
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

// One row is dark all over, the others have no night, and then all are damaged.
TEST_F(LightMap, TakesTheRowOfTheDayHere) {
  const auto nightWith = [this](const std::vector<std::string_view>& rows, const NSDate& moment) {
    SunlightMapPaths_Time paths;
    paths.setPaths(rows);
    map.setPaths(paths);
    return nightAt(moment.timeIntervalSince1970())[80][160];
  };
  for (const auto& [locale, zone, moment, row] : casesIn<std::string, std::string, NSDate, size_t>(
           "Targets/VelmoraTime/Cases/night-rows.txt")) {
    NSLocale::setCurrentLocale(locale);
    NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName(zone));
    std::vector<std::string_view> rows(366, "0,0,0");
    EXPECT_NEAR(nightWith(rows, moment), 0, 0.01);
    rows[row] = "0,0,1024,0,0,0,1024,0,1024,512,1024,0,1024,512,0,512,1024,512,0,512,0,0,0,512,0,0";
    EXPECT_NEAR(nightWith(rows, moment), 1, 0.01) << zone << ' ' << moment.description();
    for (const auto& damaged : {std::vector<std::string_view>(366, "0,0"), {366, ""}, {}})
      EXPECT_NEAR(nightWith(damaged, moment), 1, 0.01) << "the night stays as it was";
  }
}

TEST_F(LightMapPictures, PinsAllCitiesWithItsOwnInFront) {
  map.cityLayer()->setPlaces([] {
    return std::vector<LightMapPlace>{{1, 0.5, 0.5}, {7, 0.25, 0.25}, {2, 1, 0}, {3, 0, 1}};
  });
  map.cityLayer()->setCurrentCity({7, 0.75, 0.25});
  std::ostringstream drawn;
  for (const auto& record : drawnAt(utc(2026, 5, 1, 10)))
    if (record.name.starts_with("map-location"))
      drawn << record.name << ' ' << record.rect.origin.x << ' ' << record.rect.origin.y << ' ';
  EXPECT_EQ(drawn.str(),
            "map-location 154 74 map-location 314 -6 map-location -6 154 "
            "map-location-selected 234 34 ");
}

// 16 points of 320 are 72 minutes of a day; the Moon falls behind a little.
TEST_F(LightMapPictures, SunAndMoonComeInAgainAtTheOtherEdge) {
  EXPECT_EQ(map.cityLayer()->elementPosition(90, 45), (NSPoint{72, 32}));
  EXPECT_EQ(map.cityLayer()->elementPosition(180, -90), (NSPoint{312, 152}));
  std::map<std::string, int> wrapped;
  for (double moment = utc(2026, 5, 1); moment < utc(2026, 5, 2); moment += 60) {
    std::map<std::string, std::vector<double>> places;
    for (const auto& record : drawnAt(moment))
      places[record.name].push_back(record.rect.origin.x);
    for (const auto* icon : {"map-icon-sun", "map-icon-moon"}) {
      const auto& x = places[icon];
      ASSERT_FALSE(x.empty()) << icon;
      ASSERT_EQ(x.size(), x[0] >= 0 && x[0] <= 304 ? 1U : 2U) << icon << moment;
      if (x.size() == 1) continue;
      ASSERT_NEAR(std::abs(x[0] - x[1]), 320, 1e-9);
      ++wrapped[icon];
    }
  }
  EXPECT_NEAR(wrapped["map-icon-sun"], 72, 1);
  EXPECT_NEAR(wrapped["map-icon-moon"], 74, 3);
}

}  // namespace
