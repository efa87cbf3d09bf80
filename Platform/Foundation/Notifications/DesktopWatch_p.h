#pragma once

#include <memory>
#include <string_view>

/// A listener on the desktop or the system that turns what it hears into one of the notifications
/// that the code knows, delivered to this process's observers on the main run loop.
class DesktopWatch {
 public:
  virtual ~DesktopWatch() = default;
};

/// Starts whatever brings the notification of that name, once for the life of the process. A name
/// that no watch brings, such as another program's, needs nothing.
void startDesktopWatch(std::string_view notificationName);

/// The watches, each in a source file that begins with what it catches and what it misses.
std::unique_ptr<DesktopWatch> makeSystemClockWatch();
std::unique_ptr<DesktopWatch> makeTimeZoneWatch();
std::unique_ptr<DesktopWatch> makeSleepWatch();

/// Delivers a notification of a watch.
void deliverDesktopNotification(std::string_view name);
