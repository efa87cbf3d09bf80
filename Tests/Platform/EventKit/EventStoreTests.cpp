// What the store gives of folders of calendar files.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>

#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Tests/Platform/EventKit/EventListing.h"
#include "Tests/Platform/Support/Files.h"

namespace {

namespace fs = std::filesystem;

const fs::path Folder = fs::path(PLATFORM_TEST_FOLDER) / "EventKit";

// Another implementation's answers (scripts/make-event-table): a difference is a fault of one of
// the two in recurrences, exceptions, zones or lengths.
TEST(EventStore, AgreesWithAnotherImplementation) {
  std::map<std::string, std::multiset<std::string>> expected;
  std::ifstream table(Folder / "expected-events.tsv");
  for (std::string line; std::getline(table, line);) {
    const size_t zone = line.find('\t');
    expected[line.substr(0, zone)].insert(line.substr(line.find('\t', zone + 1) + 1));
  }
  ASSERT_EQ(expected.size(), 2U);
  for (const auto& [zone, lines] : expected) {
    NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName(zone));
    const EKEventStore store(placesIn(Folder / "Calendars"));
    std::multiset<std::string> found;
    std::set<std::string> identifiers;
    const auto events = eventsBetween(store, "2026-01-01 00:00:00", "2027-01-01 00:00:00");
    for (const auto& event : events) {
      found.insert(lineOf(*event));
      EXPECT_TRUE(identifiers.insert(event->eventIdentifier()).second) << event->eventIdentifier();
    }
    for (const std::string& line : lines)
      EXPECT_EQ(found.count(line), lines.count(line)) << zone << " expected " << line;
    for (const std::string& line : found)
      EXPECT_EQ(found.count(line), lines.count(line)) << zone << " found " << line;
  }
}

}  // namespace
