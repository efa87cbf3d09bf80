#include "Tests/Platform/EventKit/EventListing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "Platform/Foundation/Text/NSString.h"
#include "Tests/Platform/Support/Files.h"

EKCalendarPlaces placesIn(const std::filesystem::path& folder) {
  return {{{folder.string()}}, {"mailto:ME@example.org", "myself@example.net"}, false};
}

std::vector<std::shared_ptr<const EKEvent>> eventsBetween(const EKEventStore& store,
                                                          std::string_view start,
                                                          std::string_view end) {
  std::vector<std::shared_ptr<const EKEvent>> events;
  const auto predicate =
      store.predicateForEventsWithStartDate(utc(start), utc(end), store.calendarsForEntityType(0));
  store.enumerateEventsMatchingPredicate(
      predicate, [&](const auto& event, bool&) { events.push_back(event); });
  return events;
}

std::string lineOf(const EKEvent& event) {
  std::string said;
  if (event.isAllDay()) said += ",all-day";
  if (event.status() == EKEventStatus::Canceled) said += ",cancelled";
  const bool isDeclined = std::any_of(
      event.attendees().begin(), event.attendees().end(), [](const EKParticipant& attendee) {
        return attendee.isCurrentUser &&
               attendee.participantStatus == EKParticipantStatus::Declined;
      });
  if (isDeclined) said += ",declined";
  return event.startDate().description() + "\t" + event.endDate().description() + "\t" +
         (said.empty() ? "-" : said.substr(1)) + "\t" + event.title().value_or("(none)");
}

std::multiset<std::string> linesOf(const EKEventStore& store) {
  std::multiset<std::string> lines;
  for (const auto& event : eventsBetween(store, "2026-01-01 00:00:00", "2027-01-01 00:00:00"))
    lines.insert(lineOf(*event));
  return lines;
}

void expectLines(const std::multiset<std::string>& found, std::string_view zone,
                 std::string_view leftOut) {
  std::multiset<std::string> expected;
  std::ifstream table(std::filesystem::path(PLATFORM_TEST_FOLDER) / "EventKit/expected-events.tsv");
  for (std::string line; std::getline(table, line);) {
    const auto columns = componentsSeparatedByString(line, "\t");
    if (columns[0] != zone || columns[1] == leftOut) continue;
    expected.insert(line.substr(columns[0].size() + columns[1].size() + 2));
  }
  EXPECT_GT(expected.size(), 100U) << zone;
  for (const std::string& line : expected)
    EXPECT_EQ(found.count(line), expected.count(line)) << zone << " expected " << line;
  for (const std::string& line : found)
    EXPECT_EQ(found.count(line), expected.count(line)) << zone << " found " << line;
}
