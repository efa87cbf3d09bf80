// Where text stands and how wide it is, on whatever interface font the machine has.

#include <gtest/gtest.h>

#include <algorithm>
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

NSTextAttributes tabularOfSize(double size) {
  NSTextAttributes attributes = attributesOfSize(size);
  attributes.font = attributes.font.withMonospacedNumbers();
  return attributes;
}

double widthOf(std::string_view text, const NSTextAttributes& attributes) {
  return sizeWithAttributes(text, attributes).width;
}

class DrawnText : public Drawn {
 public:
  DrawnText(std::string_view text, NSPoint point, const NSTextAttributes& attributes, double scale)
      : Drawn({100, Height}, scale, [&] { drawAtPointWithAttributes(text, point, attributes); }) {}
};

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
    const double width = widthOf("Wed 12:34", attributesOfSize(size));
    EXPECT_NEAR(widthOf("Wed 12:34", attributesOfSize(2 * size)), 2 * width, 9 * (2 * 0.5 + 0.5));
  }
  EXPECT_EQ(widthOf("", attributesOfSize(12)), 0);
}

// The clock's width must not jump with the digits.
TEST(Fonts, TabularDigitsAreAllOfOneWidth) {
  const double digit = widthOf("0", tabularOfSize(13));
  for (int number = 0; number < 10'000; number += 7) {
    const std::string text = std::to_string(number);
    ASSERT_NEAR(widthOf(text, tabularOfSize(13)), digit * static_cast<double>(text.size()), 0.01)
        << text;
  }
}

TEST(Fonts, WidthsAreTheSameWhateverIsBeingDrawnTo) {
  const NSTextAttributes attributes = attributesOfSize(13);
  const double before = widthOf("Wed 12:34:56", attributes);
  for (const double scale : {1.0, 1.25, 2.0, 3.0}) {
    const Drawn surface({100, Height}, scale, [&] {
      drawAtPointWithAttributes("Wed 12:34:56", {0, 0}, attributes);
      EXPECT_EQ(widthOf("Wed 12:34:56", attributes), before) << scale;
    });
  }
}

TEST(TextDrawing, StandsOnItsPoint) {
  const NSTextAttributes attributes = attributesOfSize(13);
  constexpr NSPoint At{10, 4};
  const double baseline = Height - At.y - attributes.font.descender();
  const double width = widthOf("HEH", attributes);
  for (const double scale : {1.0, 2.0, 3.0}) {
    const Ink ink = inkOf(DrawnText("HEH", At, attributes, scale));
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
  const DrawnText plain("H", {5, 4}, attributesOfSize(13), 2);
  const DrawnText mixed("H \u0E01\u0E33 \u263E", {5, 4}, attributesOfSize(13), 2);
  for (int row = 0; row < plain.pixelHeight(); ++row) {
    for (int column = 0; column <= inkOf(plain).right; ++column)
      ASSERT_EQ(plain.pixelAt(column, row), mixed.pixelAt(column, row)) << column;
  }
}

TEST(TextDrawing, AShadowIsTheSameShapeOnePointLower) {
  NSTextAttributes shadowed = attributesOfSize(13);
  shadowed.shadow = NSShadow{{0, -1}, NSColor::colorWithDeviceRed(1, 0, 0, 1)};
  for (const int scale : {1, 2}) {
    const Ink plain = inkOf(DrawnText("8", {5, 5}, attributesOfSize(13), scale));
    const DrawnText surface("8", {5, 5}, shadowed, scale);
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
      const Drawn surface({100, Height}, scale, [&] {
        drawInRectWithAttributes(text, NSMakeRect(0, 0, 98, Height), attributes);
      });
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
    const DrawnText surface(text, {5, 4}, attributes, 1);
    EXPECT_GE(widthOf(text, attributes), 0);
  }
}

std::vector<double> columnsOf(std::string_view text, double size, double scale) {
  const DrawnText surface(text, {0, 2}, tabularOfSize(size), scale);
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
      // The width of a digit is where the second one looks like the first.
      const double about = widthOf("8", tabularOfSize(size)) * scale;
      auto width = static_cast<ptrdiff_t>(std::lround(about - 1));
      const auto repeats = [&](const std::vector<double>& columns, ptrdiff_t digits) {
        return std::equal(columns.begin(), columns.begin() + (digits - 1) * width,
                          columns.begin() + width);
      };
      const auto two = columnsOf("88", size, scale);
      while (static_cast<double>(width) < about + 2 && !repeats(two, 2))
        ++width;
      EXPECT_TRUE(repeats(columnsOf("888888", size, scale), 6)) << size << " at " << scale;
    }
  }
}

}  // namespace
