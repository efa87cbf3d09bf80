#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/EventKit/EKCalendar.h"
#include "Platform/Foundation/Time/NSDate.h"

enum class EKEventStatus { None = 0, Confirmed = 1, Tentative = 2, Canceled = 3 };

enum class EKParticipantStatus {
  Unknown = 0,
  Pending = 1,
  Accepted = 2,
  Declined = 3,
  Tentative = 4,
  Delegated = 5,
  Completed = 6,
  InProcess = 7
};

/// Somebody who is invited to an event.
struct EKParticipant {
  bool isCurrentUser = false;
  EKParticipantStatus participantStatus = EKParticipantStatus::Unknown;
};

/// An event as it takes place once: an event that recurs gives one of these for each time.
/// Immutable, so safe from any thread; compared by identity.
class EKEvent {
 public:
  struct Values {
    std::optional<std::string> title;
    std::string eventIdentifier;
    NSDate startDate = NSDate::dateWithTimeIntervalSince1970(0);
    NSDate endDate = NSDate::dateWithTimeIntervalSince1970(0);
    bool isAllDay = false;
    EKEventStatus status = EKEventStatus::None;
    std::vector<EKParticipant> attendees;
    std::shared_ptr<const EKCalendar> calendar;
  };

  explicit EKEvent(Values values) : values_(std::move(values)) {}

  /// Nothing where the event has none; one line, and never empty.
  const std::optional<std::string>& title() const { return values_.title; }
  /// Unique in the store, also among the times of one recurring event, and the same at each fetch
  /// as long as that time keeps its place in the series.
  const std::string& eventIdentifier() const { return values_.eventIdentifier; }
  const NSDate& startDate() const { return values_.startDate; }
  /// The first instant behind the event, never before its start. All-day events last from midnight
  /// to midnight in the zone that was the system's when they were fetched.
  const NSDate& endDate() const { return values_.endDate; }
  bool isAllDay() const { return values_.isAllDay; }
  EKEventStatus status() const { return values_.status; }
  const std::vector<EKParticipant>& attendees() const { return values_.attendees; }
  /// Never null.
  const std::shared_ptr<const EKCalendar>& calendar() const { return values_.calendar; }

 private:
  Values values_;
};
