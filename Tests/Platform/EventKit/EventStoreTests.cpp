// What the store gives of folders of calendar files.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <tuple>

#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Platform/Foundation/RunLoop/VirtualRunLoop.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Tests/Platform/EventKit/EventListing.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Support/TestEnvironment.h"

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
    EXPECT_TRUE(std::is_sorted(events.begin(), events.end(), [](const auto& a, const auto& b) {
      return std::tuple(a->startDate(), !a->isAllDay(), a->title()) <
             std::tuple(b->startDate(), !b->isAllDay(), b->title());
    }));
    for (const std::string& line : lines)
      EXPECT_EQ(found.count(line), lines.count(line)) << zone << " expected " << line;
    for (const std::string& line : found)
      EXPECT_EQ(found.count(line), lines.count(line)) << zone << " found " << line;
  }
}

constexpr const char* OneEvent =
    "BEGIN:VCALENDAR\nX-WR-CALNAME:Named inside\nCOLOR:DarkOrange\nBEGIN:VEVENT\nUID:1\n"
    "SUMMARY:one\nDTSTART:20260302T100000Z\nEND:VEVENT\nEND:VCALENDAR\n";

TEST(EventStore, FindsCalendarsInFolders) {
  const fs::path folder = freshFolder();
  writeFile(folder / "first" / "calendars" / "direct.ics", "");
  const fs::path first = folder / "first" / "calendars";
  writeFile(first / "a" / "1.ICS", OneEvent);
  writeFile(first / "a" / "displayname", "\n  Shown \xff name \nmore");
  writeFile(first / "a" / "color", "#0080FF80\n");
  writeFile(first / "b" / "1.ics", OneEvent);
  writeFile(first / "c" / "2.ics", OneEvent);
  writeFile(first / "c" / "1.ics", "");
  writeFile(first / "c" / "color", "mauvish");
  writeFile(first / ".hidden" / "1.ics", OneEvent);
  writeFile(first / "d" / "deep" / "1.ics", OneEvent);
  fs::create_directories(folder / "second" / "a");
  const EKEventStore store(
      EKCalendarPlaces{{{first.string(), (folder / "second").string(), "/nowhere"}}, {}, false});
  struct Row {
    std::string identifier;
    std::string title;
    std::string colorString;
    std::optional<NSColor> color;
  };
  const auto color = [](double red, double green, double blue, double alpha) {
    return NSColor::colorWithDeviceRed(red / 255, green / 255, blue / 255, alpha / 255);
  };
  const std::vector<Row> rows = {
      {"calendars", "calendars", "", {}},
      {"a", "Shown \xEF\xBF\xBD name", "#0080FF80", color(0, 128, 255, 128)},
      {"b", "Named inside", "DarkOrange", color(255, 140, 0, 255)},
      {"c", "c", "mauvish", {}},
      {"d", "d", "", {}},
      {(folder / "second" / "a").string(), (folder / "second" / "a").string(), "", {}}};
  const auto calendars = store.calendarsForEntityType(0);
  ASSERT_EQ(calendars.size(), rows.size());
  for (size_t index = 0; index < rows.size(); ++index) {
    EXPECT_EQ(calendars[index]->calendarIdentifier(), rows[index].identifier);
    EXPECT_EQ(calendars[index]->title(), rows[index].title);
    EXPECT_EQ(calendars[index]->colorString(), rows[index].colorString);
    EXPECT_EQ(calendars[index]->color(), rows[index].color) << rows[index].identifier;
  }
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

class ChangingFolder : public testing::Test {
 protected:
  ChangingFolder() {
    NSRunLoop::setMainRunLoop(&loop);
    store = std::make_unique<EKEventStore>(placesIn(folder / "all"));
  }
  ~ChangingFolder() override {
    store.reset();
    NSRunLoop::setMainRunLoop(nullptr);
  }

  size_t countEvents() const {
    return eventsBetween(*store, "2026-03-01 00:00:00", "2026-04-01 00:00:00").size();
  }

  ManualClock clock{0};
  VirtualRunLoop loop{clock};
  const fs::path folder = freshFolder();
  std::unique_ptr<EKEventStore> store;
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
