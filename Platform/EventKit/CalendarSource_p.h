#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "Platform/EventKit/EKCalendar.h"
#include "Platform/EventKit/EKEvent.h"

/// A period of time, seconds since 1970 UTC, the end excluded.
struct TimeSpan {
  int64_t start;
  int64_t end;
};

/// Mail addresses in lower case, without "mailto:".
using AddressSet = std::unordered_set<std::string>;

/// Where calendars come from. All of it is asked on one queue, never on the main thread; it may end
/// on any thread. A source tells of changes through the function that it was made with, on the main
/// thread, until it ends.
class CalendarSource {
 public:
  CalendarSource() = default;
  CalendarSource(const CalendarSource&) = delete;
  CalendarSource& operator=(const CalendarSource&) = delete;
  virtual ~CalendarSource() = default;

  struct Calendars {
    std::vector<std::shared_ptr<const EKCalendar>> all;
    std::vector<std::string> hidden;  ///< Identifiers of those that the user has switched off.
    AddressSet userAddresses;         ///< Who the user is, as far as this source knows.
  };

  /// Looks for changes and reads what has changed.
  virtual Calendars calendars() = 0;

  /// The events of the calendars with these identifiers, in any order. Attendees with one of
  /// `userAddresses` are the current user.
  virtual std::vector<std::shared_ptr<const EKEvent>> events(
      const TimeSpan& span, const std::unordered_set<std::string>& calendars,
      const AddressSet& userAddresses) = 0;
};
