#pragma once

// For the platform's own sources only: text that has become glyphs.

#include <cairo.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/AppKit/Text/NSFont.h"
#include "Platform/Foundation/LibraryHandle.h"

struct _PangoContext;

/// The glyphs of the digits of one font at one scale, where all are equally wide.
struct DigitGlyphs {
  std::array<uint32_t, 10> glyphs{};
  const cairo_scaled_font_t* font = nullptr;
};

/// One line of text, shaped for one scale. Its digits can be put for others without shaping it
/// anew: most of what changes in a clock.
class ShapedLine {
 public:
  ShapedLine(_PangoContext* context, std::string_view text, const NSFont& font);
  ShapedLine(const ShapedLine&) = delete;
  ShapedLine& operator=(const ShapedLine&) = delete;

  /// The advance in points.
  double width() const { return width_; }

  /// Draws in the current source colour, the baseline starting at the origin of a user space with y
  /// downwards.
  void show(cairo_t* cairo) const;

  /// Null if the digits are not the only glyphs of this line, which was shaped from "0123456789",
  /// or not equally wide.
  std::optional<DigitGlyphs> digits() const;

  /// Learns where its digits stand. False if they cannot be told apart from the rest.
  bool findDigits(std::string_view text, const DigitGlyphs& digits);
  /// `text` is the one that the line was shaped from but for its digits.
  void setDigits(std::string_view text, const DigitGlyphs& digits);

 private:
  struct Glyph {
    uint32_t index;
    double x;
    double y;
    int byte;  ///< Where its text begins.
  };
  struct Run {
    LibraryHandle<cairo_scaled_font_t, cairo_scaled_font_destroy> font;
    std::vector<Glyph> glyphs;
  };
  struct Digit {
    size_t run;
    size_t glyph;
    size_t byte;
  };

  std::vector<Run> runs_;
  std::vector<Digit> digits_;
  double width_ = 0;
};
