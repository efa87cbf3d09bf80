// Paths and contexts.

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <string>

#include "Platform/AppKit/NSBezierPath.h"
#include "Platform/AppKit/NSImage.h"
#include "Platform/AppKit/RecordingGraphicsContext.h"
#include "Platform/Foundation/SystemClock.h"
#include "Tests/Platform/Support/Pixels.h"

namespace {

const NSColor Red = NSColor::colorWithDeviceRed(1, 0, 0, 1);

TEST(Paths, ARectangleFillsItsPixelsAndNoOther) {
  for (const int scale : {1, 2, 3}) {
    BitmapSurface surface({20, 10}, scale);
    const NSCurrentGraphicsContext current(surface.context());
    Red.setFill();
    // From the lower left: 3 points right, 2 up; so rows 4 to 7 from the top at scale 1.
    NSBezierPath::bezierPathWithRect(NSMakeRect(3, 2, 5, 4)).fill();
    const Ink expected{3 * scale, 8 * scale - 1, 4 * scale, 8 * scale - 1, 20.0 * scale * scale};
    EXPECT_EQ(inkOf(surface), expected) << scale;
    EXPECT_EQ(surface.pixelAt(3 * scale, 4 * scale), Red);
  }
}

// The arch from (0, 0) over control points (0, h) and (w, h) to (w, 0) has x(t) = w(3t²-2t³) and
// y(t) = 3h t(1-t); the integral of y dx is 18wh · ∫t²(1-t)² dt = 18wh/30 = 0.6 wh.
TEST(Paths, ACurveEnclosesItsArea) {
  constexpr double Width = 40;
  constexpr double Height = 30;
  for (const double scale : {1.0, 1.5, 2.0}) {
    BitmapSurface surface({50, 40}, scale);
    const NSCurrentGraphicsContext current(surface.context());
    NSBezierPath path;
    path.moveToPoint({5, 5});
    path.curveToPoint({5 + Width, 5}, {5, 5 + Height}, {5 + Width, 5 + Height});
    path.closePath();
    path.fill();
    const double area = 0.6 * Width * Height * scale * scale;
    EXPECT_NEAR(inkOf(surface).area, area, area * 0.005) << scale;
  }
}

TEST(Contexts, ASurfacesPixelsAreRoundedUp) {
  const BitmapSurface surface({21, 7}, 1.5);
  EXPECT_EQ(surface.pixelWidth(), 32);
  EXPECT_EQ(surface.pixelHeight(), 11);
  EXPECT_EQ(inkOf(surface).area, 0);
}

TEST(Contexts, NestAndComeBack) {
  // Drawing without one does nothing.
  Red.setFill();
  NSBezierPath::bezierPathWithRect(NSMakeRect(0, 0, 1, 1)).fill();
  drawAtPointWithAttributes("x", {0, 0}, {});
  NSImage::imageWithSize({2, 2})->drawAtPoint({0, 0});
  RecordingGraphicsContext outer;
  RecordingGraphicsContext inner;
  {
    const NSCurrentGraphicsContext first(outer);
    {
      const NSCurrentGraphicsContext second(inner);
      Red.setFill();
      NSBezierPath::bezierPathWithRect(NSMakeRect(0, 0, 1, 1)).fill();
    }
    EXPECT_EQ(NSGraphicsContext::currentContext(), &outer);
    NSBezierPath::bezierPathWithRect(NSMakeRect(0, 0, 1, 1)).fill();
  }
  EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
  ASSERT_EQ(inner.records().size(), 1U);
  ASSERT_EQ(outer.records().size(), 1U);
  EXPECT_EQ(inner.records()[0].color, Red);
  EXPECT_EQ(outer.records()[0].color, NSColor::blackColor());
}

// A quarter turn takes (1, 2) to (-2, 1); the rectangle from there to (-4, 2), moved by (6, 0), is
// at (2, 1). Flipped in 10 points, what is at 1 from the top ends at 8 from the bottom.
TEST(Contexts, MoveTurnFlipAndReturn) {
  RecordingGraphicsContext recording;
  BitmapSurface surface({10, 10}, 1);
  for (NSGraphicsContext* context : {static_cast<NSGraphicsContext*>(&surface.context()),
                                     static_cast<NSGraphicsContext*>(&recording)}) {
    const NSCurrentGraphicsContext current(*context);
    {
      const NSSavedGraphicsState saved(*context);
      context->translateBy({6, 0});
      {
        const NSSavedGraphicsState nested(*context);
        context->translateBy({3, 1});
        NSBezierPath::bezierPathWithRect(NSMakeRect(0, 0, 1, 1)).fill();
      }
      context->rotateByRadians(std::numbers::pi / 2);
      NSBezierPath::bezierPathWithRect(NSMakeRect(1, 2, 1, 2)).fill();
    }
    {
      const NSSavedGraphicsState saved(*context);
      context->flip(10);
      EXPECT_TRUE(context->isFlipped());
      NSBezierPath::bezierPathWithRect(NSMakeRect(7, 1, 2, 1)).fill();
    }
    EXPECT_FALSE(context->isFlipped());
  }
  const NSRect places[] = {NSMakeRect(9, 1, 1, 1), NSMakeRect(2, 1, 2, 1), NSMakeRect(7, 8, 2, 1)};
  ASSERT_EQ(recording.records().size(), std::size(places));
  for (size_t index = 0; index < std::size(places); ++index) {
    const NSRect drawn = recording.records()[index].rect;
    EXPECT_NEAR(drawn.origin.x, places[index].origin.x, 1e-9);
    EXPECT_NEAR(drawn.origin.y, places[index].origin.y, 1e-9);
    EXPECT_NEAR(drawn.size.width, places[index].size.width, 1e-9);
  }
  for (const auto& [column, row] : {std::pair{9, 8}, {2, 8}, {3, 8}, {8, 1}})
    EXPECT_NEAR(surface.pixelAt(column, row).alphaComponent(), 1, 0.01);
  EXPECT_NEAR(inkOf(surface).area, 5, 0.1);
}

// The same line of text, 4 points below the top of a surface of 30, in both coordinates.
TEST(Contexts, TextHangsFromItsPointWhereFlipped) {
  NSTextAttributes attributes;
  attributes.foregroundColor = Red;
  const double height = attributes.font.ascender() + attributes.font.descender();
  Ink inks[2];
  for (const bool isFlipped : {false, true}) {
    BitmapSurface surface({60, 30}, 2);
    const NSCurrentGraphicsContext current(surface.context());
    if (isFlipped) surface.context().flip(30);
    drawAtPointWithAttributes("Ag1", {3, isFlipped ? 4 : 26 - height}, attributes);
    inks[isFlipped] = inkOf(surface);
  }
  EXPECT_GT(inks[0].area, 50);
  EXPECT_EQ(inks[1].top, inks[0].top);
  EXPECT_EQ(inks[1].left, inks[0].left);
  EXPECT_NEAR(inks[1].area, inks[0].area, 1);
}

TEST(Contexts, AFileThatCannotBeWrittenIsToldWithItsReason) {
  const BitmapSurface surface({2, 2}, 1);
  EXPECT_THROW(surface.writePng("/nowhere/at/all.png"), std::runtime_error);
}

}  // namespace
