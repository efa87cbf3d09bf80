#pragma once

#include "Targets/Shared/Dropdown/StatInterfaceView.h"

/// A row with a rule across its middle.
class SpacerView_Time : public StatInterfaceView_Time {
 public:
  using StatInterfaceView_Time::StatInterfaceView_Time;
  void drawRect(NSRect rect) override;
};
