#include "Platform/Foundation/Notifications/DesktopWatch_p.h"

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Settings/DesktopSettings_p.h"
#include "Platform/Foundation/SharedInstance.h"

void startDesktopWatch(std::string_view notificationName) {
  if (notificationName == "NSSystemClockDidChangeNotification") {
    static SharedInstance<DesktopWatch> clock;
    static SharedInstance<DesktopWatch> sleep;
    clock.get(makeSystemClockWatch);
    sleep.get(makeSleepWatch);
  } else if (notificationName == "NSSystemTimeZoneDidChangeNotification") {
    static SharedInstance<DesktopWatch> zone;
    zone.get(makeTimeZoneWatch);
  } else if (notificationName == "AppleInterfaceThemeChangedNotification" ||
             notificationName == "AXInterfaceIncreaseContrastStatusDidChange") {
    watchDesktopSettings();
  }
}

void deliverDesktopNotification(std::string_view name) {
  NSRunLoop::guarded([&] { NSDistributedNotificationCenter::defaultCenter().deliver(name); });
}
