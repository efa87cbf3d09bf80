#include "Hosts/Bar/DigitCells.h"

#include <algorithm>
#include <string>

namespace {

/// The cells cost some dozens of drawings. Whatever changes in other ways before this is not worth
/// them.
constexpr int WorthwhileChanges = 3;

/// More than the longest date and time have; a row of clocks would hold its second up.
constexpr size_t MaximumDigits = 20;

}  // namespace

std::optional<PixelRect> DigitCells::exchange(const DrawingList& before, const DrawingList& after,
                                              const Draw& draw, std::span<uint32_t> pixels,
                                              int width) {
  const std::string from = before.digits();
  const std::string to = after.digits();
  if (from.size() != to.size() || before.withDigits(to) != after) {
    forget();
    return {};
  }
  if (changes_ < WorthwhileChanges && ++changes_ == WorthwhileChanges) {
    cells_ = makeCells(after, draw, width);
  }
  if (cells_.empty()) return {};
  PixelRect changed;
  for (size_t place = 0; place < to.size(); ++place) {
    if (from[place] == to[place]) continue;
    const auto& [frame, digits] = cells_[place];
    auto pixel = digits[static_cast<size_t>(to[place] - '0')].begin();
    for (int y = frame.y; y < frame.y + frame.height; ++y) {
      std::copy_n(pixel, frame.width, pixels.begin() + y * width + frame.x);
      pixel += frame.width;
    }
    changed = united(changed, frame);
  }
  return changed;
}

void DigitCells::forget() {
  changes_ = 0;
  cells_.clear();
}

std::vector<DigitCells::Cell> DigitCells::makeCells(const DrawingList& list, const Draw& draw,
                                                    int width) {
  const size_t count = list.digits().size();
  if (count > MaximumDigits || !list.hasEvenDigits()) return {};
  std::vector<Cell> cells;
  for (size_t place = 0; place < count; ++place) {
    Cell cell = makeCell(list, place, draw, width);
    const auto overlaps = [&](const Cell& other) { return intersect(cell.frame, other.frame); };
    if (std::ranges::any_of(cells, overlaps)) return {};
    cells.push_back(std::move(cell));
  }
  return cells;
}

DigitCells::Cell DigitCells::makeCell(const DrawingList& list, size_t place, const Draw& draw,
                                      int width) {
  std::array<Pixels, 10> pictures;
  Cell cell;
  std::string digits = list.digits();
  const auto pictureOf = [width](const Pixels& pixels) {
    return PixelPicture{pixels, width, static_cast<int>(pixels.size()) / width, width};
  };
  for (size_t digit = 0; digit < pictures.size(); ++digit) {
    digits[place] = static_cast<char>('0' + digit);
    pictures[digit] = draw(list.withDigits(digits));
    cell.frame = united(cell.frame, difference(pictureOf(pictures[0]), pictureOf(pictures[digit])));
  }
  for (size_t digit = 0; digit < pictures.size(); ++digit) {
    for (int y = cell.frame.y; y < cell.frame.y + cell.frame.height; ++y) {
      const auto row = pictures[digit].begin() + y * width + cell.frame.x;
      cell.digits[digit].insert(cell.digits[digit].end(), row, row + cell.frame.width);
    }
  }
  return cell;
}
