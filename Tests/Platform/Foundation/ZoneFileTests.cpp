// Rules by text, closing rules of files, and files that are damaged.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "Platform/Foundation/Zones/TimeZoneRules.h"
#include "Tests/Platform/Support/Files.h"

namespace {

int64_t seconds(std::string_view moment) {
  return static_cast<int64_t>(utc(moment).timeIntervalSince1970());
}

struct RuleChange {
  const char* rule;
  const char* moment;  ///< UTC, the first second of the new offset.
  int before;
  int after;
};

/// A file of the second version with no changes of its own but one on 2007-01-01 into `offset`.
std::string compiledZone(int32_t offset, const std::string& abbreviation,
                         const std::string& footer) {
  const auto bigEndian = [](int64_t value, int width) {
    std::string bytes;
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) {
      bytes += static_cast<char>(static_cast<uint64_t>(value) >> shift);
    }
    return bytes;
  };
  const auto header = [&](int transitions, int kinds, size_t characters) {
    return "TZif2" + std::string(15, '\0') + std::string(12, '\0') + bigEndian(transitions, 4) +
           bigEndian(kinds, 4) + bigEndian(static_cast<int64_t>(characters), 4);
  };
  const std::string names = std::string("LMT\0", 4) + abbreviation + '\0';
  return header(0, 1, 1) + std::string(6, '\0') +
         std::string(1, '\0') +  // For readers of version 1.
         header(1, 2, names.size()) + bigEndian(seconds("2007-01-01 00:00:00"), 8) + '\1' +
         bigEndian(1234, 4) + std::string(2, '\0') + bigEndian(offset, 4) + std::string(1, '\0') +
         '\4' + names + "\n" + footer + "\n";
}

class Rule : public testing::TestWithParam<RuleChange> {
 protected:
  void expectChange(const TimeZoneRules* rules) {
    ASSERT_NE(rules, nullptr);
    const int64_t moment = seconds(GetParam().moment);
    EXPECT_EQ(rules->periodAt(moment - 1).offset, GetParam().before);
    EXPECT_EQ(rules->periodAt(moment).offset, GetParam().after);
    if (GetParam().before != GetParam().after) {
      EXPECT_EQ(rules->periodAt(moment).start, moment);
    }
  }
};

TEST_P(Rule, ByText) { expectChange(TimeZoneRules::fromPosixRule(GetParam().rule).get()); }

TEST_P(Rule, AtTheEndOfAFile) {
  const auto file = freshFolder() / "zone";
  writeFile(file, compiledZone(-7777, "XXX", GetParam().rule));
  expectChange(TimeZoneRules::fromFile(file).get());
}

// Weekdays from any perpetual calendar: 2050-03-27 and 2500-03-28 are the last Sundays of their
// March, 2050-03-13 and 2500-03-14 the second ones.
// "M3.4.4/50" is 50 hours into the fourth Thursday of March, a Saturday at 2 o'clock: 2050-03-26.
// J60 is 1 March in every year; 59 is 29 February or 1 March. "XXX3EDT4,0/0,J365/23" is summer all
// year: each one ends in the second in which the next begins.
INSTANTIATE_TEST_SUITE_P(
    Years, Rule,
    testing::Values(
        RuleChange{"CET-1CEST,M3.5.0,M10.5.0/3", "2050-03-27 01:00:00", 3600, 7200},
        RuleChange{"CET-1CEST,M3.5.0,M10.5.0/3", "2500-03-28 01:00:00", 3600, 7200},
        RuleChange{"CET-1CEST,M3.5.0,M10.5.0/3", "9999-07-01 00:00:00", 7200, 7200},
        RuleChange{"EST5EDT,M3.2.0,M11.1.0", "2050-03-13 07:00:00", -18000, -14400},
        RuleChange{"EST5EDT", "2500-03-14 07:00:00", -18000, -14400},
        RuleChange{"<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", "2050-10-01 15:30:00", 37800, 39600},
        RuleChange{"EET-2EEST,M3.4.4/50,M10.4.4/50", "2050-03-26 00:00:00", 7200, 10800},
        RuleChange{"<-02>2<-01>,M3.5.0/-1,M10.5.0/0", "2050-03-27 01:00:00", -7200, -3600},
        RuleChange{"AAA0BBB,J60/0,J300/0", "2023-03-01 00:00:00", 0, 3600},
        RuleChange{"AAA0BBB,59/0,300/0", "2023-03-01 00:00:00", 0, 3600},
        RuleChange{"AAA0BBB,59/0,300/0", "2024-02-29 00:00:00", 0, 3600},
        RuleChange{"XXX3EDT4,0/0,J365/23", "2050-01-01 03:00:00", -14400, -14400}));

TEST(RuleText, OnlyWholeRulesAreRead) {
  for (const char* text :
       {"", "A1", "AB1", "ABC", "ABC25", "ABC1:60", "ABC1x", "<ABC1", "ABC1DEF,", "ABC1DEF,M3.2.0",
        "ABC1DEF,M0.2.0,M11.1.0", "ABC1DEF,M3.6.0,M11.1.0", "ABC1DEF,M3.2.7,M11.1.0",
        "ABC1DEF,J0,J10", "ABC1DEF,J366,J10", "ABC1DEF,366,10", "ABC1DEF,M3.2.0/168,M11.1.0",
        "ABC1DEF,M3.2.0,M11.1.0,", "ABC1DEF,M3.2.0,M11.1.0 "}) {
    EXPECT_EQ(TimeZoneRules::fromPosixRule(text), nullptr) << text;
  }
}

TEST(RuleText, AFileKeepsWhatWasBeforeItsRule) {
  const auto file = freshFolder() / "zone";
  writeFile(file, compiledZone(3600, "CET", "CET-1CEST,M3.5.0,M10.5.0/3"));
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
       {compiledZone(3600, "CET", "CET-1CEST,M3.5.0,M10.5.0/3"), compiledZone(3600, "CET", "CET-1"),
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
