#include "Tests/Platform/EventKit/EventListing.h"

#include <algorithm>

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
