// The calendars of a real Evolution Data Server on a bus of the test's own.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <set>

#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Tests/Platform/EventKit/EventListing.h"
#include "Tests/Support/TestBus.h"

namespace {

namespace fs = std::filesystem;

const fs::path Folder = fs::path(PLATFORM_TEST_FOLDER) / "EventKit";

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
    // Of two revisions of one time, the service keeps the first that it is given.
    if (file.path().stem() != "revisions") files.push_back(file.path().string());
  }
  change(files);
  change({"identity", "me@example.org"});
  expectLines(linesOf(store), "Europe/Berlin", "revisions");
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
  EXPECT_TRUE(linesOf(store).empty());
  EXPECT_TRUE(isToldOf([] { change({"add", "one", "20260707"}); }));
  EXPECT_EQ(linesOf(store),
            (std::multiset<std::string>{
                "2026-07-06 22:00:00 +0000\t2026-07-07 22:00:00 +0000\tall-day\tone"}));
  EXPECT_TRUE(isToldOf([] { change({"uncheck"}); }));
  EXPECT_TRUE(identifiers().contains("system-calendar"));
  EXPECT_EQ(store.hiddenCalendarIdentifiers(), std::vector<std::string>{"system-calendar"});
}

}  // namespace
