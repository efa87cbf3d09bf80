#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "Platform/EventKit/CalendarSource_p.h"
#include "Platform/EventKit/RecurrenceRule_p.h"
#include "Platform/EventKit/StoredCalendar_p.h"

/// What events are made with.
struct ExpansionContext {
  TimeSpan span;
  NSTimeZone wallZone;  ///< For times that name no zone, and for dates.
  std::shared_ptr<const EKCalendar> calendar;
  const AddressSet& userAddresses;
  /// Goes before the identifiers of the events.
  std::string_view prefix;
};

/// Events that take place once come before those that recur, in all calendars, so that series
/// without an end leave them their share of the work.
enum class ExpansionPass { Single, Recurring };
constexpr ExpansionPass ExpansionPasses[] = {ExpansionPass::Single, ExpansionPass::Recurring};

/// Adds to `events` those of `stored` that have a part of the span, or lie in it without a length,
/// each time of one that recurs by itself. It ends early when the budget is spent; one series alone
/// cannot spend all of it.
void expandEvents(const StoredCalendar& stored, ExpansionPass pass, const ExpansionContext& context,
                  WorkBudget& budget, std::vector<std::shared_ptr<const EKEvent>>& events);
