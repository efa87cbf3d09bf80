#pragma once

#include "Targets/Shared/Dropdown/StatInterfaceView.h"

/// The picture at the head of the Moon's submenu: a sky, 320 by 160.
class MoonDetailsBackground_Time : public StatInterfaceView_Time {
 public:
  using StatInterfaceView_Time::StatInterfaceView_Time;
  /// The sky is the same for every reader, and so is what stands on it.
  bool mirrorsSubviews() const override { return false; }
  void drawRect(NSRect rect) override;
};
