// Zones by name, against published facts and against another reader of the same files.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Platform/Foundation/Zones/TimeZonePlace.h"
#include "Platform/Foundation/Zones/TimeZoneRules.h"
#include "Tests/Platform/Support/Files.h"

namespace {

NSTimeZone zoneNamed(std::string_view name) {
  const auto zone = NSTimeZone::timeZoneWithName(name);
  if (!zone) throw std::runtime_error("the system has no zone " + std::string(name));
  return *zone;
}

struct Change {
  const char* zone;
  const char* moment;  ///< UTC, the first second of the new offset.
  int before;
  int after;
};

// Government announcements, as the news file of the tz database quotes them. All are past, so no
// later edition of the database changes them.
TEST(ZoneChanges, HaveBothSides) {
  for (const auto& [name, moment, before, after] :
       {Change{"Europe/Berlin", "2024-03-31 01:00:00", 3600, 7200},
        Change{"Europe/Berlin", "2024-10-27 01:00:00", 7200, 3600},
        Change{"America/New_York", "2007-03-11 07:00:00", -18000, -14400},
        Change{"Asia/Kathmandu", "1985-12-31 18:30:00", 19800, 20700},
        Change{"Australia/Lord_Howe", "2024-10-05 15:30:00", 37800, 39600},
        Change{"Pacific/Apia", "2011-12-30 10:00:00", -36000, 50400},
        Change{"Europe/Dublin", "2024-10-27 01:00:00", 3600, 0},
        Change{"Africa/Cairo", "2023-04-27 22:00:00", 7200, 10800}}) {
    const NSTimeZone zone = zoneNamed(name);
    const NSDate date = utc(moment);
    EXPECT_EQ(zone.secondsFromGMTForDate(date.dateByAddingTimeInterval(-0.25)), before) << name;
    EXPECT_EQ(zone.secondsFromGMTForDate(date), after) << name;
  }
}

// Another reader of the same files: any difference is a fault of one of the two. Readings of the
// wall clock that are skipped are taken by the clocks before the jump, repeated ones the first
// time.
TEST(ZoneFiles, AgreeWithAnotherReader) {
  const std::string command =
      std::string(PLATFORM_TEST_PYTHON) + " " + PLATFORM_TEST_FOLDER + "/make-zone-samples";
  const LibraryHandle<FILE, pclose> output(popen(command.c_str(), "r"));
  ASSERT_NE(output, nullptr);
  char name[64];
  char side[8];
  long long seconds = 0;
  int offset = 0;
  NSTimeZone zone = zoneNamed("UTC");
  int samples = 0;
  int faults = 0;
  while (std::fscanf(output.get(), "%63s %7s %lld %d", name, side, &seconds, &offset) == 4) {
    ++samples;
    if (zone.name() != name) zone = zoneNamed(name);
    const bool local = std::string_view(side) == "local";
    const auto period =
        local ? zone.rules().periodAtLocal(seconds) : zone.rules().periodAt(seconds);
    if (period.offset == offset) continue;
    ADD_FAILURE() << name << " " << side << " " << seconds << ": " << period.offset
                  << " instead of " << offset;
    ASSERT_LT(++faults, 20);
  }
  EXPECT_GT(samples, 10'000);
}

TEST(ZoneNames, OnlyZonesOfTheFolderAreFound) {
  for (const char* name : {"", "Nowhere/Atlantis", "Europe", "../zoneinfo/UTC", "Europe/../UTC",
                           "/usr/share/zoneinfo/UTC", "zone.tab", "EST5EDT,M3.2.0,M11.1.0"}) {
    EXPECT_FALSE(NSTimeZone::timeZoneWithName(name).has_value()) << name;
  }
  EXPECT_TRUE(NSTimeZone::timeZoneWithName("America/Argentina/ComodRivadavia").has_value());
  EXPECT_TRUE(NSTimeZone::timeZoneWithAbbreviation("UTC").has_value());
  EXPECT_FALSE(NSTimeZone::timeZoneWithAbbreviation("CEST").has_value());
}

TEST(ZoneNames, AnInstantBeyondAllRulesIsNoTrap) {
  const NSTimeZone zone = zoneNamed("Europe/Berlin");
  for (const double seconds : {1e300, -1e300, 8.9e15, -8.9e15, std::nan(""), HUGE_VAL}) {
    const int offset = zone.secondsFromGMTForDate(NSDate::dateWithTimeIntervalSince1970(seconds));
    EXPECT_LE(std::abs(offset), 26 * 3600) << seconds;
  }
}

struct Setting {
  std::optional<std::string> variable;
  const char* name;
  int winter;  ///< On 2024-01-01.
  int summer;  ///< On 2024-07-01.
};

class SystemZone : public testing::Test {
 protected:
  void expect(const Setting& setting) {
    const EnvironmentVariable variable("TZ", setting.variable);
    NSTimeZone::resetSystemTimeZone();
    const NSTimeZone zone = NSTimeZone::systemTimeZone();
    const std::string label = setting.variable.value_or("(unset)");
    EXPECT_EQ(zone.name(), setting.name) << label;
    EXPECT_EQ(zone.secondsFromGMTForDate(utc("2024-01-01 00:00:00")), setting.winter) << label;
    EXPECT_EQ(zone.secondsFromGMTForDate(utc("2024-07-01 00:00:00")), setting.summer) << label;
  }

  ~SystemZone() override { NSTimeZone::resetSystemTimeZone(); }
};

TEST_F(SystemZone, FollowsTheVariable) {
  const std::string rule = "EST5EDT,M3.2.0,M11.1.0";
  for (const Setting& setting :
       {Setting{":Europe/Paris", "Europe/Paris", 3600, 7200},
        Setting{"Asia/Tokyo", "Asia/Tokyo", 32400, 32400},
        Setting{rule, rule.c_str(), -18000, -14400},
        Setting{"<+0330>-3:30", "<+0330>-3:30", 12600, 12600}, Setting{"", "UTC", 0, 0},
        Setting{"EST5EDT,M13.2.0,M11.1.0", "UTC", 0, 0},
        Setting{"../../etc/passwd", "UTC", 0, 0}}) {
    expect(setting);
  }
}

TEST_F(SystemZone, FollowsAFile) {
  const std::filesystem::path folder = freshFolder();
  const std::filesystem::path link = folder / "localtime";
  const EnvironmentVariable file("VELMORA_LOCALTIME_FILE", link.string());
  std::filesystem::create_symlink("/usr/share/zoneinfo/Asia/Kathmandu", link);
  expect({std::nullopt, "Asia/Kathmandu", 20700, 20700});
  expect({":" + link.string(), "Asia/Kathmandu", 20700, 20700});
  std::filesystem::remove(link);
  expect({std::nullopt, "UTC", 0, 0});
  std::filesystem::copy_file("/usr/share/zoneinfo/Europe/Berlin", link);
  expect({std::nullopt, "Local", 3600, 7200});
  std::filesystem::remove(link);
  std::filesystem::create_directory(link);
  expect({std::nullopt, "UTC", 0, 0});
}

TEST_F(SystemZone, IsKeptUntilTheReset) {
  const EnvironmentVariable before("TZ", "Asia/Tokyo");
  NSTimeZone::resetSystemTimeZone();
  ASSERT_EQ(NSTimeZone::systemTimeZone().name(), "Asia/Tokyo");
  const EnvironmentVariable after("TZ", "Asia/Kolkata");
  EXPECT_EQ(NSTimeZone::systemTimeZone().name(), "Asia/Tokyo");
  NSTimeZone::resetSystemTimeZone();
  EXPECT_EQ(NSTimeZone::systemTimeZone().name(), "Asia/Kolkata");
}

// An update of the zone files counts from the next reset on, though a zone of the old ones lives.
TEST_F(SystemZone, AResetReadsTheFilesAnew) {
  const std::filesystem::path folder = freshFolder();
  const EnvironmentVariable directory("TZDIR", folder.string());
  std::filesystem::copy_file("/usr/share/zoneinfo/Asia/Tokyo", folder / "Here");
  const NSTimeZone before = zoneNamed("Here");
  std::filesystem::copy_file("/usr/share/zoneinfo/Asia/Kolkata", folder / "Here",
                             std::filesystem::copy_options::overwrite_existing);
  NSTimeZone::resetSystemTimeZone();
  EXPECT_EQ(before.secondsFromGMTForDate(utc("2024-01-01 00:00:00")), 32400);
  EXPECT_EQ(zoneNamed("Here").secondsFromGMTForDate(utc("2024-01-01 00:00:00")), 19800);
  NSTimeZone::resetSystemTimeZone();
}

TEST_F(SystemZone, AnInstalledZoneStands) {
  NSTimeZone::setSystemTimeZone(zoneNamed("Pacific/Apia"));
  NSTimeZone::resetSystemTimeZone();
  EXPECT_EQ(NSTimeZone::systemTimeZone().name(), "Pacific/Apia");
  NSTimeZone::setSystemTimeZone(std::nullopt);
  EXPECT_EQ(NSTimeZone::systemTimeZone().name(), "UTC");
}

// By hand from the coordinates of the tz database: Sydney -3352+15113, Troll -720041+0023206. Old
// names go by its links: Buenos Aires -3436-05827, Hobart -4253+14719, Kolkata +2232+08822.
TEST(TimeZonePlace, IsThatOfThePrincipalCity) {
  struct Case {
    const char* zone;
    double latitude;
    double longitude;
  };
  for (const Case& sample : {Case{"Australia/Sydney", -33.8667, 151.2167},
                             {"Australia/NSW", -33.8667, 151.2167},
                             {"America/Buenos_Aires", -34.6, -58.45},
                             {"Australia/Currie", -42.8833, 147.3167},
                             {"Asia/Calcutta", 22.5333, 88.3667},
                             {"Antarctica/Troll", -72.0114, 2.5350}}) {
    const auto place = placeOfTimeZone(sample.zone);
    ASSERT_TRUE(place) << sample.zone;
    EXPECT_NEAR(place->latitude, sample.latitude, 1e-4) << sample.zone;
    EXPECT_NEAR(place->longitude, sample.longitude, 1e-4) << sample.zone;
  }
  for (const char* zone : {"", "Etc/GMT+5", "No/Where"})
    EXPECT_FALSE(placeOfTimeZone(zone)) << zone;
}

}  // namespace
