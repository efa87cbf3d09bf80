// What the store gives of folders of calendar files.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <tuple>

#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Tests/Platform/EventKit/EventListing.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Platform/Support/VirtualTime.h"
#include "Tests/Support/TestEnvironment.h"

namespace {

namespace fs = std::filesystem;

const fs::path Folder = fs::path(PLATFORM_TEST_FOLDER) / "EventKit";

// Another implementation's answers (scripts/make-event-table): a difference is a fault of one of
// the two in recurrences, exceptions, zones or lengths.
TEST(EventStore, AgreesWithAnotherImplementation) {
  for (const char* zone : {"America/New_York", "Europe/Berlin"}) {
    NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName(zone));
    const EKEventStore store(placesIn(Folder / "Calendars"));
    expectLines(linesOf(store), zone);
    std::set<std::string> identifiers;
    const auto events = eventsBetween(store, "2026-01-01 00:00:00", "2027-01-01 00:00:00");
    for (const auto& event : events)
      EXPECT_TRUE(identifiers.insert(event->eventIdentifier()).second) << event->eventIdentifier();
    EXPECT_TRUE(std::is_sorted(events.begin(), events.end(), [](const auto& a, const auto& b) {
      return std::tuple(a->startDate(), !a->isAllDay(), a->title()) <
             std::tuple(b->startDate(), !b->isAllDay(), b->title());
    }));
  }
}

constexpr const char* OneEvent =
    "BEGIN:VCALENDAR\nX-WR-CALNAME:Named inside\nCOLOR:DarkOrange\nBEGIN:VEVENT\nUID:1\n"
    "SUMMARY:one\nDTSTART:20260302T100000Z\nEND:VEVENT\nEND:VCALENDAR\n";

std::string textOf(const std::optional<NSColor>& color) {
  std::string text;
  if (!color) return text;
  for (const double part : {color->redComponent(), color->greenComponent(), color->blueComponent(),
                            color->alphaComponent()})
    text += " " + std::to_string(std::lround(part * 255));
  return " =" + text;
}

TEST(EventStore, FindsCalendarsInFolders) {
  const fs::path folder = freshFolder();
  const fs::path first = folder / "first" / "calendars";
  const std::pair<const char*, std::string_view> files[] = {
      {"direct.ics", ""},
      {"a/1.ICS", OneEvent},
      {"a/color", "#0080FF80\n"},
      {"a/displayname", "\n  Shown \xff name \nmore"},
      {"b/1.ics", OneEvent},
      {"c/2.ics", OneEvent},
      {"c/1.ics", ""},
      {"c/color", "mauvish"},
      {"d/deep/1.ics", OneEvent},
      {".hidden/1.ics", OneEvent}};
  for (const auto& [name, text] : files)
    writeFile(first / name, text);
  fs::create_directories(folder / "second" / "a");
  const EKEventStore store(
      EKCalendarPlaces{{{first.string(), (folder / "second").string(), "/nowhere"}}, {}, false});
  const std::string second = (folder / "second" / "a").string();
  const std::vector<std::string> expected = {"calendars, calendars, ",
                                             "a, Shown \uFFFD name, #0080FF80 = 0 128 255 128",
                                             "b, Named inside, DarkOrange = 255 140 0 255",
                                             "c, c, mauvish",
                                             "d, d, ",
                                             second + ", " + second + ", "};
  std::vector<std::string> found;
  for (const auto& calendar : store.calendarsForEntityType(0)) {
    found.push_back(calendar->calendarIdentifier() + ", " + calendar->title() + ", " +
                    calendar->colorString() + textOf(calendar->color()));
  }
  EXPECT_EQ(found, expected);
  EXPECT_TRUE(store.calendarsForEntityType(1).empty());
}

TEST(EventStore, LooksWhereItIsTold) {
  const auto identifiers = [] {
    std::vector<std::string> all;
    for (const auto& calendar : EKEventStore(0).calendarsForEntityType(0))
      all.push_back(calendar->calendarIdentifier());
    return all;
  };
  writeFile(testFolder() / "home" / ".calendars" / "a" / "1.ics", OneEvent);
  writeFile(testFolder() / "data" / "calendars" / "b" / "1.ics", OneEvent);
  writeFile(testFolder() / "home" / "mine" / "1.ics", OneEvent);
  EXPECT_EQ(identifiers(), (std::vector<std::string>{"a", "b"}));
  EKEventStore::setDefaultPlaces([] { return EKCalendarPlaces{{{"~/mine/"}}, {}, true}; });
  EXPECT_EQ(identifiers(), (std::vector<std::string>{"mine"}));
}

class ChangingFolder : public testing::Test, protected VirtualTime {
 protected:
  size_t countEvents() const {
    return eventsBetween(*store, "2026-03-01 00:00:00", "2026-04-01 00:00:00").size();
  }

  const fs::path folder = freshFolder();
  std::optional<EKEventStore> store{placesIn(folder / "all")};
  int changes = 0;
  const NSObservation observation = NSNotificationCenter::defaultCenter().addObserver(
      EKEventStoreChangedNotification, [this](const NSNotification&) { ++changes; });
};

TEST_F(ChangingFolder, IsToldOnceForEachChange) {
  struct Step {
    const char* name;
    std::function<void()> change;
    int changes;
    size_t events;
  };
  const fs::path all = folder / "all";
  const fs::path file = all / "home" / "1.ics";
  const auto write = [&](const fs::path& path) { writeFile(path, OneEvent); };
  const std::vector<Step> steps = {
      {"nothing", [] {}, 0, 0},
      {"the folder is made", [&] { fs::create_directories(all); }, 1, 0},
      {"a calendar is made", [&] { fs::create_directories(all / "home"); }, 1, 0},
      {"an event is written", [&] { write(file); }, 1, 1},
      {"a hidden file is written", [&] { write(all / "home" / ".2.ics.tmp"); }, 0, 1},
      {"it takes its name",
       [&] { fs::rename(all / "home" / ".2.ics.tmp", all / "home" / "2.ics"); }, 1, 2},
      {"many at once",
       [&] {
         for (char each = 'a'; each <= 'z'; ++each)
           write(all / "home" / (std::string(1, each) + ".ics"));
       },
       1, 28},
      {"one is emptied", [&] { writeFile(file, ""); }, 1, 27},
      {"one is deleted", [&] { fs::remove(file); }, 1, 27},
      {"its colour", [&] { writeFile(all / "home" / "color", "red"); }, 1, 27},
      {"the calendar is renamed", [&] { fs::rename(all / "home", all / "work"); }, 1, 27},
      {"an event in it", [&] { write(all / "work" / "3.ics"); }, 1, 28},
      {"all is deleted", [&] { fs::remove_all(all); }, 1, 0},
      {"and comes back", [&] { write(file); }, 1, 1}};
  for (const Step& step : steps) {
    countEvents();
    loop.advance(2);
    changes = 0;
    step.change();
    loop.advance(2);
    EXPECT_EQ(changes, step.changes) << step.name;
    EXPECT_EQ(countEvents(), step.events) << step.name;
  }
  fs::remove(file);
  store.reset();
  changes = 0;
  loop.advance(2);
  EXPECT_EQ(changes, 0) << "the store has gone";
}

// A file that is bad is told of each time it is read.
TEST_F(ChangingFolder, IsReadAgainWhereItHasChanged) {
  const auto reports = [&] {
    testing::internal::CaptureStderr();
    countEvents();
    return componentsSeparatedByString(testing::internal::GetCapturedStderr(), "bad.ics").size() -
           1;
  };
  const fs::path bad = folder / "all" / "home" / "bad.ics";
  writeFile(bad, "BEGIN:VEVENT\nUID:1\nEND:VEVENT\n");
  writeFile(folder / "all" / "home" / "good.ics", OneEvent);
  EXPECT_EQ(reports(), 1U);
  writeFile(folder / "all" / "home" / "other.ics", OneEvent);
  EXPECT_EQ(reports(), 0U);
  writeFile(bad, "BEGIN:VEVENT\nUID:2\nEND:VEVENT\n");
  EXPECT_EQ(reports(), 1U);
}

}  // namespace
