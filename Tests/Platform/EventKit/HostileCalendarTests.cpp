// Calendars that are broken or meant to do harm: what is bad is left out, the rest stays, and
// neither time nor memory goes with it.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "Platform/Foundation/Text/NSString.h"
#include "Tests/Platform/EventKit/EventListing.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view End = "END:VEVENT\n";

std::string pieceOf(char sign) {
  if (sign == '/') return "\n";
  if (sign == '<') return "BEGIN:VEVENT\nSUMMARY:odd\n";
  if (sign == '>') return "\n" + std::string(End);
  return {sign};
}

/// The calendar's text of a row as the table tells.
std::string calendarText(std::string_view row) {
  std::string text;
  for (; !row.empty(); row.remove_prefix(1)) {
    if (row.front() != '{') {
      text += pieceOf(row.front());
      continue;
    }
    const size_t star = row.find('*');
    const size_t end = row.find('}');
    const std::string part = calendarText(row.substr(star + 1, end - star - 1));
    const int64_t count = integerValue(row.substr(1));
    for (int64_t each = 0; each < count; ++each)
      text += stringByReplacingOccurrences(part, "#", std::to_string(each));
    row.remove_prefix(end);
  }
  return text;
}

TEST(HostileCalendars, KeepTheirGoodEvents) {
  auto rows = casesIn<std::string, int, int, std::string>(
      "Platform/EventKit/HostileCalendarTests.txt", "cases");
  rows.push_back({"bytes that are no text", 1, 1,
                  "<UID:\xff\xfe/DTSTART:20260302T100000Z/" + std::string("X\0Y:\0>", 6)});
  for (const auto& [name, least, most, text] : rows) {
    SCOPED_TRACE(name);
    const fs::path folder = freshFolder();
    writeFile(folder / "home" / "a.ics",
              "BEGIN:VCALENDAR\n" + calendarText(text) +
                  "BEGIN:VEVENT\nUID:good\nSUMMARY:good\nDTSTART:20260315T100000Z\n" +
                  std::string(End) + "END:VCALENDAR\n");
    int64_t odd = 0;
    int64_t good = 0;
    for (const auto& found : eventsBetween(EKEventStore(placesIn(folder)), "2026-03-01 00:00:00",
                                           "2026-04-01 00:00:00")) {
      const std::string title = found->title().value_or("");
      EXPECT_LE(title.size(), 500U);
      EXPECT_LE(found->startDate(), found->endDate());
      ++(title == "good" ? good : odd);
    }
    EXPECT_GE(odd, least);
    EXPECT_LE(odd, most);
    EXPECT_EQ(good, 1);
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
  writeFile(folder / "home" / "z.ics",
            "BEGIN:VCALENDAR\n" + calendarText("<UID:1/DTSTART:20260302T100000Z>"));
  const EKEventStore store(placesIn(folder));
  const auto events = eventsBetween(store, "2026-03-01 00:00:00", "2026-04-01 00:00:00");
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events.front()->calendar()->title(), "home");
}

}  // namespace
