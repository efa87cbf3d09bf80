#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Foundation/NSGeometry.h"

/// One piece of a clock in the bar, with the point where it stands: a text at the lower left of its
/// line box, a picture at its lower left corner.
struct ClockPiece {
  enum class Kind { Text, Separator, Moon, Calendar };
  Kind kind;
  NSPoint point;
  std::string text;       ///< Of a text or separator; of a calendar leaf its type.
  bool isVisible = true;  ///< A hidden separator keeps its place.
  int64_t day = 0;        ///< Of a calendar leaf: the day of the month.
  bool isWhite = false;   ///< Of a calendar leaf: on a dark background.
};

/// What of a piece stands in one place of a line.
struct LinePart {
  size_t start = 0;  ///< In the line's text, in bytes.
  ClockPiece piece;
};

/// A line of texts and separators, cut where a separator or a change of the direction asks for it,
/// in the order in which it is shown from left to right. A line without separators stays whole: the
/// drawing of text orders it by itself. Blanks at the ends of a line that runs from right to left
/// stay at the ends where they are read, beside the icon that they keep apart from the text.
std::vector<LinePart> partsFromLeftToRight(const std::vector<ClockPiece>& line);
