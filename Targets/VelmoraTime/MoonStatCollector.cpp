#include "Targets/VelmoraTime/MoonStatCollector.h"

#include <algorithm>
#include <utility>

#include "Platform/Foundation/NSDate.h"
#include "Targets/VelmoraTime/Classes/MoonData.h"

namespace {

constexpr double SecondsBetweenUpdates = 60;

std::shared_ptr<MoonStatCollector>& sharedInstance() {
  static std::shared_ptr<MoonStatCollector> collector;
  return collector;
}

}  // namespace

std::shared_ptr<MoonStatCollector> MoonStatCollector::sharedMoonCollector() {
  if (!sharedInstance()) sharedInstance().reset(new MoonStatCollector);
  return sharedInstance();
}

void MoonStatCollector::cleanup() {
  // Somebody may still hold the collector; it must be silent all the same.
  if (const auto collector = std::exchange(sharedInstance(), nullptr)) {
    collector->currentPhaseTimer_.reset();
  }
}

MoonStatCollector::MoonStatCollector()
    : currentPhaseTimer_(NSTimer::scheduledTimerWithTimeInterval(
          SecondsBetweenUpdates, [this] { updateCurrentPhase(); })) {}

void MoonStatCollector::addDelegate(MoonStatCollectorDelegate& delegate) {
  if (std::find(delegates_.begin(), delegates_.end(), &delegate) == delegates_.end()) {
    delegates_.push_back(&delegate);
  }
}

void MoonStatCollector::removeDelegate(MoonStatCollectorDelegate& delegate) {
  std::erase(delegates_, &delegate);
}

void MoonStatCollector::updateCurrentPhase() {
  phase_ = currentPhase(age_, illumination_, NSDate::date());
  const auto delegates = delegates_;
  for (MoonStatCollectorDelegate* delegate : delegates)
    delegate->collectorUpdatedForMode(*this, 0);
}
