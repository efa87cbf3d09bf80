#pragma once

// For the platform's own sources only: lines of text through Pango.

#include <string_view>

#include "Platform/AppKit/Text/NSFont.h"

struct _cairo;

/// Above and below the baseline, in points, both positive.
struct FontHeights {
  double ascender = 0;
  double descender = 0;
};
FontHeights fontHeights(const NSFont& font);

/// The advance of a line of text in points, at no particular scale.
double textLineWidth(std::string_view text, const NSFont& font);

/// The same as drawn with so many pixels a point: letters stand on whole pixels there.
double textLineWidthAtScale(std::string_view text, const NSFont& font, double scale);

/// Pixels a point of what is drawn in that context now.
double scaleOfContext(_cairo* cairo);

/// Draws a line in the current source colour, its baseline starting at the origin of a user space
/// with y downwards.
void showTextLine(_cairo* cairo, std::string_view text, const NSFont& font);
