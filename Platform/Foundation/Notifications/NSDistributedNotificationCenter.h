#pragma once

#include "Platform/Foundation/Notifications/NSNotificationCenter.h"

/// Delivered to this process's observers when the session bus is there again, or late: what other
/// processes have posted meanwhile is lost, so what it told of is to be read again.
constexpr std::string_view NSDistributedNotificationsMayBeMissedNotification =
    "NSDistributedNotificationsMayBeMissedNotification";

/// Notifications between processes: a signal on the D-Bus session bus. Handlers run on the main
/// run loop, also for what this process posts itself. Without a bus, and while it is away, it works
/// inside the process.
///
/// What the desktop or the system tells (the clock set, the zone changed, a dark theme chosen)
/// comes under its name to whoever observes it; the first observer starts the watch.
///
/// The user information consists of texts; values of other kinds are left out.
class NSDistributedNotificationCenter {
 public:
  /// Waits, at the first call, until the session bus has answered.
  static NSDistributedNotificationCenter& defaultCenter();

  /// Begins to connect to the session bus, without waiting: a program that does so first of all
  /// has other work to do meanwhile.
  static void beginConnecting();

  virtual ~NSDistributedNotificationCenter() = default;

  [[nodiscard]] virtual NSObservation addObserver(std::string_view name,
                                                  NSNotificationHandler handler) = 0;

  /// Returns when the bus has the signal, so that a process may end right after it. A bus that does
  /// not answer is waited for two seconds.
  virtual void postNotification(std::string_view name,
                                const PropertyList::Dictionary& userInfo = {}) = 0;

  /// Calls this process's observers only, at once: for news that every process hears from the
  /// desktop itself.
  virtual void deliver(std::string_view name) = 0;
};
