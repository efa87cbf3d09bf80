// The events of the month.

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Targets/VelmoraTime/Calendar/HiddenCalendars.h"
#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendar.h"

void StatInterfaceCalendar_Time::prepareToDisplay() {
  auto hidden = hiddenCalendars();
  // A list that is missing is never the same.
  if (!hidden || hidden != hiddenCalendars_) needToUpdateEvents_ = true;
  hiddenCalendars_ = std::move(hidden);
}

void StatInterfaceCalendar_Time::setOpensCalendar(bool opens) {
  opensCalendar_ = opens;
  calendarButton_->setHidden(!opens);
}

void StatInterfaceCalendar_Time::updateEventsIfNeeded() {
  const auto collector = CalendarStatCollector::sharedCalendarCollector();
  if (!collector->isEnabled()) return;
  if (!needToUpdateEvents_ && !collector->needsToUpdate()) return;
  needToUpdateEvents_ = false;
  // The store is asked for a day by its clock times, as if they were in UTC.
  updateEvents(NSDate::dateWithTimeIntervalSince1970(monthStartTime_),
               NSDate::dateWithTimeIntervalSince1970(monthEndTime_));
}

void StatInterfaceCalendar_Time::updateEvents(const NSDate& start, const NSDate& end) {
  const auto collector = CalendarStatCollector::sharedCalendarCollector();
  const uint64_t request = ++*requests_;
  dispatch_async(collector->queue(), [collector, start, end, request, requests = requests_,
                                      weak = weak_from_this()] {
    if (*requests != request) return;
    EventList events = collector->fetchEventsBetweenDates(start, end);
    dispatch_async(dispatch_get_main_queue(), [weak, events = std::move(events)] {
      if (const auto grid = std::static_pointer_cast<StatInterfaceCalendar_Time>(weak.lock())) {
        grid->eventsFetched(events);
      }
    });
  });
}

void StatInterfaceCalendar_Time::fetchNow() {
  const auto collector = CalendarStatCollector::sharedCalendarCollector();
  EventList events;
  dispatch_sync(collector->queue(), [&] {
    events =
        collector->fetchEventsBetweenDates(NSDate::dateWithTimeIntervalSince1970(monthStartTime_),
                                           NSDate::dateWithTimeIntervalSince1970(monthEndTime_));
  });
  eventsFetched(events);
}

void StatInterfaceCalendar_Time::eventsFetched(const EventList& events) {
  processEvents(events);
  updateUpcomingEvents();
  if (delegate_ != nullptr) delegate_->updateEvents();
}

void StatInterfaceCalendar_Time::processEvents(const EventList& events) {
  hiddenCalendars_ = hiddenCalendars();
  const auto hidden = hiddenCalendars_.value_or(std::vector<std::string>());
  struct Placed {
    std::shared_ptr<const EKEvent> event;
    WallClockSpan span;
  };
  std::vector<Placed> shown;
  std::unordered_set<const EKEvent*> known;
  for (const auto& event : events) {
    const bool isHidden =
        std::ranges::find(hidden, event->calendar()->calendarIdentifier()) != hidden.end();
    const bool isNamed = event->title() && !event->eventIdentifier().empty();
    if (!isHidden && isNamed && known.insert(event.get()).second) {
      shown.push_back({event, spanOfEvent(*event)});
    }
  }
  for (StatInterfaceCalendarCell& cell : cells_) {
    EventList ofDay;
    for (const Placed& placed : shown) {
      if (isInDay(placed.span, {cell.date(), cell.endDate()})) ofDay.push_back(placed.event);
    }
    cell.setEvents(std::move(ofDay));
    cell.updateEvents();
  }
}

StatInterfaceCalendarCell* StatInterfaceCalendar_Time::chosenCell() {
  const double chosen = selectedDay_ == NoDay ? currentDay_ : selectedDay_;
  const auto cell = std::ranges::find(cells_, chosen, &StatInterfaceCalendarCell::date);
  return cell != cells_.end() ? &*cell : nullptr;
}

void StatInterfaceCalendar_Time::updateUpcomingEvents() {
  upcomingEvents_.clear();
  StatInterfaceCalendarCell* cell = chosenCell();
  if (cell == nullptr || cell->events().empty()) return;
  const NSDate now = NSDate::date();
  cell->invalidateUpcomingEventItems();
  for (const auto& event : cell->events()) {
    if (isTodaySelected() && now > event->endDate()) continue;
    const auto row = cell->upcomingEventItemWithUUID(event->eventIdentifier());
    row->view()->updateColors();
    row->setOpensCalendar(opensCalendar_);
    row->setExists(true);
    row->setDay({cell->date(), cell->endDate()});
    upcomingEvents_.push_back(row);
    row->updateWithEvent(*event);
  }
  cell->removeUpcomingEventItems();
}

std::vector<std::shared_ptr<NSMenuItem>> StatInterfaceCalendar_Time::upcomingEventsItems() const {
  std::vector<std::shared_ptr<NSMenuItem>> items;
  for (const auto& row : upcomingEvents_)
    items.push_back(row->menuitem());
  return items;
}
