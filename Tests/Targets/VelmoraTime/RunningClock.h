#pragma once

#include <functional>
#include <memory>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Targets/VelmoraTime/CalendarStatCollector.h"
#include "Targets/VelmoraTime/Classes/VelmoraTime.h"
#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"
#include "Targets/VelmoraTime/Classes/ZEVTimeModule.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Targets/Shared/FakeExtra.h"
#include "Tests/Targets/SimulatedTime.h"

/// The Time extra in a slot, started at a moment of simulated time and followed by a delegate.
class RunningClock : public ZEVModuleDelegate {
 public:
  explicit RunningClock(double now) : time(now) {
    slot.setExtra(extra);
    extra->init(slot, NSBundle());
    // The extra starts with the first pass of its clock.
    time.loop.runPending();
    registration_ = module().addDelegate(*this);
  }

  /// Cities and events come from queues of their own, which may still want the main loop.
  ~RunningClock() override {
    waitForCities();
    waitForEvents();
  }

  void waitForEvents() {
    dispatch_sync(CalendarStatCollector::sharedCalendarCollector()->queue(), [] {});
    time.loop.runPending();
  }

  /// Until nothing is under way on the cities' queue: all work there holds the collector, and while
  /// it tells its listeners, these too.
  void waitForCities() {
    const auto& cities = CityStatCollector_Time::sharedCityStatCollector();
    EXPECT_TRUE(waitUntil([&] { return cities.weak_from_this().use_count() == 1; }));
    time.loop.runPending();
  }

  void update() override {
    if (onTick) onTick();
  }
  void updateSize() override {
    if (onSize) onSize();
  }

  ZEVTimeModule_Time& module() {
    return dynamic_cast<ZEVTimeModule_Time&>(*extra->modules()->front());
  }
  VelmoraTimeMenuExtraView& view() {
    return dynamic_cast<VelmoraTimeMenuExtraView&>(*module().view());
  }

  void post(const char* name, const PropertyList::Dictionary& userInfo = {}) {
    NSDistributedNotificationCenter::defaultCenter().postNotification(name, userInfo);
    time.loop.runPending();
  }

  std::function<void()> onTick;
  std::function<void()> onSize;
  SimulatedTime time;
  FakeSlot slot;
  std::shared_ptr<VelmoraTime> extra = std::make_shared<VelmoraTime>();

 private:
  Registration registration_;
};
