#pragma once

// For the platform's own sources only: lines of text through Pango.

#include <string_view>

#include "Platform/AppKit/Text/NSFont.h"

struct _cairo;

/// The advance of a line of text in points, at no particular scale.
double textLineWidth(std::string_view text, const NSFont& font);

/// Draws a line in the current source colour, its baseline starting at the origin of a user space
/// with y downwards.
void showTextLine(_cairo* cairo, std::string_view text, const NSFont& font);

/// The digits that lines are kept without.
inline bool isTextDigit(char character) { return character >= '0' && character <= '9'; }

/// Whether the digits 0 to 9 of a line can be put for others there, at that many pixels a point,
/// without anything else changing.
bool hasExchangeableDigits(std::string_view text, const NSFont& font, double scale);

/// The advance in points of the line that `showTextLine` shows: at its scale letters stand on other
/// pixels than where they were measured.
double shownTextLineWidth(_cairo* cairo, std::string_view text, const NSFont& font);
