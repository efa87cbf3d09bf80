#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/Foundation/Notifications/DelegateList.h"
#include "Platform/Foundation/RunLoop/NSTimer.h"
#include "Targets/Shared/StatCollector.h"

class MoonStatCollector;

/// Who wants to know of the Moon: told once a minute, with mode 0.
class MoonStatCollectorDelegate {
 public:
  virtual ~MoonStatCollectorDelegate() = default;
  virtual void collectorUpdatedForMode(const MoonStatCollector& collector, int32_t mode) = 0;
};

/// The Moon's present phase, for the whole module. Main thread only. A delegate may add and remove
/// delegates, and end the collector, while it is told.
class MoonStatCollector : public StatCollector,
                          public std::enable_shared_from_this<MoonStatCollector> {
 public:
  /// Made at the first call, with its timer; the first values come with `updateCurrentPhase`.
  static std::shared_ptr<MoonStatCollector> sharedMoonCollector();

  /// Drops the shared collector, which stops its timer and tells nobody any more.
  static void cleanup();

  /// Delegates are not owned; the handle removes one, too. Told in the order of adding.
  Registration addDelegate(MoonStatCollectorDelegate& delegate) { return delegates_.add(delegate); }
  void removeDelegate(MoonStatCollectorDelegate& delegate) { delegates_.remove(delegate); }
  std::vector<MoonStatCollectorDelegate*> delegates() const { return delegates_.all(); }

  /// Works the phase out for the present moment and tells the delegates.
  void updateCurrentPhase();

  /// The phase index, 0 to 7 from new moon to waning crescent.
  int32_t phase() const { return phase_; }
  /// Days since new moon.
  double age() const { return age_; }
  /// The illuminated fraction of the disc, 0 to 1.
  double illumination() const { return illumination_; }

 private:
  MoonStatCollector();

  DelegateList<MoonStatCollectorDelegate> delegates_;
  int32_t phase_ = 0;
  double age_ = 0;
  double illumination_ = 0;
  std::unique_ptr<NSTimer> currentPhaseTimer_;
};
