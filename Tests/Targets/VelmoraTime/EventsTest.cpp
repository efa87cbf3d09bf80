// Events from a folder of calendars, in the collector and in the dropdown of the running clock.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <ctime>

#include "Platform/AppKit/Menus/MenuAccessibility.h"
#include "Platform/AppKit/Menus/RowText.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTime.h"
#include "Tests/Targets/VelmoraTime/OpenDropdown.h"

namespace {

class Events : public OpenDropdown {
 protected:
  Events() {
    ZEVSetObjectForKey("Time_Cities", Array{});
    ZEVSetObjectForKey("Time_DropdownShowMoon", 0);
    ZEVSetObjectForKey("Time_CalendarFolders", Array{folder.string()});
    ZEVSetObjectForKey("Time_CalendarAddresses", Array{"me@example.org"});
  }

  /// Writes an event of November 2026; times as "21T150000".
  void add(const std::string& title, const std::string& start, const std::string& end,
           const std::string& more = "") {
    writeFile(
        folder / "home" / (title + ".ics"),
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Tests//EN\r\nBEGIN:VEVENT\r\nUID:" + title +
            "\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:202611" + start + "\r\nDTEND:202611" + end +
            "\r\nSUMMARY:" + title + "\r\n" + more + "END:VEVENT\r\nEND:VCALENDAR\r\n");
  }
  /// A store does; the collector tells the dropdown.
  static void tellOfChange() {
    auto& center = NSNotificationCenter::defaultCenter();
    int count = 0;
    const NSObservation observation =
        center.addObserver("VelmoraEventsChanged", [&](const NSNotification&) { ++count; });
    center.postNotification(EKEventStoreChangedNotification);
    EXPECT_EQ(count, 1);
  }

  void openWithEvents() {
    open(menu(), MenuOpening::Request);
    clock->waitForEvents();
  }
  /// Keys or first texts of the rows behind the month.
  std::string rows() {
    std::string line;
    for (const auto& item : menu()->itemArray()) {
      if (item == menu()->itemArray().front()) continue;
      line += line.empty() ? "" : "|";
      line += menu()->keyOfItem(*item).value_or(rowName(*item));
    }
    return line;
  }
  void key(uint16_t code, NSEventModifierFlags modifiers = 0) {
    NSEvent event;
    event.type = NSEventType::KeyDown;
    event.keyCode = code;
    event.modifierFlags = modifiers;
    screen.tracker().keyPressed(event);
  }
  /// What is read aloud where the keyboard is.
  std::string focused() {
    const auto menu = accessibleMenu(screen.tracker());
    for (const AccessibleElement& part : menu->children.front().children) {
      if (part.isFocused) return part.name;
    }
    return menu->children.front().isFocused ? menu->children.front().name : "?";
  }

  const std::filesystem::path folder = freshFolder();
};

TEST_F(Events, ComeIntoTheOpenMenuAndFollowTheStore) {
  add("Concert", "21T210000", "21T230000");
  add("Night", "21T230000", "22T010000");
  clock.emplace(Saturday);
  openWithEvents();
  EXPECT_EQ(rows(),
            "filler-calendar|filler-calendar-events|Concert, 9 PM|Night, Starts 11 PM|filler-base");
  add("Added", "21T180000", "21T183000");
  tellOfChange();
  clock->waitForEvents();
  EXPECT_EQ(rows(),
            "filler-calendar|filler-calendar-events|Added, 6 PM|Concert, 9 PM|"
            "Night, Starts 11 PM|filler-base");
  change("Time_DropdownShowMoon", 1, "moon");
  EXPECT_NE(rows().find("spacer-moon-before"), std::string::npos);
  ZEVSetObjectForKey("Time_DropdownShowMoon", 0);
  clock->waitForCities();
  change("Time_Cities", Array{"2643743"}, "cities");
  EXPECT_NE(rows().find("Night, Starts 11 PM|spacer-events-no-moon|"), std::string::npos);
  change("Time_CalendarShowEvents", 0, "calendar");
  EXPECT_TRUE(rows().starts_with("filler-calendar|filler-no-events-or-moon|"));
}

TEST_F(Events, AreThoseOfTheDayAfterMidnight) {
  add("Late", "21T230000", "21T233000");
  add("Tomorrow", "22T090000", "22T100000");
  clock.emplace(utc(2026, 11, 21, 23, 59, 50));
  openWithEvents();
  EXPECT_EQ(rows(), "filler-calendar|filler-no-events-or-moon|filler-base") << "it is over";
  clock->time.loop.advance(12);
  EXPECT_EQ(rows(), "filler-calendar|filler-calendar-events|Tomorrow, 9 AM|filler-base");
}

// What is marked in the open month is the C library's day in the same zone.
TEST_F(Events, TodayGoesOnAtEachMidnightOfAYear) {
  setenv("TZ", "America/New_York", 1);
  tzset();
  NSTimeZone::resetSystemTimeZone();
  clock.emplace(utc(2026, 11, 21, 12));
  for (int day = 1; day <= 365; ++day) {
    tm midnight{};
    midnight.tm_mday = 21 + day;
    midnight.tm_mon = 10;
    midnight.tm_year = 126;
    midnight.tm_isdst = -1;
    clock->time.clock.setTimeIntervalSince1970(static_cast<double>(mktime(&midnight)) - 2);
    openWithEvents();
    clock->time.loop.advance(4);
    char weekdayAndMonth[40];
    strftime(weekdayAndMonth, sizeof(weekdayAndMonth), "%A, %B ", &midnight);
    key(NSKeyCodeDown);
    EXPECT_EQ(focused(), weekdayAndMonth + std::to_string(midnight.tm_mday) + ", " +
                             std::to_string(midnight.tm_year + 1900) + ", today");
    screen.tracker().close();
  }
}

TEST_F(Events, AreReachedByTheKeyboardAndReadAloud) {
  add("Concert", "28T210000", "28T230000");
  clock.emplace(Saturday);
  openWithEvents();
  EXPECT_EQ(focused(), "November 2026");
  key(NSKeyCodeDown);
  EXPECT_EQ(focused(), "Saturday, November 21, 2026, today");
  key(NSKeyCodeDown);
  EXPECT_EQ(focused(), "Saturday, November 28, 2026, 1 event");
  EXPECT_EQ(rows(), "filler-calendar|filler-no-events-or-moon|filler-base") << "not yet chosen";
  key(NSKeyCodeReturn);
  EXPECT_EQ(rows(), "filler-calendar|filler-calendar-events|Concert, 9 PM|filler-base");
  key(NSKeyCodePageDown, NSEventModifierFlagShift);
  EXPECT_EQ(focused(), "Sunday, November 28, 2027");
  EXPECT_EQ(accessibleMenu(screen.tracker())->children.front().name, "November 2027");
  key(NSKeyCodeHome);
  EXPECT_EQ(focused(), "Saturday, November 21, 2026, today");
  key(NSKeyCodeTab);
  key(NSKeyCodeTab);
  EXPECT_EQ(focused(), "Next month");
  key(NSKeyCodeSpace);
  key(NSKeyCodeTab);
  EXPECT_EQ(focused(), "Tuesday, December 1, 2026");
}

// A folder that changes behind the store's back shows whether that was asked.
TEST_F(Events, AreKeptByTheCollectorForTheLastRange) {
  add("one", "21T100000", "21T110000");
  add("cancelled", "21T100000", "21T110000", "STATUS:CANCELLED\r\n");
  add("declined", "21T100000", "21T110000", "ATTENDEE;PARTSTAT=DECLINED:mailto:Me@example.org\r\n");
  add("theirs", "21T110000", "21T120000", "ATTENDEE;PARTSTAT=DECLINED:mailto:you@example.org\r\n");
  clock.emplace(Saturday);
  const auto collector = CalendarStatCollector::sharedCalendarCollector();
  const auto fetch = [&](unsigned firstDay) {
    std::string titles;
    dispatch_sync(collector->queue(), [&] {
      const auto at = [](double seconds) { return NSDate::dateWithTimeIntervalSince1970(seconds); };
      for (const auto& event :
           collector->fetchEventsBetweenDates(at(utc(2026, 11, firstDay)), at(utc(2026, 11, 30))))
        titles += event->title().value_or("?") + " ";
    });
    return titles;
  };
  EXPECT_EQ(fetch(1), "") << "there is no store yet";
  collector->checkCalendarAccess();
  EXPECT_EQ(fetch(1), "one theirs ");
  add("two", "21T120000", "21T130000");
  EXPECT_EQ(fetch(1), "one theirs ");
  EXPECT_EQ(fetch(2), "one theirs two ");
  std::filesystem::remove(folder / "home" / "one.ics");
  EXPECT_EQ(fetch(1), "theirs two ") << "another range";
  add("three", "21T130000", "21T140000");
  tellOfChange();
  EXPECT_EQ(fetch(1), "theirs two three ");
  collector->setEnabled(false);
  EXPECT_EQ(fetch(1), "");
  collector->checkCalendarAccess();
  EXPECT_EQ(fetch(1), "theirs two three ") << "also while it is switched off";
}

}  // namespace
