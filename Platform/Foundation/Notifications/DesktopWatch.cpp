#include "Platform/Foundation/Notifications/DesktopWatch_p.h"

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Settings/DesktopSettings_p.h"

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
