#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/EventKit/EKCalendar.h"
#include "Platform/EventKit/EKEvent.h"
#include "Platform/Foundation/Time/NSDate.h"

/// Posted on `NSNotificationCenter::defaultCenter()`, on the main thread, when calendars or events
/// may have changed since they were last asked for. Many changes in a short time are one.
constexpr std::string_view EKEventStoreChangedNotification = "EKEventStoreChangedNotification";

/// Where stores find calendars, and who the user is.
struct EKCalendarPlaces {
  /// Folders of iCalendar files, in the vdir convention: each folder in them is a calendar, and
  /// .ics files directly in them are one more. "~/" at a path's beginning is the home folder.
  /// Nothing:
  /// `~/.calendars` and `$XDG_DATA_HOME/calendars`.
  std::optional<std::vector<std::string>> folders;
  /// Mail addresses of the current user, in any case of letters, with or without "mailto:".
  std::vector<std::string> userAddresses;
  /// Whether the calendars of the desktop are asked too, and its mail accounts for addresses.
  bool includesDesktop = true;
};

/// Which events are asked for: those that have a part of [start, end), or that have no length and
/// lie in it.
struct EKEventPredicate {
  NSDate start;
  NSDate end;
  std::vector<std::shared_ptr<const EKCalendar>> calendars;
};

/// The user's calendars, from files and from the desktop. It is made and may be ended on the main
/// thread; while the last fetch runs on another one, it may end there. Asking reads files and talks
/// to other programs, so it is done on a queue: any thread may ask, several wait for each other.
/// What cannot be read is left out and told in the log; nothing here throws.
class EKEventStore {
 public:
  using EventBlock = std::function<void(const std::shared_ptr<const EKEvent>& event, bool& stop)>;

  /// What stores made by mask are made for: asked each time, on the main thread. Without it, or
  /// when it is null, stores have the usual places and no addresses.
  static void setDefaultPlaces(std::function<EKCalendarPlaces()> places);

  /// `entityMask` is 0: access is not asked for, since files and services decide on it themselves.
  explicit EKEventStore(uint64_t entityMask);
  explicit EKEventStore(const EKCalendarPlaces& places);
  EKEventStore(const EKEventStore&) = delete;
  EKEventStore& operator=(const EKEventStore&) = delete;
  ~EKEventStore();

  /// All calendars for entity type 0, which is events; none for any other. Those of folders come
  /// first, by their paths.
  std::vector<std::shared_ptr<const EKCalendar>> calendarsForEntityType(uint64_t entityType) const;

  /// The identifiers of calendars that the user has switched off on the desktop. For the list
  /// "DisabledCalendars"/"MainWindow" of the preferences domain "com.apple.iCal": this store does
  /// not leave them out itself. As of the last call of `calendarsForEntityType`.
  std::vector<std::string> hiddenCalendarIdentifiers() const;

  EKEventPredicate predicateForEventsWithStartDate(
      const NSDate& start, const NSDate& end,
      std::vector<std::shared_ptr<const EKCalendar>> calendars) const;

  /// Calls `block` with each event, by start, all-day events first, then by title, until it sets
  /// `stop`. An exception of the block reaches the caller.
  void enumerateEventsMatchingPredicate(const EKEventPredicate& predicate,
                                        const EventBlock& block) const;

 private:
  class Implementation;
  const std::shared_ptr<Implementation> implementation_;
};
