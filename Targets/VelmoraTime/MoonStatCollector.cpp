#include "Targets/VelmoraTime/MoonStatCollector.h"

#include <utility>

#include "Platform/Foundation/SharedInstance.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Targets/VelmoraTime/Classes/MoonData.h"

namespace {

constexpr double SecondsBetweenUpdates = 60;

std::shared_ptr<MoonStatCollector>& sharedInstance() {
  static std::shared_ptr<MoonStatCollector> collector;
  return collector;
}

}  // namespace

std::shared_ptr<MoonStatCollector> MoonStatCollector::sharedMoonCollector() {
  if (!sharedInstance()) {
    sharedInstance().reset(new MoonStatCollector);
    onSharedInstancesReset(cleanup);
  }
  return sharedInstance();
}

void MoonStatCollector::cleanup() {
  // Somebody may still hold the collector; it must be silent all the same.
  if (const auto collector = std::exchange(sharedInstance(), nullptr)) {
    collector->currentPhaseTimer_.reset();
    collector->delegates_.clear();
  }
}

MoonStatCollector::MoonStatCollector()
    : currentPhaseTimer_(NSTimer::scheduledTimerWithTimeInterval(
          SecondsBetweenUpdates, [this] { updateCurrentPhase(); })) {}

void MoonStatCollector::updateCurrentPhase() {
  phase_ = currentPhase(age_, illumination_, NSDate::date());
  // Those who are told hold a reference to it.
  const auto kept = shared_from_this();
  delegates_.tell(
      [this](MoonStatCollectorDelegate& delegate) { delegate.collectorUpdatedForMode(*this, 0); });
}
