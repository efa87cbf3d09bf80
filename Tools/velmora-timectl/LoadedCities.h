#pragma once

#include "Platform/Dispatch/Dispatch.h"
#include "Shared/Collectors/CityStatCollector.h"

/// Waits for the collector of cities, which loads on a queue of its own.
class LoadedCities : public CityStatCollectorDelegate {
 public:
  static CityStatCollector_Time& collector() {
    auto& collector = CityStatCollector_Time::sharedCityStatCollector();
    const auto waiting = std::make_shared<LoadedCities>();
    collector.addDelegate(waiting);
    collector.loadDatabase();
    dispatch_semaphore_wait(waiting->loaded_);
    return collector;
  }

  void cityCollectorFinishedLoading() override { dispatch_semaphore_signal(loaded_); }

 private:
  const dispatch_semaphore_t loaded_ = dispatch_semaphore_create(0);
};
