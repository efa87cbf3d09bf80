#pragma once

#include <string>
#include <vector>

#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Shared/Collectors/CityStatCollector.h"
#include "Targets/Shared/ZEVModule.h"
#include "Targets/VelmoraTime/MoonStatCollector.h"

class StatInterfaceTime_Time;
class VelmoraTimeMenuExtraView;

/// The one module of the Time extra. It runs the clock: a tick on the main thread that renews
/// itself, falls on the whole second and drives the content view, the delegates and the dropdown,
/// in this order. And it hears of everything that can change the clock from outside. Main thread
/// only.
class ZEVTimeModule_Time : public ZEVModule_Time,
                           public CityStatCollectorDelegate,
                           public MoonStatCollectorDelegate {
 public:
  ~ZEVTimeModule_Time() override;

  std::string moduleName() const override;
  /// The dropdown, made at the latest by the first call; null before `setup`.
  std::shared_ptr<NSMenu> menu() override;
  std::shared_ptr<ZEVMenuItem_Time> combinedItem() override;
  void themeChange() override;
  void loadViewWithExtra(ZEVModularExtra& extra) override;
  void setup() override;
  void loadNotifications() override;
  void willUnload() override;

  /// One pass of the tick; the next is already on its way when the work begins.
  void updateClocks();

  /// Shows the clocks of the cities that are there now, on the main thread; called on the
  /// collector's queue.
  void cityCollectorFinishedLoading() override;

  /// Gives the menu bar's Moon its phase. Only the shared collector in mode 0 is listened to.
  void collectorUpdatedForMode(const MoonStatCollector& collector, int32_t mode) override;

  /// Takes over a setting that another process has changed: "key" names it, "resetKey" what to
  /// rebuild.
  void preferencesChanged(const NSNotification& notification);

  /// The system's clock, zone or customs have changed: acts one second later, once for each call.
  void externalChange(const NSNotification& notification);

 private:
  void externalChange();
  void partialUnload();
  void leaveCollectors();
  void citiesLoaded();
  void makeInterface();
  /// Switches the collector of events on or off.
  void updateEventCollector();
  void updateInterface(const NSNotification& change);
  std::shared_ptr<ZEVTimeModule_Time> self();

  /// What `view` is in this module.
  std::shared_ptr<VelmoraTimeMenuExtraView> clockView_;
  std::shared_ptr<MoonStatCollector> moonCollector_;
  Registration moonRegistration_;
  /// The controller of the dropdown; null until soon after `setup`.
  std::shared_ptr<StatInterfaceTime_Time> interface_;
  bool awaitsInterface_ = false;
  bool cancelled_ = false;
  std::vector<NSObservation> observations_;
};
