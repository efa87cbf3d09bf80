#include "Platform/Foundation/DesktopWatch.h"

#include "Platform/Foundation/DesktopSettings.h"
#include "Platform/Foundation/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/NSRunLoop.h"

void startDesktopWatch(std::string_view notificationName) {
  if (notificationName == "NSSystemClockDidChangeNotification") {
    static const auto clock = makeSystemClockWatch();
    static const auto sleep = makeSleepWatch();
  } else if (notificationName == "NSSystemTimeZoneDidChangeNotification") {
    static const auto zone = makeTimeZoneWatch();
  } else if (notificationName == "AppleInterfaceThemeChangedNotification" ||
             notificationName == "AXInterfaceIncreaseContrastStatusDidChange") {
    watchDesktopSettings();
  }
}

void deliverDesktopNotification(std::string_view name) {
  NSRunLoop::guarded([&] { NSDistributedNotificationCenter::defaultCenter().deliver(name); });
}
