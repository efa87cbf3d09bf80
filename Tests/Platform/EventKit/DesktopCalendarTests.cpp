// The calendars of a real Evolution Data Server on a bus of the test's own.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Tests/Platform/EventKit/EventListing.h"
#include "Tests/Support/TestBus.h"

namespace {

namespace fs = std::filesystem;

const fs::path Folder = fs::path(PLATFORM_TEST_FOLDER) / "EventKit";

/// Of two revisions of one time, the service keeps the first that it is given.
bool isForFilesOnly(const std::string& name) { return name == "revisions.ics"; }

class DesktopCalendars : public testing::Test {
 protected:
  DesktopCalendars() {
    setenv("GSETTINGS_BACKEND", "memory", 1);
    bus = std::make_unique<TestBus>("DBUS_SESSION_BUS_ADDRESS");
    NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName("Europe/Berlin"));
  }

  /// What another program does to the calendars.
  static void change(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), (Folder / "desktop-calendar").string());
    const FinishedProcess done = runToEnd(arguments);
    EXPECT_EQ(done.status, 0) << done.errors;
  }

  bool isToldOf(const std::function<void()>& change) {
    changes = 0;
    change();
    return waitUntil([this] {
      NSRunLoop::mainRunLoop().runPending();
      return changes > 0;
    });
  }

  std::multiset<std::string> lines() const {
    std::multiset<std::string> found;
    for (const auto& event : eventsBetween(store, "2026-01-01 00:00:00", "2027-01-01 00:00:00"))
      found.insert(lineOf(*event));
    return found;
  }

  std::unique_ptr<TestBus> bus;
  const EKEventStore store{
      EKCalendarPlaces{std::vector<std::string>(), {"myself@example.net"}, true}};
  int changes = 0;
  const NSObservation observation = NSNotificationCenter::defaultCenter().addObserver(
      EKEventStoreChangedNotification, [this](const NSNotification&) { ++changes; });
};

TEST_F(DesktopCalendars, GiveTheSameAnswersAsFiles) {
  std::vector<std::string> files = {"fill"};
  for (const auto& file : fs::directory_iterator(Folder / "Calendars")) {
    if (isForFilesOnly(file.path().filename().string())) continue;
    files.push_back(file.path().string());
  }
  change(files);
  change({"identity", "me@example.org"});
  std::multiset<std::string> expected;
  std::ifstream table(Folder / "expected-events.tsv");
  for (std::string line; std::getline(table, line);) {
    const auto columns = componentsSeparatedByString(line, "\t");
    if (columns[0] != "Europe/Berlin" || isForFilesOnly(columns[1] + ".ics")) continue;
    expected.insert(line.substr(columns[0].size() + columns[1].size() + 2));
  }
  const auto found = lines();
  for (const std::string& line : expected)
    EXPECT_EQ(found.count(line), expected.count(line)) << "expected " << line;
  for (const std::string& line : found)
    EXPECT_EQ(found.count(line), expected.count(line)) << "found " << line;
}

TEST_F(DesktopCalendars, TellOfChanges) {
  const auto identifiers = [this] {
    std::set<std::string> all;
    for (const auto& calendar : store.calendarsForEntityType(0))
      all.insert(calendar->calendarIdentifier());
    return all;
  };
  EXPECT_TRUE(identifiers().contains("system-calendar"));
  EXPECT_EQ(store.hiddenCalendarIdentifiers().size(), 0U);
  EXPECT_TRUE(lines().empty());
  EXPECT_TRUE(isToldOf([] { change({"add", "one", "20260707"}); }));
  EXPECT_EQ(lines(), (std::multiset<std::string>{
                         "2026-07-06 22:00:00 +0000\t2026-07-07 22:00:00 +0000\tall-day\tone"}));
  EXPECT_TRUE(isToldOf([] { change({"uncheck"}); }));
  EXPECT_TRUE(identifiers().contains("system-calendar"));
  EXPECT_EQ(store.hiddenCalendarIdentifiers(), std::vector<std::string>{"system-calendar"});
}

}  // namespace
