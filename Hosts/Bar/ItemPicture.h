#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Hosts/Bar/DigitCells.h"
#include "Hosts/Display/Display.h"
#include "Platform/AppKit/Drawing/DrawingList.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"

/// Where an item stands on a bar and what the display asks of its picture.
struct ItemPlace {
  double barWidth = 0;  ///< Points.
  double scale = 1;     ///< Pixels a point.
  int pixelGrid = 1;    ///< See `BarSurface::pixelGrid`.

  bool operator==(const ItemPlace&) const = default;
};

/// The finished picture of an item at the bar's right end, on the bar's background. It is drawn
/// anew only when the item draws something else than before, for which no pixel is touched.
class ItemPicture {
 public:
  /// What stays free between the item and the bar's right end, in points.
  static constexpr double RightMargin = 8;

  /// Lets the slot draw. Returns whether the picture has changed.
  bool render(const NSMenuBarSlot& slot, const ItemPlace& place,
              const std::vector<uint32_t>& background);

  /// Forgets the picture, so that the next one counts as changed everywhere.
  void forget();

  PixelPicture pixels() const { return {pixels_, frame_.width, frame_.height, frame_.width}; }
  /// The picture's frame on the bar, in pixels from its upper left corner.
  const PixelRect& frame() const { return frame_; }
  /// The words of the item, in drawing order.
  std::string words() const { return drawing_.joinedText(); }
  /// What differs from the picture before, in pixels of this one.
  const PixelRect& changed() const { return changed_; }
  /// The item's left edge on the bar, in points. All from here to the bar's end belongs to it.
  double leftEdge() const { return leftEdge_; }

 private:
  static DrawingList settledDrawing(const NSMenuBarSlot& slot, double scale);
  PixelRect frameFor(double width) const;
  std::vector<uint32_t> pictureOf(const DrawingList& drawing) const;

  ItemPlace place_;
  DrawingList drawing_;
  std::vector<uint32_t> background_;
  std::vector<uint32_t> pixels_;
  PixelRect frame_;
  PixelRect changed_;
  double leftEdge_ = 0;
  DigitCells digits_;
};
