#include "Targets/VelmoraTime/Classes/ZEVTimeModule.h"

#include <cmath>
#include <utility>

#include "Platform/Dispatch/Dispatch.h"
#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Settings/NSUserDefaults.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/Shared/Dropdown/ZEVMenuItem.h"
#include "Targets/Shared/ZEVModularExtra.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Calendar/CalendarPlaces.h"
#include "Targets/VelmoraTime/Calendar/HiddenCalendars.h"
#include "Targets/VelmoraTime/CalendarStatCollector.h"
#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTime.h"

namespace {

constexpr int64_t NanosecondsPerSecond = 1'000'000'000;
/// By then, in seconds after the start, the clock is on the screen.
constexpr double DropdownDelay = 0.1;

/// What is left of a moment's second, in nanoseconds; a whole second wherever the clock gives
/// nothing usable.
int64_t waitToNextSecond(double now) {
  const double delay = 1.0 - (now - std::floor(now));
  if (!(delay > 0.0 && delay <= 1.0)) return NanosecondsPerSecond;
  return static_cast<int64_t>(delay * static_cast<double>(NanosecondsPerSecond));
}

}  // namespace

std::string ZEVTimeModule_Time::moduleName() const {
  return WENLocalizedString("Time", "", "time");
}

std::shared_ptr<NSMenu> ZEVTimeModule_Time::menu() {
  makeInterface();
  return interface_ ? interface_->menu() : nullptr;
}

std::shared_ptr<ZEVMenuItem_Time> ZEVTimeModule_Time::combinedItem() {
  makeInterface();
  return interface_ ? interface_->combinedItem() : nullptr;
}

void ZEVTimeModule_Time::themeChange() {
  if (interface_) interface_->themeChange();
}

void ZEVTimeModule_Time::loadViewWithExtra(ZEVModularExtra& extra) {
  clockView_ = make<VelmoraTimeMenuExtraView>(NSMakeRect(0, 0, 20, NSMenuExtra::Height), extra);
  setView(clockView_);
}

// Collectors outlive a module that is dropped without having been unloaded.
ZEVTimeModule_Time::~ZEVTimeModule_Time() { leaveCollectors(); }

std::shared_ptr<ZEVTimeModule_Time> ZEVTimeModule_Time::self() {
  return std::static_pointer_cast<ZEVTimeModule_Time>(shared_from_this());
}

void ZEVTimeModule_Time::setup() {
  auto& cities = CityStatCollector_Time::sharedCityStatCollector();
  cities.addDelegate(self());
  cities.loadDatabase();
  EKEventStore::setDefaultPlaces(calendarPlacesFromSettings);
  prepareHiddenCalendars();
  updateEventCollector();
  updateClocks();
  // The clock is shown before the dropdown is there: nobody waits for that.
  awaitsInterface_ = true;
  performSelectorAfterDelay("makeInterface", DropdownDelay, [this] { makeInterface(); });
  // Last, so that the first phase lands on a finished view.
  moonCollector_ = MoonStatCollector::sharedMoonCollector();
  moonRegistration_ = moonCollector_->addDelegate(*this);
  moonCollector_->updateCurrentPhase();
}

void ZEVTimeModule_Time::makeInterface() {
  if (!std::exchange(awaitsInterface_, false)) return;
  cancelPreviousPerformRequests("makeInterface");
  interface_ = std::make_shared<StatInterfaceTime_Time>();
  interface_->loadClocks();
}

void ZEVTimeModule_Time::updateClocks() {
  if (cancelled_) return;
  // The next pass is scheduled before any work is done and aims at the wall clock anew each time:
  // a slow pass delays only itself, drift corrects itself, and passes never pile up.
  const int64_t wait = waitToNextSecond(NSDate::date().timeIntervalSince1970());
  dispatch_after(dispatch_time(DISPATCH_TIME_NOW, wait), dispatch_get_main_queue(),
                 [self = self()] { self->updateClocks(); });
  view()->update();
  delegates().tell([](ZEVModuleDelegate& delegate) { delegate.update(); });
  if (interface_) interface_->updateClocks();
}

void ZEVTimeModule_Time::loadNotifications() {
  auto& center = NSDistributedNotificationCenter::defaultCenter();
  for (const char* name :
       {"NSSystemClockDidChangeNotification", "NSSystemTimeZoneDidChangeNotification",
        "AppleDatePreferencesChangedNotification", "AppleTimePreferencesChangedNotification"}) {
    observations_.push_back(center.addObserver(
        name, [this](const NSNotification& notification) { externalChange(notification); }));
  }
  observations_.push_back(center.addObserver(
      "VelmoraTimePreferencesChanged",
      [this](const NSNotification& notification) { preferencesChanged(notification); }));
}

void ZEVTimeModule_Time::cityCollectorFinishedLoading() {
  // Weak: the last reference to a module must not go on another thread, nor wait for this news.
  dispatch_async(dispatch_get_main_queue(), [module = weak_from_this()] {
    if (const auto living = std::static_pointer_cast<ZEVTimeModule_Time>(module.lock())) {
      living->citiesLoaded();
    }
  });
}

void ZEVTimeModule_Time::citiesLoaded() {
  if (cancelled_ || !interface_) return;
  interface_->loadClocks();
  // A dropdown that was opened meanwhile has clocks without a time.
  interface_->updateClocks();
}

void ZEVTimeModule_Time::collectorUpdatedForMode(const MoonStatCollector& collector, int32_t mode) {
  if (mode != 0 || &collector != moonCollector_.get()) return;
  clockView_->moon().showPhase(collector.age(), collector.illumination());
}

void ZEVTimeModule_Time::preferencesChanged(const NSNotification& notification) {
  if (extra() != nullptr) extra()->refreshSetting(notification.textForKey("key"));
  if (notification.textForKey("resetKey") == "text") {
    ZEVRefreshKey("TimeMenubarTextSelected");
    ZEVRefreshKey("TimeMenubarText");
    view()->resetTextConfig();
  }
  if (notification.textForKey("resetKey") == "calendar") {
    const std::string key = notification.textForKey("key");
    if (key == "Time_CalendarFolders" || key == "Time_CalendarAddresses") {
      // The store knows its places from the beginning.
      CalendarStatCollector::sharedCalendarCollector()->setEnabled(false);
    }
    updateEventCollector();
  }
  if (interface_) updateInterface(notification);
  // The bar shows every change at once, without waiting for the next tick.
  const auto self = shared_from_this();
  delegates().tell([this](ZEVModuleDelegate& delegate) {
    delegate.updateSize();
    if (delegates().contains(delegate)) delegate.update();
  });
}

void ZEVTimeModule_Time::updateEventCollector() {
  CalendarStatCollector::sharedCalendarCollector()->setEnabled(
      ZEVBoolForKey("Time_CalendarEnabled") && ZEVBoolForKey("Time_CalendarShowEvents"));
}

void ZEVTimeModule_Time::updateInterface(const NSNotification& change) {
  const std::string resetKey = change.textForKey("resetKey");
  if (resetKey == "calendar") {
    interface_->updateCalendar();
    interface_->rebuildMenu();
  }
  if (resetKey == "cities") interface_->loadClocks();
  if (resetKey == "moon") interface_->rebuildMenu();
  if (resetKey == "citymode") interface_->updateCityMode();
  if (resetKey == "citynames") interface_->updateCityNames();
  NSRunLoop::guarded([&] {
    if (change.textForKey("key") == "Time_DropdownFormat") {
      interface_->updateMoonPhase();
      interface_->calendar().updateUpcomingEvents();
      interface_->rebuildMenu();
    }
    interface_->updateClocks();
  });
}

void ZEVTimeModule_Time::externalChange(const NSNotification&) {
  performSelectorAfterDelay("externalChange", 1.0, [this] { externalChange(); });
}

void ZEVTimeModule_Time::externalChange() {
  NSUserDefaults::standardUserDefaults().synchronize();
  NSTimeZone::resetSystemTimeZone();
  if (!interface_) return;
  // Events without a zone are at other moments now.
  CalendarStatCollector::sharedCalendarCollector()->externalEventChange();
  interface_->updateCalendar();
  // The phases to come are told in the system's zone, and counted from now.
  interface_->updateDate();
  interface_->updateMoonPhase();
}

void ZEVTimeModule_Time::willUnload() { partialUnload(); }

void ZEVTimeModule_Time::partialUnload() {
  cancelled_ = true;
  CalendarStatCollector::sharedCalendarCollector()->removeNotifications();
  cancelPreviousPerformRequests("externalChange");
  cancelPreviousPerformRequests("makeInterface");
  awaitsInterface_ = false;
  leaveCollectors();
  if (interface_) {
    interface_->stopTimers();
    interface_->removeNotifications();
  }
  observations_.clear();
  CalendarStatCollector::cleanup();
  delegates().clear();
}

void ZEVTimeModule_Time::leaveCollectors() {
  CityStatCollector_Time::sharedCityStatCollector().removeDelegate(*this);
  if (!moonCollector_) return;
  moonRegistration_.reset();
  moonCollector_.reset();
  MoonStatCollector::cleanup();
}
