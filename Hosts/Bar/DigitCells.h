#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "Hosts/Display/Pixels.h"
#include "Platform/AppKit/Drawing/DrawingList.h"

/// The digits of an item's picture, all ten at each place, so that a second that changes nothing
/// else copies some pixels in place of drawing the whole. A place's cell is all that changes with
/// its digit; where cells overlap there are none.
class DigitCells {
 public:
  /// Draws a list as a whole picture.
  using Draw = std::function<std::vector<uint32_t>(const DrawingList&)>;

  /// Turns the picture of `before`, rows of `width`, into that of `after`. Returns what has
  /// changed; nothing, and the picture is as it was, if it must be drawn.
  std::optional<PixelRect> exchange(const DrawingList& before, const DrawingList& after,
                                    const Draw& draw, std::span<uint32_t> pixels, int width);

  /// For another place, scale or background.
  void forget();

 private:
  using Pixels = std::vector<uint32_t>;
  struct Cell {
    PixelRect frame;
    std::array<Pixels, 10> digits;
  };

  static std::vector<Cell> makeCells(const DrawingList& list, const Draw& draw, int width);
  static Cell makeCell(const DrawingList& list, size_t place, const Draw& draw, int width);

  int changes_ = 0;  ///< Of digits only, up to when the cells are made.
  std::vector<Cell> cells_;
};
