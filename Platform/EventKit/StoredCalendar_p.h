#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/EventKit/EKEvent.h"
#include "Platform/EventKit/EventZone_p.h"
#include "Platform/EventKit/RecurrenceRule_p.h"

/// A date or a date and time as it is written in a calendar.
struct StoredTime {
  int64_t reading = 0;  ///< Of the zone's clock, seconds since 1970 as if it showed UTC.
  uint16_t zone = 0;    ///< One of `StoredCalendar`'s.
  bool isDate = false;
};

/// How long something takes where its end is not written: days by the clock, then seconds.
struct StoredLength {
  int32_t days = 0;
  int32_t seconds = 0;
};

/// How an event recurs.
struct StoredRecurrence {
  struct Rule {
    std::shared_ptr<const RecurrenceRule> rule;
    std::optional<StoredTime> until;  ///< The last time that counts.
  };
  struct Date {
    StoredTime time;
    std::optional<StoredTime> end;
    std::optional<StoredLength> length;
  };

  std::vector<Rule> rules;
  std::vector<Date> dates;
  std::vector<StoredTime> exceptions;
};

/// Rules by how they are written, so that what recurs alike is kept once.
using RuleTable = std::map<std::string, std::weak_ptr<const RecurrenceRule>>;

/// The texts of an event. Thousands are kept, so they share one piece of memory.
class StoredTexts {
 public:
  StoredTexts() = default;
  StoredTexts(std::string_view uid, std::string_view title, std::string_view attendees)
      : uidSize_(static_cast<uint16_t>(uid.size())),
        titleSize_(static_cast<uint16_t>(title.size())) {
    all_.reserve(uid.size() + title.size() + attendees.size());
    all_.append(uid).append(title).append(attendees);
  }

  std::string_view uid() const { return std::string_view(all_).substr(0, uidSize_); }
  /// Empty where there is none.
  std::string_view title() const { return std::string_view(all_).substr(uidSize_, titleSize_); }
  /// One after the other: the digit of the participant's status, the address, a line end.
  std::string_view attendees() const {
    return std::string_view(all_).substr(size_t{uidSize_} + titleSize_);
  }
  size_t size() const { return all_.size(); }

 private:
  std::string all_;
  uint16_t uidSize_ = 0;
  uint16_t titleSize_ = 0;
};

/// An event as it stands in a file, in a few hundred bytes.
struct StoredEvent {
  StoredTexts texts;
  StoredTime start;
  std::optional<StoredTime> end;
  StoredLength length;  ///< Where there is no end.
  /// Which time of the event of the same identifier it stands for.
  std::optional<StoredTime> recurrenceId;
  std::unique_ptr<const StoredRecurrence> recurrence;
  int32_t sequence = 0;
  EKEventStatus status = EKEventStatus::None;
};

/// What was read of one file, or of one of the desktop's calendars.
struct StoredCalendar {
  static constexpr uint16_t FloatingZone = 0;
  static constexpr uint16_t UtcZone = 1;
  static constexpr uint16_t FirstNamedZone = 2;

  int64_t instantOf(const StoredTime& time, const NSTimeZone& wallZone) const {
    if (time.zone == UtcZone) return time.reading;
    if (time.zone >= FirstNamedZone)
      return (*zones)[time.zone - FirstNamedZone].instantOf(time.reading, wallZone);
    return EventZone::floating().instantOf(time.reading, wallZone);
  }

  /// Those that the file names, from `FirstNamedZone` on; of thousands of files mostly the same.
  std::shared_ptr<const std::vector<EventZone>> zones;
  /// By identifier; of equal ones first those without a recurrence identifier, then as in the file.
  std::vector<StoredEvent> events;
  /// What the file says of the calendar; null where it says nothing.
  struct Appearance {
    std::string title;
    std::string color;
  };
  std::unique_ptr<Appearance> appearance;
  int64_t size = 0;  ///< What its events take, about, in bytes.
};
