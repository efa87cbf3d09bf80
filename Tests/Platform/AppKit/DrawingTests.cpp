// Paths and contexts.

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>
#include <numbers>
#include <string>

#include "Platform/AppKit/Drawing/DrawingList.h"
#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Tests/Platform/Support/Pixels.h"

namespace {

const NSColor Red = NSColor::colorWithDeviceRed(1, 0, 0, 1);

TEST(Paths, ARectangleFillsItsPixelsAndNoOther) {
  for (const int scale : {1, 2, 3}) {
    const Drawn surface({20, 10}, scale, [] {
      Red.setFill();
      fill(NSMakeRect(3, 2, 5, 4));
    });
    // From the lower left: 3 points right, 2 up; so rows 4 to 7 from the top at scale 1.
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
    NSBezierPath path;
    path.moveToPoint({5, 5});
    path.curveToPoint({5 + Width, 5}, {5, 5 + Height}, {5 + Width, 5 + Height});
    path.closePath();
    const Drawn surface({50, 40}, scale, [&] { path.fill(); });
    const double area = 0.6 * Width * Height * scale * scale;
    EXPECT_NEAR(inkOf(surface).area, area, area * 0.005) << scale;
  }
}

TEST(Contexts, AreNotNeededToDrawNothing) {
  Red.setFill();
  fill(NSMakeRect(0, 0, 1, 1));
  drawAtPointWithAttributes("x", {0, 0}, {});
  NSImage::imageWithSize({2, 2})->drawAtPoint({0, 0});
  EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
}

TEST(Paths, ReachAsFarAsTheirCurvesControls) {
  NSBezierPath path;
  path.moveToPoint({10, 20});
  path.lineToPoint({30, 25});
  EXPECT_EQ(path.bounds(), NSMakeRect(10, 20, 20, 5));
  path.curveToPoint({40, 20}, {32, 70}, {55, 8});
  path.closePath();
  EXPECT_EQ(path.bounds(), NSMakeRect(10, 8, 45, 62));
}

constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Endless = std::numeric_limits<double>::infinity();

void drawPicture(NSRect target, NSRect source = NSZeroRect, double fraction = 1,
                 NSSize size = {4, 4}) {
  const auto image = NSImage::imageWithSize(size);
  {
    const auto focus = image->lockFocus();
    fill(NSMakeRect(0, 0, 4, 4));
  }
  image->drawInRect(target, source, fraction);
}

constexpr NSRect Four = NSMakeRect(0, 0, 4, 4);

void drawText(double x, double y) { drawAtPointWithAttributes("x", {x, y}, {}); }

TEST(Contexts, RefuseWhatHasNoPlaceAndGoOn) {
  using Context = NSGraphicsContext;
  const NSBezierPath nowhere = NSBezierPath::bezierPathWithRect(NSMakeRect(0, 0, NoNumber, 9));
  const auto noPicture = NSImage::imageWithSize({4, 4});
  const NSAffineTransform flat = {1, 0, 0, 0, 0, 0};
  const NSPoint away = {NoNumber, 0};
  const std::pair<const char*, std::function<void(Context&)>> cases[] = {
      {"no height", [](Context&) { drawPicture(NSMakeRect(0, 0, 4, 0)); }},
      {"turned over", [](Context&) { drawPicture(NSMakeRect(0, 0, -4, 4)); }},
      {"no place", [](Context&) { drawPicture(NSMakeRect(NoNumber, 0, 4, 4)); }},
      {"endless", [](Context&) { drawPicture(NSMakeRect(0, 0, Endless, 4)); }},
      {"no part", [](Context&) { drawPicture(Four, NSMakeRect(0, 0, 4, 0)); }},
      {"part nowhere", [](Context&) { drawPicture(Four, NSMakeRect(0, NoNumber, 1, 1)); }},
      {"tiny part", [](Context&) { drawPicture(Four, NSMakeRect(0, 0, 1e-300, 1e-300)); }},
      {"no fraction", [](Context&) { drawPicture(Four, NSZeroRect, NoNumber); }},
      {"no size",
       [](Context&) {
         drawPicture(Four, NSZeroRect, 1, {4, 0});
       }},
      {"odd size",
       [](Context&) {
         drawPicture(Four, NSZeroRect, 1, {NoNumber, 4});
       }},
      {"text", [](Context&) { drawText(NoNumber, 0); }},
      {"far text", [](Context&) { drawText(0, 1e300); }},
      {"path", [](Context&) { fill(NSMakeRect(0, -Endless, 9, 9)); }},
      {"restore", [](Context& context) { context.restoreGraphicsState(); }},
      {"flat", [&](Context& context) { context.concat(flat); }},
      {"moved away", [&](Context& context) { context.translateBy(away); }},
      {"clip", [&](Context& context) { context.clipToPath(nowhere); }},
      {"mask", [&](Context& context) { context.clipToMask(*noPicture, {}); }},
  };
  for (const auto& [name, draw] : cases) {
    SCOPED_TRACE(name);
    BitmapSurface surface({10, 10}, 1);
    RecordingGraphicsContext recording;
    for (Context* context :
         {static_cast<Context*>(&surface.context()), static_cast<Context*>(&recording)}) {
      const NSCurrentGraphicsContext current(*context);
      context->saveGraphicsState();
      draw(*context);
      // Under coordinates without an area nothing shows, and the next state is whole again.
      if (std::string_view("flat moved away clip mask").find(name) != std::string_view::npos)
        fill(Four);
      context->restoreGraphicsState();
      fill(NSMakeRect(3, 2, 5, 4));
    }
    EXPECT_EQ(inkOf(surface), (Ink{3, 7, 4, 7, 20}));
    ASSERT_EQ(recording.records().size(), 1U);
    EXPECT_EQ(recording.records()[0].rect, NSMakeRect(3, 2, 5, 4));
  }
}

// A stretch beyond all bitmaps shows its part that is on the surface, and nothing behind it is
// lost.
TEST(Contexts, DrawHugeStretches) {
  for (const double fraction : {0.5, 1.0}) {
    const Drawn surface(
        {10, 10}, 2, [&] { drawPicture(NSMakeRect(5, 0, 40'000, 40'000), NSZeroRect, fraction); });
    EXPECT_EQ(surface.pixelAt(9, 5).alphaComponent(), 0);
    EXPECT_NEAR(surface.pixelAt(12, 5).alphaComponent(), fraction, 0.01);
  }
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
        fill(NSMakeRect(0, 0, 1, 1));
      }
      context->rotateByRadians(std::numbers::pi / 2);
      fill(NSMakeRect(1, 2, 1, 2));
    }
    {
      const NSSavedGraphicsState saved(*context);
      context->flip(10);
      EXPECT_TRUE(context->isFlipped());
      fill(NSMakeRect(7, 1, 2, 1));
    }
    EXPECT_FALSE(context->isFlipped());
  }
  const NSRect places[] = {NSMakeRect(9, 1, 1, 1), NSMakeRect(2, 1, 2, 1), NSMakeRect(7, 8, 2, 1)};
  ASSERT_EQ(recording.records().size(), std::size(places));
  for (size_t index = 0; index < std::size(places); ++index) {
    const NSRect drawn = recording.records()[index].rect;
    EXPECT_NEAR(drawn.origin.x, places[index].origin.x, 1e-9) << index;
    EXPECT_NEAR(drawn.origin.y, places[index].origin.y, 1e-9) << index;
    EXPECT_NEAR(drawn.size.width, places[index].size.width, 1e-9) << index;
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
    inks[isFlipped] = inkOf(Drawn({60, 30}, 2, [&] {
      if (isFlipped) NSGraphicsContext::currentContext()->flip(30);
      drawAtPointWithAttributes("Ag1", {3, isFlipped ? 4 : 26 - height}, attributes);
    }));
  }
  EXPECT_GT(inks[0].area, 50);
  EXPECT_EQ(inks[1].top, inks[0].top);
  EXPECT_EQ(inks[1].left, inks[0].left);
  EXPECT_NEAR(inks[1].area, inks[0].area, 1);
}

/// Covers its left half, and the other by a quarter.
std::shared_ptr<NSImage> leftHalfCovered() {
  auto image = NSImage::imageWithSize({4, 4});
  const auto focus = image->lockFocus();
  NSColor::colorWithDeviceWhite(1, 0.25).setFill();
  fill(NSMakeRect(2, 0, 2, 4));
  NSColor::blackColor().setFill();
  fill(NSMakeRect(0, 0, 2, 4));
  return image;
}

/// One of each kind of call, upright and flipped, clipped, moved and turned.
void drawEverything(double right, const NSColor& color, std::string_view text) {
  NSGraphicsContext& context = *NSGraphicsContext::currentContext();
  color.setFill();
  fill(NSMakeRect(right, 2, 5, 4));
  const NSBezierPath band = NSBezierPath::bezierPathWithRect(NSMakeRect(0, 8, 40, 4));
  context.fillPath(band, {color, NSColor::blackColor()}, {0, 8}, {0, 12});
  {
    const NSSavedGraphicsState saved(context);
    context.flip(20);
    context.clipToPath(NSBezierPath::bezierPathWithRect(NSMakeRect(2, 1, 30, 12)));
    NSTextAttributes attributes;
    attributes.foregroundColor = color;
    drawAtPointWithAttributes(text, {4, 2}, attributes);
  }
  {
    const NSSavedGraphicsState saved(context);
    context.clipToMask(*leftHalfCovered(), NSMakeRect(30, 1, 8, 8));
    fill(NSMakeRect(28, 0, 12, 5));
  }
  context.translateBy({20, 10});
  context.rotateByRadians(0.3);
  drawPicture(NSMakeRect(0, 0, 6, 6));
}

// Would catch: a call or a state that is forgotten on the way, and a picture that stays because a
// change was not seen.
TEST(DrawingLists, DrawWhatWasDrawnAndTellDifferencesApart) {
  constexpr double Scale = 1.5;
  const auto listOf = [](double right, const NSColor& color, std::string_view text) {
    DrawingList list(Scale);
    const NSCurrentGraphicsContext current(list);
    drawEverything(right, color, text);
    return list;
  };
  const DrawingList list = listOf(3, Red, "12:30");
  const Drawn direct({40, 21}, Scale, [] { drawEverything(3, Red, "12:30"); });
  BitmapSurface replayed({40, 21}, Scale);
  EXPECT_EQ(replayed.pixelHeight(), 32) << "rounded up";
  list.drawIn(replayed.context());
  for (int row = 0; row < direct.pixelHeight(); ++row) {
    for (int column = 0; column < direct.pixelWidth(); ++column)
      ASSERT_EQ(direct.pixelAt(column, row), replayed.pixelAt(column, row))
          << column << ", " << row;
  }
  // The band's lower end has the first colour, the upper end nearly the other.
  EXPECT_GT(direct.pixelAt(0, 19).redComponent(), 0.8);
  EXPECT_LT(direct.pixelAt(0, 14).redComponent(), 0.2);
  // Of the masked rectangle: in the left half, in the right one, above and beside the mask.
  EXPECT_EQ(direct.pixelAt(48, 27), Red);
  EXPECT_NEAR(direct.pixelAt(54, 27).alphaComponent(), 0.25, 0.01);
  for (const auto& [column, row] : {std::pair{48, 31}, {58, 27}})
    EXPECT_EQ(direct.pixelAt(column, row).alphaComponent(), 0);

  const auto image = NSImage::imageWithSize({4, 4});
  const auto listOfImage = [&] {
    DrawingList drawn;
    const NSCurrentGraphicsContext current(drawn);
    image->drawAtPoint({0, 0});
    return drawn;
  };
  const DrawingList before = listOfImage();
  EXPECT_TRUE(before == listOfImage());
  { const auto focus = image->lockFocus(); }
  EXPECT_FALSE(before == listOfImage());
  EXPECT_FALSE(list == listOf(4, Red, "12:30"));
  EXPECT_FALSE(list == listOf(3, NSColor::blackColor(), "12:30"));
  EXPECT_FALSE(list == listOf(3, Red, "12:31"));
}

}  // namespace
