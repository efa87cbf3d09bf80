#include "Targets/VelmoraTime/Classes/ClockLine.h"

#include <algorithm>
#include <iterator>

#include "Platform/Foundation/Text/BidirectionalText.h"

namespace {

/// The parts of the line's pieces between two positions, in the order in which they are read.
std::vector<LinePart> partsBetween(const std::vector<ClockPiece>& line, size_t start, size_t end) {
  std::vector<LinePart> parts;
  size_t pieceStart = 0;
  for (const ClockPiece& piece : line) {
    const size_t pieceEnd = pieceStart + piece.text.size();
    const size_t from = std::max(start, pieceStart);
    const size_t to = std::min(end, pieceEnd);
    if (from < to) {
      parts.push_back({from, piece});
      parts.back().piece.text = piece.text.substr(from - pieceStart, to - from);
    }
    pieceStart = pieceEnd;
  }
  return parts;
}

}  // namespace

std::vector<LinePart> partsFromLeftToRight(const std::vector<ClockPiece>& line) {
  std::string text;
  for (const ClockPiece& piece : line)
    text += piece.text;
  const bool isRightToLeft = directionalLine(text).isRightToLeft;
  const size_t first = isRightToLeft ? std::min(text.find_first_not_of(' '), text.size()) : 0;
  const size_t last = isRightToLeft ? text.find_last_not_of(' ') + 1 : text.size();

  std::vector<LinePart> parts = partsBetween(line, 0, first);
  const auto add = [&](size_t start, size_t end, bool isReversed) {
    std::vector<LinePart> more = partsBetween(line, start, end);
    if (isReversed) std::reverse(more.begin(), more.end());
    std::move(more.begin(), more.end(), std::back_inserter(parts));
  };
  if (line.size() == 1) {
    add(first, last, false);
  } else {
    const std::string_view core = std::string_view(text).substr(first, last - first);
    for (const DirectionalRun& run : directionalLine(core).runs)
      add(first + run.start, first + run.end, run.isRightToLeft);
  }
  add(last, text.size(), false);
  return parts;
}
