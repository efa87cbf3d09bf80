#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Dispatch/Dispatch.h"
#include "Platform/EventKit/EKEventStore.h"
#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Targets/Shared/StatCollector.h"

using EventList = std::vector<std::shared_ptr<const EKEvent>>;

/// The one way to the user's calendars: which events lie between two dates. Keeps the answer for
/// the last range. Main thread, but for what is told otherwise.
class CalendarStatCollector : public StatCollector,
                              public std::enable_shared_from_this<CalendarStatCollector> {
 public:
  /// Made at the first call.
  static std::shared_ptr<CalendarStatCollector> sharedCalendarCollector();
  /// Drops the shared collector. A fetch that is on its way goes on and keeps it until then.
  static void cleanup();

  /// Whether the user wants events at all.
  bool isEnabled() const { return enabled_; }
  /// Switched off, it lets go of the store and of all events.
  void setEnabled(bool enabled);

  /// Opens the store if it is not open.
  void checkCalendarAccess();

  /// The events between two moments that are neither cancelled nor declined by the user, in the
  /// store's order; none without a store. Waits for the store: to be called on `queue` only.
  EventList fetchEventsBetweenDates(const NSDate& start, const NSDate& end);
  const dispatch_queue_t& queue() const { return queue_; }

  /// Whether the store has changed since the last fetch began. Any thread.
  bool needsToUpdate() const { return needsToUpdate_; }

  /// Calendars that the desktop hides, as of the last fetch. Any thread.
  std::vector<std::string> hiddenCalendarIdentifiers() const;

  /// The next fetch goes to the store; posts "VelmoraEventsChanged".
  void externalEventChange();
  /// Has `externalEventChange` no longer called by the store.
  void removeNotifications() { storeObservation_.reset(); }

 private:
  CalendarStatCollector();

  void didEnable() { needsToUpdate_ = true; }
  void didDisable();
  EventList fetchFromStore(EKEventStore& store, const NSDate& start, const NSDate& end);

  bool enabled_ = false;
  std::atomic<bool> needsToUpdate_ = false;
  const dispatch_queue_t queue_;
  NSObservation storeObservation_;

  struct Fetched {
    NSDate start;
    NSDate end;
    EventList events;
  };

  mutable std::mutex mutex_;  ///< Of all below; never held while the store is asked.
  std::optional<Fetched> cache_;
  std::shared_ptr<EKEventStore> eventStore_;
  std::vector<std::string> hiddenCalendars_;
};
