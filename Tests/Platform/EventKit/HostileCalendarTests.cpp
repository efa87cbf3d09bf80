// Calendars that are broken or meant to do harm: what is bad is left out, the rest stays, and
// neither time nor memory goes with it.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "Tests/Platform/EventKit/EventListing.h"
#include "Tests/Platform/Support/Files.h"

namespace {

namespace fs = std::filesystem;

std::string times(size_t count, const std::function<std::string(size_t)>& text) {
  std::string all;
  for (size_t number = 0; number < count; ++number)
    all += text(number);
  return all;
}

std::string event(const std::string& lines) {
  return "BEGIN:VEVENT\nSUMMARY:odd\n" + lines + "\nEND:VEVENT\n";
}

/// An event of an hour on 2 March 2026 in a zone of this definition.
std::string inZone(const std::string& definition) {
  return "BEGIN:VTIMEZONE\nTZID:Own\n" + definition + "\nEND:VTIMEZONE\n" +
         event("UID:z\nDTSTART;TZID=Own:20260302T100000\nDURATION:PT1H");
}

std::string clock(const std::string& offset, const std::string& more = "") {
  return "BEGIN:STANDARD\nDTSTART:19700101T000000\nTZOFFSETFROM:+0000\nTZOFFSETTO:" + offset +
         more + "\nEND:STANDARD";
}

const std::string Start = "DTSTART:20260302T100000Z\n";
const std::string Long(1 << 20, 'x');

/// Not all of them: 200,000 at most.
constexpr size_t AtMost = SIZE_MAX;

struct Case {
  const char* name;
  std::string text;
  size_t odd;  ///< How many events called "odd", or all of an x, there are in March 2026.
};

TEST(HostileCalendars, KeepTheirGoodEvents) {
  const auto number = [](size_t each) { return std::to_string(each); };
  const std::vector<Case> cases = {
      {"a line of a megabyte that does not matter",
       event("UID:1\n" + Start + "DESCRIPTION:" + Long), 1},
      {"a title of a megabyte",
       "BEGIN:VEVENT\nUID:1\n" + Start + "SUMMARY:" + Long + "\nEND:VEVENT\n", 1},
      {"a megabyte of dates", event("UID:1\n" + Start + "RDATE:" + Long), 0},
      {"a megabyte of guests", event("UID:1\n" + Start + "ATTENDEE:" + Long), 1},
      {"100000 events",
       times(100'000, [&](size_t each) { return event("UID:" + number(each) + "\n" + Start); }),
       100'000},
      {"seconds without an end", event("UID:1\n" + Start + "RRULE:FREQ=SECONDLY"), 5000},
      {"a hundred series of minutes",
       times(100,
             [&](size_t each) {
               return event("UID:" + number(each) + "\n" + Start + "RRULE:FREQ=MINUTELY");
             }),
       AtMost},
      {"minutes that never come",
       event("UID:1\n" + Start + "RRULE:FREQ=MINUTELY;BYMONTH=2;BYMONTHDAY=30"), 1},
      {"seconds that never come, counted",
       event(
           "UID:1\nDTSTART:00010101T000000Z\nRRULE:FREQ=SECONDLY;COUNT=9;BYMONTH=2;BYMONTHDAY=30"),
       0},
      {"every day since the year 1", event("UID:1\nDTSTART:00010101T000000Z\nRRULE:FREQ=DAILY"),
       31},
      {"the year 0", event("UID:1\nDTSTART:00000101T000000Z\nRRULE:FREQ=MONTHLY"), 1},
      {"the year 9999", event("UID:1\nDTSTART:99991231T235959Z\nRRULE:FREQ=SECONDLY"), 0},
      {"the year 10000", event("UID:1\nDTSTART:100000101T000000Z"), 0},
      {"the 31st of February", event("UID:1\nDTSTART:20260231T000000Z"), 0},
      {"no start", event("UID:1"), 0},
      {"an unreadable rule", event("UID:1\n" + Start + "RRULE:FREQ=NEVER"), 0},
      {"an unreadable end", event("UID:1\n" + Start + "DTEND:tomorrow"), 0},
      {"times of each other",
       event("UID:1\nRECURRENCE-ID:20260303T100000Z\nDTSTART:20260304T100000Z") +
           event("UID:1\nRECURRENCE-ID:20260304T100000Z\nDTSTART:20260303T100000Z"),
       2},
      {"a series that is a time of itself",
       event("UID:1\nRECURRENCE-ID:20260302T100000Z\n" + Start + "RRULE:FREQ=DAILY"), 1},
      {"300 years", event("UID:1\nDTSTART;VALUE=DATE:18000101\nDTEND;VALUE=DATE:21000101"), 1},
      {"300 years each day",
       event("UID:1\nDTSTART;VALUE=DATE:18000101\nDTEND;VALUE=DATE:21000101\nRRULE:FREQ=DAILY"),
       5000},
      {"a duration beyond numbers", event("UID:1\n" + Start + "DURATION:P99999999999W"), 1},
      {"a storm of alarms",
       event("UID:1\n" + Start +
             times(100'000, [](size_t) { return "BEGIN:VALARM\nTRIGGER:PT0S\nEND:VALARM\n"; })),
       1},
      {"alarms without an end",
       event("UID:1\n" + Start + times(1000, [](size_t) { return "BEGIN:VALARM\n"; })), 1},
      {"events without an end", times(1000, [](size_t) { return "BEGIN:VEVENT\nUID:1\n"; }), 0},
      {"bytes that are no text", event("UID:\xff\xfe\n" + Start + std::string("X\0Y:\0\n", 6)), 1},
      {"a zone of seconds", inZone(clock("+0100", "\nRRULE:FREQ=SECONDLY")), 1},
      {"a zone far from any other", inZone(clock("+9959")), 1},
      {"a zone without a clock", inZone("X-NOTHING:1"), 1},
      {"a zone without an end", inZone("") + "BEGIN:VTIMEZONE\nTZID:More\n", 1},
      {"a zone defined twice", inZone(clock("+0100") + "\n" + clock("+0500")), 1},
      {"10000 zones",
       times(10'000,
             [&](size_t each) {
               return event("UID:" + number(each) + "\nDTSTART;TZID=Z" + number(each) +
                            ":20260302T100000");
             }),
       2000},
  };
  for (const Case& each : cases) {
    const fs::path folder = freshFolder();
    writeFile(folder / "home" / "a.ics", "BEGIN:VCALENDAR\n" + each.text +
                                             "BEGIN:VEVENT\nUID:good\nSUMMARY:good\nDTSTART:"
                                             "20260315T100000Z\nEND:VEVENT\nEND:VCALENDAR\n");
    size_t odd = 0;
    size_t good = 0;
    for (const auto& found : eventsBetween(EKEventStore(placesIn(folder)), "2026-03-01 00:00:00",
                                           "2026-04-01 00:00:00")) {
      const std::string title = found->title().value_or("");
      EXPECT_LE(title.size(), 500U) << each.name;
      EXPECT_LE(found->startDate(), found->endDate()) << each.name;
      ++(title == "good" ? good : odd);
    }
    if (each.odd == AtMost) {
      EXPECT_LE(odd, 200'000U) << each.name;
      EXPECT_GE(odd, 100'000U) << each.name;
    } else {
      EXPECT_EQ(odd, each.odd) << each.name;
    }
    EXPECT_EQ(good, 1U) << each.name;
  }
}

// A fetch must neither wait for such files nor follow them for ever.
TEST(HostileCalendars, AreNotWaitedFor) {
  const fs::path folder = freshFolder();
  fs::create_directories(folder / "home" / "folder.ics");
  fs::create_symlink("/dev/zero", folder / "home" / "device.ics");
  fs::create_symlink("itself.ics", folder / "home" / "itself.ics");
  fs::create_symlink(".", folder / "home" / "around");
  fs::create_symlink("..", folder / "round");
  ASSERT_EQ(mkfifo((folder / "home" / "pipe.ics").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo((folder / "home" / "displayname").c_str(), 0600), 0);
  writeFile(folder / "home" / "z.ics", "BEGIN:VCALENDAR\n" + event("UID:1\n" + Start));
  const EKEventStore store(placesIn(folder));
  const auto events = eventsBetween(store, "2026-03-01 00:00:00", "2026-04-01 00:00:00");
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events.front()->calendar()->title(), "home");
}

}  // namespace
