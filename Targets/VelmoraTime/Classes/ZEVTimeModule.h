#pragma once

#include <string>
#include <vector>

#include "Platform/Foundation/NSNotificationCenter.h"
#include "Targets/Shared/ZEVModule.h"

/// The one module of the Time extra. It runs the clock: a tick on the main thread that renews
/// itself, falls on the whole second and drives the content view and then the delegates. And it
/// hears of everything that can change the clock from outside. Main thread only.
class ZEVTimeModule_Time : public ZEVModule_Time {
 public:
  std::string moduleName() const override;
  void loadViewWithExtra(ZEVMenuExtra_Time& extra) override;
  void setup() override;
  void loadNotifications() override;
  void willUnload() override;

  /// One pass of the tick; the next is already on its way when the work begins.
  void updateClocks();

  /// Takes over a setting that another process has changed: "key" names it, "resetKey" what to
  /// rebuild.
  void preferencesChanged(const NSNotification& notification);

  /// The system's clock, zone or customs have changed: acts one second later, once for each call.
  void externalChangeSoon();

 private:
  void externalChange();
  void partialUnload();

  bool cancelled_ = false;
  std::vector<NSObservation> observations_;
};
