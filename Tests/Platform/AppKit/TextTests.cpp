// Where text stands and how wide it is, on whatever interface font the machine has.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "Platform/AppKit/Text/NSFont.h"
#include "Platform/AppKit/Text/NSStringDrawing.h"
#include "Tests/Platform/Support/Pixels.h"

namespace {

constexpr double Height = 22;

NSTextAttributes attributesOfSize(double size) {
  NSTextAttributes attributes;
  attributes.font = NSFont::systemFontOfSize(size);
  return attributes;
}

Ink inkOfText(std::string_view text, NSPoint point, const NSTextAttributes& attributes,
              double scale) {
  BitmapSurface surface({100, Height}, scale);
  const NSCurrentGraphicsContext current(surface.context());
  drawAtPointWithAttributes(text, point, attributes);
  return inkOf(surface);
}

TEST(Fonts, HaveALineBoxAroundTheirSize) {
  for (const double size : {9.0, 13.0, 24.0}) {
    const NSFont font = NSFont::systemFontOfSize(size);
    EXPECT_EQ(font.pointSize(), size);
    EXPECT_GT(font.ascender(), 0.7 * size);
    EXPECT_GT(font.descender(), 0.1 * size);
    const double line = font.ascender() + font.descender();
    EXPECT_GE(line, size);
    EXPECT_LE(line, 1.6 * size);
    EXPECT_EQ(sizeWithAttributes("x", attributesOfSize(size)).height, line);
    // Each of the nine advances is a whole point: off by at most a half, or a half of the other's.
    const double width = sizeWithAttributes("Wed 12:34", attributesOfSize(size)).width;
    EXPECT_NEAR(sizeWithAttributes("Wed 12:34", attributesOfSize(2 * size)).width, 2 * width,
                9 * (2 * 0.5 + 0.5));
  }
  EXPECT_EQ(sizeWithAttributes("", attributesOfSize(12)).width, 0);
}

// The clock's width must not jump with the digits.
TEST(Fonts, TabularDigitsAreAllOfOneWidth) {
  NSTextAttributes attributes = attributesOfSize(13);
  attributes.font = attributes.font.withMonospacedNumbers();
  const double digit = sizeWithAttributes("0", attributes).width;
  for (int number = 0; number < 10'000; number += 7) {
    const std::string text = std::to_string(number);
    ASSERT_NEAR(sizeWithAttributes(text, attributes).width,
                digit * static_cast<double>(text.size()), 0.01)
        << text;
  }
}

TEST(Fonts, WidthsAreTheSameWhateverIsBeingDrawnTo) {
  const NSTextAttributes attributes = attributesOfSize(13);
  const double before = sizeWithAttributes("Wed 12:34:56", attributes).width;
  for (const double scale : {1.0, 1.25, 2.0, 3.0}) {
    BitmapSurface surface({100, Height}, scale);
    const NSCurrentGraphicsContext current(surface.context());
    drawAtPointWithAttributes("Wed 12:34:56", {0, 0}, attributes);
    EXPECT_EQ(sizeWithAttributes("Wed 12:34:56", attributes).width, before) << scale;
  }
}

TEST(TextDrawing, StandsOnItsPoint) {
  const NSTextAttributes attributes = attributesOfSize(13);
  constexpr NSPoint At{10, 4};
  const double baseline = Height - At.y - attributes.font.descender();
  const double width = sizeWithAttributes("HEH", attributes).width;
  for (const double scale : {1.0, 2.0, 3.0}) {
    const Ink ink = inkOfText("HEH", At, attributes, scale);
    // Capitals end on the baseline; a pixel for the smoothing of their edges.
    EXPECT_NEAR(ink.bottom + 1, baseline * scale, 1) << scale;
    EXPECT_GE(ink.top, (baseline - attributes.font.ascender()) * scale - 1) << scale;
    EXPECT_NEAR(ink.bottom + 1 - ink.top, 0.72 * 13 * scale, 0.1 * 13 * scale + 1) << scale;
    EXPECT_GE(ink.left, At.x * scale - 1) << scale;
    EXPECT_LE(ink.right + 1, (At.x + width) * scale + 1) << scale;
    EXPECT_GT(ink.right + 1, (At.x + 0.8 * width) * scale) << scale;
  }
}

// A letter of another font with its own measures must not move what stands before it.
TEST(TextDrawing, LettersOfOtherScriptsDoNotMoveTheBaseline) {
  BitmapSurface surfaces[] = {{{100, Height}, 2}, {{100, Height}, 2}};
  for (const bool isMixed : {false, true}) {
    const NSCurrentGraphicsContext current(surfaces[isMixed].context());
    drawAtPointWithAttributes(isMixed ? "H \u0E01\u0E33 \u263E" : "H", {5, 4},
                              attributesOfSize(13));
  }
  for (int row = 0; row < surfaces[0].pixelHeight(); ++row) {
    for (int column = 0; column <= inkOf(surfaces[0]).right; ++column)
      ASSERT_EQ(surfaces[0].pixelAt(column, row), surfaces[1].pixelAt(column, row)) << column;
  }
}

TEST(TextDrawing, AShadowIsTheSameShapeOnePointLower) {
  NSTextAttributes attributes = attributesOfSize(13);
  const NSColor red = NSColor::colorWithDeviceRed(1, 0, 0, 1);
  for (const int scale : {1, 2}) {
    attributes.shadow.reset();
    const Ink plain = inkOfText("8", {5, 5}, attributes, scale);
    attributes.shadow = NSShadow{{0, -1}, red};
    BitmapSurface surface({100, Height}, scale);
    const NSCurrentGraphicsContext current(surface.context());
    drawAtPointWithAttributes("8", {5, 5}, attributes);
    const Ink both = inkOf(surface);
    EXPECT_EQ(both.bottom, plain.bottom + scale);
    EXPECT_EQ(both.top, plain.top);
    EXPECT_EQ(both.left, plain.left);
    EXPECT_EQ(both.right, plain.right);
    const int middle = (both.left + both.right) / 2;
    EXPECT_EQ(surface.pixelAt(middle, both.bottom).redComponent(), 1);
  }
}

// Letters stand closer at one scale than at another; what ends at a place must end there.
TEST(TextDrawing, LinesFromTheRightEndLevelAtEveryScale) {
  NSTextAttributes attributes = attributesOfSize(12);
  attributes.alignment = NSTextAlignment::Right;
  for (const double scale : {1.0, 2.0, 3.0}) {
    const auto rightEdge = [&](std::string_view text) {
      BitmapSurface surface({100, Height}, scale);
      const NSCurrentGraphicsContext current(surface.context());
      drawInRectWithAttributes(text, NSMakeRect(0, 0, 98, Height), attributes);
      return inkOf(surface).right;
    };
    for (const char* text : {"16:0H", "8 h 50 miH", "Tomorrow, H"})
      EXPECT_EQ(rightEdge(text), rightEdge("H")) << text << " at " << scale;
  }
}

TEST(TextDrawing, OddTextsAreNoTrap) {
  const NSTextAttributes attributes = attributesOfSize(13);
  for (const std::string& text :
       {std::string(), std::string("\xFF\xFE"), std::string("a\nb"), std::string("a\0b", 3),
        std::string("\u202E12:34"), std::string(3000, 'W')}) {
    inkOfText(text, {5, 4}, attributes, 1);
    EXPECT_GE(sizeWithAttributes(text, attributes).width, 0);
  }
}

std::vector<double> columnsOf(std::string_view text, double size, double scale) {
  NSTextAttributes attributes = attributesOfSize(size);
  attributes.font = attributes.font.withMonospacedNumbers();
  BitmapSurface surface({100, Height}, scale);
  const NSCurrentGraphicsContext current(surface.context());
  drawAtPointWithAttributes(text, {0, 2}, attributes);
  std::vector<double> columns(static_cast<size_t>(surface.pixelWidth()));
  for (size_t column = 0; column < columns.size(); ++column) {
    for (int row = 0; row < surface.pixelHeight(); ++row)
      columns[column] +=
          (row + 1) * surface.pixelAt(static_cast<int>(column), row).alphaComponent();
  }
  return columns;
}

// Would catch: digits put for others in the wrong place, order or glyph. A scale that differs by
// less than any pixel has lines of its own, shaped afresh.
TEST(Text, ExchangedDigitsLookLikeDigitsShapedAfresh) {
  for (const double scale : {1.0, 1.25, 2.0}) {
    for (const char* other : {"00:00:00", "98:76:54"})
      columnsOf(other, 12, scale);
    EXPECT_EQ(columnsOf("19:43:35", 12, scale), columnsOf("19:43:35", 12, scale * (1 + 1e-9)))
        << scale;
  }
}

// Would catch: gaps of one pixel here and three there, from places that are rounded one by one.
TEST(Text, DigitsAreEvenlySpacedAtWholeScales) {
  for (const double scale : {1.0, 2.0, 3.0}) {
    for (int size = 8; size <= 16; ++size) {
      const auto columns = columnsOf("888888", size, scale);
      const auto two = columnsOf("88", size, scale);
      // The width of a digit is where the second one looks like the first.
      size_t width = 1;
      const auto repeats = [&](const auto& drawn, size_t end) {
        for (size_t column = 0; column + width < end; ++column) {
          if (drawn[column] != drawn[column + width]) return false;
        }
        return true;
      };
      NSTextAttributes attributes = attributesOfSize(size);
      attributes.font = attributes.font.withMonospacedNumbers();
      const double about = sizeWithAttributes("8", attributes).width * scale;
      width = static_cast<size_t>(std::lround(about - 1));
      while (static_cast<double>(width) < about + 2 && !repeats(two, 2 * width))
        ++width;
      EXPECT_TRUE(repeats(columns, 6 * width)) << "size " << size << ", scale " << scale;
    }
  }
}

}  // namespace
