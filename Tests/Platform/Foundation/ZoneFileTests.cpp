// Rules by text, closing rules of files, and files that are damaged.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "Platform/Foundation/Zones/TimeZoneRules.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"

namespace {

constexpr auto Table = "Platform/Foundation/ZoneFileTests.txt";

int64_t seconds(std::string_view moment) {
  return static_cast<int64_t>(utc(moment).timeIntervalSince1970());
}

/// A file of the second version with no changes but one on 2007-01-01, and a rule behind it.
std::string compiledZone(std::string_view rule, const char* change = "into-cet.tzif") {
  return readFile(fixture(change)) + "\n" + std::string(rule) + "\n";
}

TEST(Rules, ChangeTheOffsetByTextAndAtTheEndOfAFile) {
  const auto file = freshFolder() / "zone";
  for (const auto& [rule, moment, before, after] :
       casesIn<std::string, std::string, int, int>(Table, "changes")) {
    // Were the rule not followed, the file's own odd offset would stay.
    writeFile(file, compiledZone(rule, "into-odd-offset.tzif"));
    for (const auto& rules : {TimeZoneRules::fromPosixRule(rule), TimeZoneRules::fromFile(file)}) {
      SCOPED_TRACE(rule + " at " + moment);
      ASSERT_NE(rules, nullptr);
      EXPECT_EQ(rules->periodAt(seconds(moment) - 1).offset, before);
      EXPECT_EQ(rules->periodAt(seconds(moment)).offset, after);
      if (before != after) {
        EXPECT_EQ(rules->periodAt(seconds(moment)).start, seconds(moment));
      }
    }
  }
}

TEST(Rules, AreReadOnlyWhole) {
  for (const auto& [text] : casesIn<std::string>(Table, "no rules"))
    EXPECT_EQ(TimeZoneRules::fromPosixRule(text), nullptr) << text;
  EXPECT_EQ(TimeZoneRules::fromPosixRule(""), nullptr);
}

TEST(Rules, OfAFileKeepWhatWasBeforeItsRule) {
  const auto file = freshFolder() / "zone";
  writeFile(file, compiledZone("CET-1CEST,M3.5.0,M10.5.0/3"));
  const auto rules = TimeZoneRules::fromFile(file);
  ASSERT_NE(rules, nullptr);
  EXPECT_EQ(rules->periodAt(seconds("2006-07-01 00:00:00")).offset, 1234);
  EXPECT_EQ(rules->periodAt(seconds("2006-07-01 00:00:00")).abbreviation, "LMT");
  EXPECT_EQ(rules->periodAt(seconds("2007-02-01 00:00:00")).abbreviation, "CET");
  EXPECT_EQ(rules->periodAt(seconds("2007-07-01 00:00:00")).abbreviation, "CEST");
  EXPECT_TRUE(rules->periodAt(seconds("2007-07-01 00:00:00")).daylight);
}

TEST(DamagedZoneFile, GivesNothingWhereverItIsCut) {
  const auto folder = freshFolder();
  for (const std::string& bytes :
       {compiledZone("CET-1CEST,M3.5.0,M10.5.0/3"), compiledZone("CET-1"),
        readFile("/usr/share/zoneinfo/Europe/Dublin")}) {
    writeFile(folder / "whole", bytes);
    ASSERT_NE(TimeZoneRules::fromFile(folder / "whole"), nullptr);
    for (size_t length = 0; length < bytes.size(); ++length) {
      writeFile(folder / "cut", std::string_view(bytes).substr(0, length));
      ASSERT_EQ(TimeZoneRules::fromFile(folder / "cut"), nullptr) << length;
    }
  }
  EXPECT_EQ(TimeZoneRules::fromFile(folder / "missing"), nullptr);
  EXPECT_EQ(TimeZoneRules::fromFile(folder), nullptr);
}

// Whatever the bytes say: nothing, or rules that answer without a trap.
TEST(DamagedZoneFile, GarbageIsNoTrap) {
  const auto file = freshFolder() / "garbage";
  const std::string whole = readFile("/usr/share/zoneinfo/Africa/Casablanca");
  std::mt19937 random(20240229);
  for (int round = 0; round < 600; ++round) {
    std::string bytes = whole;
    for (int count = 1 + round % 8; count > 0; --count) {
      // The headers and the first numbers decide most.
      const size_t reach = round % 2 == 0 ? bytes.size() : 120;
      bytes[random() % reach] = static_cast<char>(random() % 3 == 0 ? 0xFF : random());
    }
    writeFile(file, bytes);
    const auto rules = TimeZoneRules::fromFile(file);
    if (rules == nullptr) continue;
    for (const int64_t time : {int64_t{-9'000'000'000'000'000}, int64_t{0}, int64_t{1'700'000'000},
                               int64_t{9'000'000'000'000'000}}) {
      const TimeZonePeriod period = rules->periodAt(time);
      ASSERT_LE(period.start, time);
      ASSERT_GT(period.end, time);
      rules->periodAtLocal(time);
    }
  }
}

}  // namespace
