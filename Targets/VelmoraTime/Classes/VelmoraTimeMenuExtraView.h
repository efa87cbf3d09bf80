#pragma once

#include <cstdint>

#include "Targets/VelmoraTime/Classes/ZEVMenuExtraClockView.h"

/// The Time module's content in the bar: the moment to show and the phase of the separators.
class VelmoraTimeMenuExtraView : public ZEVMenuExtraClockView_Time {
 public:
  void init(NSRect frame, ZEVMenuExtra_Time& extra);

  void loadConfig() override;
  /// Stamps the present time and turns the separators' phase over.
  void update() override;
  int64_t drawAtOffset(int64_t offset) override;

  /// Seconds since 1970 of the last tick; 0 before the first.
  double time() const { return time_; }
  int32_t flashState() const { return flashState_; }

 private:
  int32_t flashState_ = 0;
  double time_ = 0;
};
