// The events of the month.

#include <algorithm>
#include <utility>

#include "Platform/Foundation/Process/UnusedPages.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Targets/VelmoraTime/Calendar/HiddenCalendars.h"
#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendar.h"

namespace {

/// Thousands of events are sorted into days, and let go of, where no tick waits for it.
void letGoOf(std::vector<EventList> events) {
  dispatch_async(CalendarStatCollector::sharedCalendarCollector()->queue(),
                 [all = std::move(events)]() mutable { all.clear(); });
}

// The store is asked for a day by its clock times, as if they were in UTC.
EventsOfDays fetchEvents(CalendarStatCollector& collector, double start) {
  return eventsOfDays(collector.fetchEventsBetweenDates(
                          NSDate::dateWithTimeIntervalSince1970(start),
                          NSDate::dateWithTimeIntervalSince1970(start + MonthDays::Length)),
                      start);
}

}  // namespace

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
  updateEvents();
}

void StatInterfaceCalendar_Time::updateEvents() {
  const auto collector = CalendarStatCollector::sharedCalendarCollector();
  const uint64_t request = ++*requests_;
  dispatch_async(collector->queue(), [collector, start = monthStartTime_, request,
                                      requests = requests_, weak = weak_from_this()] {
    if (*requests != request) return;
    const auto sorted = std::make_shared<EventsOfDays>(fetchEvents(*collector, start));
    dispatch_async(dispatch_get_main_queue(), [weak, sorted] {
      if (const auto grid = std::static_pointer_cast<StatInterfaceCalendar_Time>(weak.lock())) {
        grid->eventsFetched(std::move(*sorted));
      }
    });
  });
}

void StatInterfaceCalendar_Time::fetchNow() {
  const auto collector = CalendarStatCollector::sharedCalendarCollector();
  EventsOfDays sorted;
  dispatch_sync(collector->queue(), [&] { sorted = fetchEvents(*collector, monthStartTime_); });
  eventsFetched(std::move(sorted));
}

void StatInterfaceCalendar_Time::eventsFetched(EventsOfDays sorted) {
  // Another month has been turned to, and its own events are on their way.
  if (sorted.start != monthStartTime_) return;
  showEvents(std::move(sorted));
  updateUpcomingEvents();
  if (delegate_ != nullptr) delegate_->updateEvents();
}

void StatInterfaceCalendar_Time::processEvents(const EventList& events) {
  showEvents(eventsOfDays(events, monthStartTime_));
}

void StatInterfaceCalendar_Time::showEvents(EventsOfDays sorted) {
  hiddenCalendars_ = hiddenCalendars();
  const auto hidden = hiddenCalendars_.value_or(std::vector<std::string>());
  const auto isHidden = [&](const std::shared_ptr<const EKEvent>& event) {
    return std::ranges::find(hidden, event->calendar()->calendarIdentifier()) != hidden.end();
  };
  std::vector<EventList> before;
  for (size_t index = 0; index < cells_.size(); ++index) {
    EventList& events = sorted.days[index];
    if (!hidden.empty()) std::erase_if(events, isHidden);
    before.push_back(cells_[index].takeEvents());
    cells_[index].setEvents(std::move(events));
    cells_[index].updateEvents();
  }
  letGoOf(std::move(before));
}

void StatInterfaceCalendar_Time::forgetEvents() {
  if (std::ranges::all_of(cells_, [](const auto& cell) { return cell.events().empty(); })) return;
  needToUpdateEvents_ = true;
  showEvents({monthStartTime_, {}});
  updateUpcomingEvents();
  // Behind the events, which go first.
  dispatch_async(CalendarStatCollector::sharedCalendarCollector()->queue(), returnUnusedPages);
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
  EventTimes times;
  for (const auto& event : cell->events()) {
    if (isTodaySelected() && now > event->endDate()) continue;
    const auto row = cell->upcomingEventItemWithUUID(event->eventIdentifier());
    row->view()->updateColors();
    row->setOpensCalendar(opensCalendar_);
    row->setExists(true);
    row->setDay({cell->date(), cell->endDate()});
    upcomingEvents_.push_back(row);
    row->updateWithEvent(*event, times);
  }
  cell->removeUpcomingEventItems();
}

std::vector<std::shared_ptr<NSMenuItem>> StatInterfaceCalendar_Time::upcomingEventsItems() const {
  std::vector<std::shared_ptr<NSMenuItem>> items;
  for (const auto& row : upcomingEvents_)
    items.push_back(row->menuitem());
  return items;
}
