#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Targets/Shared/Views/ZEVMenuExtraContentView.h"
#include "Targets/VelmoraTime/Classes/ClockElements.h"
#include "Targets/VelmoraTime/Classes/ClockLine.h"

/// What the clock adds to a content view: the walk of a format list through the slot.
class ZEVMenuExtraClockView_Time : public ZEVMenuExtraContentView_Time {
 public:
  /// Draws a format list from a whole-point offset on, and answers where it ends. `flash` 1 makes
  /// the flashing separators visible; `time` is in seconds since 1970.
  int64_t drawTimeAtOffset(int64_t offset, double time, int64_t flash,
                           const ClockElements& components);

  /// The same without drawing: the pieces in the order in which they are read, which is that of
  /// drawing. `offset` moves on to the end.
  std::vector<ClockPiece> clockPieces(int64_t& offset, double time, int64_t flash,
                                      const ClockElements& components);

  /// Paints a calendar leaf with its lower left corner at a point.
  static void drawCalendarAtPoint(NSPoint point, std::string_view type, const NSDate& date,
                                  bool white);

  /// The picture of the moon; null while there is none.
  virtual std::shared_ptr<NSImage> moonImage() { return nullptr; }

  /// The bar's wording of the time in seconds since 1970.
  std::string fuzzyClock(double time) const;
};
