#pragma once

#include <functional>
#include <memory>

#include "Platform/EventKit/CalendarSource_p.h"

/// The calendars of the desktop's Evolution Data Server, through a plug-in that is loaded when they
/// are first asked for, and only where the service is installed and the session has a bus.
/// Elsewhere there are none, and nothing is said of it.
class DesktopCalendars : public CalendarSource {
 public:
  /// `changed` is called on the main thread.
  explicit DesktopCalendars(std::function<void()> changed);

  Calendars calendars() override;
  std::vector<std::shared_ptr<const EKEvent>> events(
      const TimeSpan& span, const std::unordered_set<std::string>& calendars,
      const AddressSet& userAddresses) override;

 private:
  std::function<void()> changed_;
  std::unique_ptr<CalendarSource> plugin_;
  bool isLoaded_ = false;  ///< It was tried.
};

/// What the plug-in exports under `MakeDesktopCalendarsSymbol`: it makes the source.
using MakeDesktopCalendarsFunction = void (*)(std::function<void()> changed,
                                              std::unique_ptr<CalendarSource>& made);
constexpr const char* MakeDesktopCalendarsSymbol = "VelmoraMakeDesktopCalendars";
