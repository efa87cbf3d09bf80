#pragma once

#include <cstdint>

#include "Targets/VelmoraTime/Classes/MoonPhaseView.h"
#include "Targets/VelmoraTime/Classes/ZEVMenuExtraClockView.h"

/// The Time module's content in the bar: the moment to show, the phase of the separators and the
/// Moon.
class VelmoraTimeMenuExtraView : public ZEVMenuExtraClockView_Time {
 public:
  void init(NSRect frame, ZEVModularExtra& extra);

  void loadConfig() override;
  /// Stamps the present time and turns the separators' phase over.
  void update() override;
  int64_t drawAtOffset(int64_t offset) override;

  MoonPhaseView_Time& moon() { return moon_; }
  std::shared_ptr<NSImage> moonImage() override { return moon_.image(); }

  /// Seconds since 1970 of the last tick; 0 before the first.
  double time() const { return time_; }
  int32_t flashState() const { return flashState_; }

 private:
  int32_t flashState_ = 0;
  double time_ = 0;
  MoonPhaseView_Time moon_{NSMakeRect(0, 2, 16, 16)};
};
