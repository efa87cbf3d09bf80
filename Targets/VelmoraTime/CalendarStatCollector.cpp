#include "Targets/VelmoraTime/CalendarStatCollector.h"

#include <algorithm>
#include <utility>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/SharedInstance.h"

namespace {

std::shared_ptr<CalendarStatCollector>& sharedInstance() {
  static std::shared_ptr<CalendarStatCollector> collector;
  return collector;
}

bool isWanted(const EKEvent& event) {
  const bool isDeclined = std::ranges::any_of(event.attendees(), [](const EKParticipant& attendee) {
    return attendee.isCurrentUser && attendee.participantStatus == EKParticipantStatus::Declined;
  });
  return !isDeclined && event.status() != EKEventStatus::Canceled;
}

}  // namespace

std::shared_ptr<CalendarStatCollector> CalendarStatCollector::sharedCalendarCollector() {
  if (!sharedInstance()) {
    sharedInstance().reset(new CalendarStatCollector);
    onSharedInstancesReset(cleanup);
  }
  return sharedInstance();
}

void CalendarStatCollector::cleanup() {
  if (const auto collector = std::exchange(sharedInstance(), nullptr)) {
    collector->removeNotifications();
  }
}

CalendarStatCollector::CalendarStatCollector()
    : queue_(dispatch_queue_create("com.wenmark.calenderstatcollector")) {}

void CalendarStatCollector::setEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled ? didEnable() : didDisable();
  enabled_ = enabled;
}

void CalendarStatCollector::didDisable() {
  removeNotifications();
  const std::lock_guard guard(mutex_);
  eventStore_.reset();
  cache_.reset();
}

void CalendarStatCollector::checkCalendarAccess() {
  const std::lock_guard guard(mutex_);
  if (eventStore_) return;
  eventStore_ = std::make_shared<EKEventStore>(0);
  needsToUpdate_ = true;
  storeObservation_ = NSNotificationCenter::defaultCenter().addObserver(
      EKEventStoreChangedNotification, [this](const NSNotification&) { externalEventChange(); });
}

void CalendarStatCollector::externalEventChange() {
  needsToUpdate_ = true;
  NSNotificationCenter::defaultCenter().postNotification("VelmoraEventsChanged");
}

std::vector<std::string> CalendarStatCollector::hiddenCalendarIdentifiers() const {
  const std::lock_guard guard(mutex_);
  return hiddenCalendars_;
}

EventList CalendarStatCollector::fetchEventsBetweenDates(const NSDate& start, const NSDate& end) {
  // Taken back before the store is asked, so that a change in the meantime is not lost.
  const bool hasChanged = needsToUpdate_.exchange(false);
  std::shared_ptr<EKEventStore> store;
  {
    const std::lock_guard guard(mutex_);
    if (hasChanged) cache_.reset();
    if (cache_ && cache_->start == start && cache_->end == end) return cache_->events;
    store = eventStore_;
  }
  EventList events;
  if (store) events = fetchFromStore(*store, start, end);
  const std::lock_guard guard(mutex_);
  // Whoever has let go of the store meanwhile wants nothing of it.
  if (store == eventStore_) cache_ = {start, end, events};
  return events;
}

EventList CalendarStatCollector::fetchFromStore(EKEventStore& store, const NSDate& start,
                                                const NSDate& end) {
  EventList events;
  NSRunLoop::guarded([&] {
    const auto calendars = store.calendarsForEntityType(0);
    {
      const std::lock_guard guard(mutex_);
      hiddenCalendars_ = store.hiddenCalendarIdentifiers();
    }
    const auto predicate = store.predicateForEventsWithStartDate(start, end, calendars);
    store.enumerateEventsMatchingPredicate(predicate,
                                           [&](const std::shared_ptr<const EKEvent>& event, bool&) {
                                             if (event && isWanted(*event)) events.push_back(event);
                                           });
  });
  return events;
}
