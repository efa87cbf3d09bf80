// Zones by name, against published facts and against another reader of the same files.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>

#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Platform/Foundation/Zones/TimeZonePlace.h"
#include "Platform/Foundation/Zones/TimeZoneRules.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"

namespace fs = std::filesystem;

namespace {

constexpr auto Table = "Platform/Foundation/TimeZoneTests.txt";

NSTimeZone zoneNamed(std::string_view name) { return NSTimeZone::timeZoneWithName(name).value(); }

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
    // At the end of the second: a part of one counts to it, before 1970 as well.
    const auto moment = NSDate::dateWithTimeIntervalSince1970(static_cast<double>(seconds) + 0.75);
    const int found = std::string_view(side) == "local" ? zone.rules().periodAtLocal(seconds).offset
                                                        : zone.secondsFromGMTForDate(moment);
    if (found == offset) continue;
    ADD_FAILURE() << name << " " << side << " " << seconds << ": " << found << ", not " << offset;
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

/// The system's zone under a `TZ`: its name and its offsets on 2024-01-01 and 2024-07-01.
std::string systemZone(const std::optional<std::string>& setting) {
  const EnvironmentVariable variable("TZ", setting);
  NSTimeZone::resetSystemTimeZone();
  const NSTimeZone zone = NSTimeZone::systemTimeZone();
  const auto offsetAt = [&](const char* moment) {
    return " " + std::to_string(zone.secondsFromGMTForDate(utc(moment)));
  };
  return zone.name() + offsetAt("2024-01-01 00:00:00") + offsetAt("2024-07-01 00:00:00");
}

TEST(SystemZone, FollowsTheVariable) {
  for (const auto& [variable, name, winter, summer] :
       casesIn<std::string, std::string, std::string, std::string>(Table, "variables"))
    EXPECT_EQ(systemZone(variable), name + " " + winter + " " + summer) << variable;
}

TEST(SystemZone, FollowsAFile) {
  const fs::path folder = freshFolder();
  const fs::path link = folder / "localtime";
  const EnvironmentVariable file("VELMORA_LOCALTIME_FILE", link.string());
  fs::create_symlink("/usr/share/zoneinfo/Asia/Kathmandu", link);
  EXPECT_EQ(systemZone(std::nullopt), "Asia/Kathmandu 20700 20700");
  EXPECT_EQ(systemZone(":" + link.string()), "Asia/Kathmandu 20700 20700");
  fs::remove(link);
  EXPECT_EQ(systemZone(std::nullopt), "UTC 0 0") << "missing";
  fs::copy_file("/usr/share/zoneinfo/Europe/Berlin", link);
  EXPECT_EQ(systemZone(std::nullopt), "Local 3600 7200");
  fs::remove(link);
  fs::create_directory(link);
  EXPECT_EQ(systemZone(std::nullopt), "UTC 0 0") << "a folder";
}

TEST(SystemZone, AnInstalledZoneStands) {
  NSTimeZone::setSystemTimeZone(zoneNamed("Pacific/Apia"));
  NSTimeZone::resetSystemTimeZone();
  EXPECT_EQ(NSTimeZone::systemTimeZone().name(), "Pacific/Apia");
  NSTimeZone::setSystemTimeZone(std::nullopt);
  EXPECT_EQ(NSTimeZone::systemTimeZone().name(), "UTC");
}

TEST(TimeZonePlace, IsThatOfThePrincipalCity) {
  for (const auto& [zone, latitude, longitude] :
       casesIn<std::string, double, double>(Table, "places")) {
    const auto place = placeOfTimeZone(zone);
    ASSERT_TRUE(place) << zone;
    EXPECT_NEAR(place->latitude, latitude, 1e-4) << zone;
    EXPECT_NEAR(place->longitude, longitude, 1e-4) << zone;
  }
  for (const char* zone : {"", "Etc/GMT+5", "No/Where"})
    EXPECT_FALSE(placeOfTimeZone(zone)) << zone;
}

}  // namespace
