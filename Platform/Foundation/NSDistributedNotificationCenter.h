#pragma once

#include "Platform/Foundation/NSNotificationCenter.h"

/// Notifications between processes: a signal on the D-Bus session bus. Handlers run on the main
/// run loop, also for what this process posts itself. Without a bus it works inside the process.
///
/// The user information consists of texts; values of other kinds are left out.
class NSDistributedNotificationCenter {
 public:
  static NSDistributedNotificationCenter& defaultCenter();

  virtual ~NSDistributedNotificationCenter() = default;

  [[nodiscard]] virtual NSObservation addObserver(std::string_view name,
                                                  NSNotificationHandler handler) = 0;

  /// Returns when the bus has the signal, so that a process may end right after it.
  virtual void postNotification(std::string_view name,
                                const PropertyList::Dictionary& userInfo = {}) = 0;
};
