#pragma once

#include <cstdint>

#include "Platform/SystemUIPlugin/NSMenuExtra.h"

class ZEVModularExtra;
class ZEVModule_Time;

/// The one real view of an extra, the frame of all drawing: asks each module's content to draw at a
/// running offset, takes the final offset as the item's width and fits the slot to it in the same
/// pass.
class ZEVMenuExtraView_Time : public NSMenuExtraView {
 public:
  ZEVMenuExtraView_Time(NSRect frame, ZEVModularExtra& extra);

  /// With `zero` a change of width first sets the slot's length to 0.
  bool zero() const { return zero_; }
  void setZero(bool zero) { zero_ = zero; }
  bool isMenuDown() const { return isMenuDown_; }
  /// The width last given to the slot, in whole points.
  int64_t lastSize() const { return lastSize_; }
  void setLastSize(int64_t size) { lastSize_ = size; }

  void drawRect(NSRect rect) override;

 private:
  /// Draw and answer the width, 4 if nothing was drawn; of a combined extra only the modules that
  /// the settings list, or an icon if there are none.
  int64_t drawModules();
  int64_t drawCombinedModules();
  int64_t drawModule(ZEVModule_Time& module, int64_t offset);
  void fitSlot(int64_t width);

  ZEVModularExtra& extra_;
  bool zero_ = false;
  bool isMenuDown_ = false;
  int64_t lastSize_ = 0;
};
