#include "Targets/VelmoraTime/Calendar/CalendarApplication.h"

#include <string>

#include "Platform/Dispatch/Dispatch.h"
#include "Platform/Foundation/Process/LaunchServices.h"

namespace {

constexpr LSRolesMask AnyRole = 4;
constexpr int64_t DelayOfLaunch = 100'000'000;

std::string calendarApplication() {
  return LSCopyDefaultRoleHandlerForContentType(UTTypeCreatePreferredIdentifierForTag("ics"),
                                                AnyRole);
}

}  // namespace

bool hasCalendarApplication() { return !calendarApplication().empty(); }

void openCalendarApplication() {
  dispatch_after(dispatch_time(DISPATCH_TIME_NOW, DelayOfLaunch), dispatch_get_main_queue(), [] {
    const std::string application = calendarApplication();
    if (!application.empty()) launchApplication(application);
  });
}
