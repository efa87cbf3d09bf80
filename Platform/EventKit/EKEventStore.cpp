#include "Platform/EventKit/EKEventStore.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <tuple>
#include <utility>

#include "Platform/EventKit/CalendarSource_p.h"

namespace {

std::function<EKCalendarPlaces()>& defaultPlaces() {
  static std::function<EKCalendarPlaces()> places;
  return places;
}

bool comesBefore(const std::shared_ptr<const EKEvent>& a, const std::shared_ptr<const EKEvent>& b) {
  const auto key = [](const EKEvent& event) {
    return std::tuple(event.startDate(), !event.isAllDay(), event.title(), event.eventIdentifier());
  };
  if (a->startDate() != b->startDate()) return a->startDate() < b->startDate();
  return key(*a) < key(*b);
}

}  // namespace

class EKEventStore::Implementation {
 public:
  std::vector<std::shared_ptr<const EKCalendar>> calendars() {
    const std::lock_guard guard(mutex_);
    std::vector<std::shared_ptr<const EKCalendar>> all;
    hidden_.clear();
    for (const auto& source : sources_) {
      CalendarSource::Calendars found = source->calendars();
      all.insert(all.end(), found.all.begin(), found.all.end());
      hidden_.insert(hidden_.end(), found.hidden.begin(), found.hidden.end());
    }
    return all;
  }

  std::vector<std::string> hidden() {
    const std::lock_guard guard(mutex_);
    return hidden_;
  }

  std::vector<std::shared_ptr<const EKEvent>> events(const EKEventPredicate& predicate) {
    const std::lock_guard guard(mutex_);
    const TimeSpan span{static_cast<int64_t>(std::floor(predicate.start.timeIntervalSince1970())),
                        static_cast<int64_t>(std::ceil(predicate.end.timeIntervalSince1970()))};
    std::unordered_set<std::string> wanted;
    for (const auto& calendar : predicate.calendars)
      wanted.insert(calendar->calendarIdentifier());
    std::vector<std::shared_ptr<const EKEvent>> events;
    for (const auto& source : sources_) {
      const auto found = source->events(span, wanted, {});
      events.insert(events.end(), found.begin(), found.end());
    }
    std::sort(events.begin(), events.end(), comesBefore);
    return events;
  }

 private:
  std::mutex mutex_;
  std::vector<std::unique_ptr<CalendarSource>> sources_;
  std::vector<std::string> hidden_;
};

void EKEventStore::setDefaultPlaces(std::function<EKCalendarPlaces()> places) {
  defaultPlaces() = std::move(places);
}

EKEventStore::EKEventStore(uint64_t)
    : EKEventStore(defaultPlaces() ? defaultPlaces()() : EKCalendarPlaces{}) {}

EKEventStore::EKEventStore(const EKCalendarPlaces&)
    : implementation_(std::make_shared<Implementation>()) {}

EKEventStore::~EKEventStore() = default;

std::vector<std::shared_ptr<const EKCalendar>> EKEventStore::calendarsForEntityType(
    uint64_t entityType) const {
  if (entityType != 0) return {};
  return implementation_->calendars();
}

std::vector<std::string> EKEventStore::hiddenCalendarIdentifiers() const {
  return implementation_->hidden();
}

EKEventPredicate EKEventStore::predicateForEventsWithStartDate(
    const NSDate& start, const NSDate& end,
    std::vector<std::shared_ptr<const EKCalendar>> calendars) const {
  return {start, end, std::move(calendars)};
}

void EKEventStore::enumerateEventsMatchingPredicate(const EKEventPredicate& predicate,
                                                    const EventBlock& block) const {
  bool stop = false;
  for (const auto& event : implementation_->events(predicate)) {
    block(event, stop);
    if (stop) return;
  }
}
