#include "Platform/EventKit/EKEventStore.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <mutex>
#include <utility>

#include "Platform/EventKit/CalendarFolders_p.h"
#include "Platform/EventKit/DesktopCalendars_p.h"
#include "Platform/EventKit/MailAddress_p.h"
#include "Platform/EventKit/SourceQueue_p.h"
#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/SharedInstance.h"

namespace {

using Events = std::vector<std::shared_ptr<const EKEvent>>;

constexpr int64_t Pause = 333'000'000;  ///< Nanoseconds.

std::function<EKCalendarPlaces()>& defaultPlaces() {
  static std::function<EKCalendarPlaces()> places;
  return places;
}

bool comesBefore(const std::shared_ptr<const EKEvent>& a, const std::shared_ptr<const EKEvent>& b) {
  if (a->startDate() != b->startDate()) return a->startDate() < b->startDate();
  if (a->isAllDay() != b->isAllDay()) return a->isAllDay();
  if (a->title() != b->title()) return a->title() < b->title();
  return a->eventIdentifier() < b->eventIdentifier();
}

/// Every second that a calendar can name, and no more than a number can hold.
int64_t secondOf(double seconds) {
  constexpr double Furthest = 4e11;  // Beyond the year 9999.
  return static_cast<int64_t>(std::clamp(seconds, -Furthest, Furthest));
}

std::vector<std::filesystem::path> foldersOf(const EKCalendarPlaces& places) {
  std::vector<std::filesystem::path> folders;
  if (!places.folders) {
    return {resolvedPath("~/.calendars"), resolvedPath("~/Library/Application Support/calendars")};
  }
  for (const std::string& folder : *places.folders) {
    // The last part is the name of a calendar.
    const auto path = std::filesystem::absolute(resolvedPath(folder)).lexically_normal();
    folders.push_back(path.has_filename() ? path : path.parent_path());
  }
  return folders;
}

}  // namespace

class EKEventStore::Implementation : public std::enable_shared_from_this<Implementation> {
 public:
  explicit Implementation(const EKCalendarPlaces& places) {
    for (const std::string& address : places.userAddresses)
      givenAddresses_.insert(mailAddress(address));
  }

  /// Makes the sources, which tell this of changes.
  void start(const EKCalendarPlaces& places) {
    const auto changed = [watched = weak_from_this()] {
      if (const auto self = watched.lock()) self->noteChange();
    };
    sources_.emplace_back(std::make_shared<CalendarFolders>(foldersOf(places), changed),
                          "calendar folders", changed);
    if (places.includesDesktop) {
      sources_.emplace_back(std::make_shared<DesktopCalendars>(changed), "desktop calendars",
                            changed);
    } else {
      sources_.front().setAlone();
    }
  }

  std::vector<std::shared_ptr<const EKCalendar>> calendars() {
    const std::lock_guard guard(mutex_);
    std::vector<std::shared_ptr<const EKCalendar>> all;
    hidden_.clear();
    userAddresses_ = givenAddresses_;
    for (SourceQueue& source : sources_) {
      const auto found = source.ask<CalendarSource::Calendars>(
          [](CalendarSource& asked) { return asked.calendars(); });
      if (!found) continue;
      all.insert(all.end(), found->all.begin(), found->all.end());
      hidden_.insert(hidden_.end(), found->hidden.begin(), found->hidden.end());
      userAddresses_.insert(found->userAddresses.begin(), found->userAddresses.end());
    }
    return all;
  }

  std::vector<std::string> hidden() {
    const std::lock_guard guard(mutex_);
    return hidden_;
  }

  Events events(const EKEventPredicate& predicate) {
    const std::lock_guard guard(mutex_);
    const TimeSpan span{secondOf(std::floor(predicate.start.timeIntervalSince1970())),
                        secondOf(std::ceil(predicate.end.timeIntervalSince1970()))};
    std::unordered_set<std::string> wanted;
    for (const auto& calendar : predicate.calendars)
      wanted.insert(calendar->calendarIdentifier());
    Events events;
    for (SourceQueue& source : sources_) {
      const auto found = source.ask<Events>([=, addresses = userAddresses_](CalendarSource& asked) {
        return asked.events(span, wanted, addresses);
      });
      if (found) events.insert(events.end(), found->begin(), found->end());
    }
    std::sort(events.begin(), events.end(), comesBefore);
    return events;
  }

 private:
  /// On the main thread. The first change starts a pause, at whose end all are told as one.
  void noteChange() {
    if (pause_) return;
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    pause_ = loop.scheduleAt(loop.now() + Pause, [watched = weak_from_this()] {
      const auto self = watched.lock();
      if (!self) return;
      self->pause_.reset();
      NSNotificationCenter::defaultCenter().postNotification(EKEventStoreChangedNotification);
    });
  }

  NSRunLoop::Timer pause_;
  std::mutex mutex_;
  std::vector<SourceQueue> sources_;
  AddressSet givenAddresses_;
  AddressSet userAddresses_;
  std::vector<std::string> hidden_;
};

void EKEventStore::setDefaultPlaces(std::function<EKCalendarPlaces()> places) {
  defaultPlaces() = std::move(places);
  onSharedInstancesReset([] { defaultPlaces() = nullptr; });
}

EKEventStore::EKEventStore(uint64_t)
    : EKEventStore(defaultPlaces() ? defaultPlaces()() : EKCalendarPlaces{}) {}

EKEventStore::EKEventStore(const EKCalendarPlaces& places)
    : implementation_(std::make_shared<Implementation>(places)) {
  implementation_->start(places);
}

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
