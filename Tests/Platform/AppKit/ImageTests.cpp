#include "Platform/AppKit/Drawing/NSImage.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>
#include <stdexcept>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Platform/Support/Pixels.h"

namespace {

const NSColor Red = NSColor::colorWithDeviceRed(1, 0, 0, 1);
const NSColor Blue = NSColor::colorWithDeviceRed(0, 0, 1, 1);

/// 10 by 8 points; a red rectangle 2 from the left and 1 from the top, 4 wide and 3 high.
constexpr std::string_view Svg =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"8\">"
    "<rect x=\"2\" y=\"1\" width=\"4\" height=\"3\" fill=\"#f00\"/></svg>";

class Image : public testing::Test {
 protected:
  std::shared_ptr<NSImage> svg() const {
    writeFile(folder / "a.svg", Svg);
    return NSImage::imageWithContentsOfFile(folder / "a.svg");
  }

  const std::filesystem::path folder = freshFolder();
};

TEST_F(Image, AnSvgIsCrispOnThePixelGrid) {
  const auto image = svg();
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->size(), (NSSize{10, 8}));
  for (const int scale : {1, 2, 3, 1}) {
    // Its top is 5 + 8 points up, so 3 down from the surface's.
    const Drawn surface({20, 16}, scale, [&] { image->drawAtPoint({4, 5}); });
    const Ink expected{6 * scale, 10 * scale - 1, 4 * scale, 7 * scale - 1, 12.0 * scale * scale};
    EXPECT_EQ(inkOf(surface), expected) << scale;
    EXPECT_EQ(surface.pixelAt(6 * scale, 4 * scale), Red);
  }
  // At 1.5, drawn anew, the rectangle covers columns 3 to 9 and rows 1.5 to 6.
  const Drawn between({10, 8}, 1.5, [&] { image->drawAtPoint({0, 0}); });
  EXPECT_NEAR(inkOf(between).area, 12 * 1.5 * 1.5, 0.1);
  EXPECT_NEAR(between.pixelAt(5, 1).alphaComponent(), 0.5, 0.01);
  EXPECT_EQ(between.pixelAt(3, 2), Red);
  EXPECT_EQ(between.pixelAt(8, 5), Red);
}

TEST_F(Image, IsDrawnWithAlphaStretchedAndInPart) {
  const auto image = svg();
  const Drawn faint({10, 8}, 2, [&] { image->drawAtPoint({0, 0}, 0.25); });
  EXPECT_NEAR(faint.pixelAt(6, 4).alphaComponent(), 0.25, 0.01);

  const Drawn stretched({20, 24}, 1, [&] { image->drawInRect(NSMakeRect(0, 0, 20, 24)); });
  EXPECT_EQ(inkOf(stretched), (Ink{4, 11, 3, 11, 8.0 * 9}));

  // The quarter at the upper left, 5 by 4 points: it holds 3 by 3 points of the rectangle. Its
  // own left edge comes to 10 and its top to the target's, 6 points up.
  const Drawn part({20, 16}, 1,
                   [&] { image->drawInRect(NSMakeRect(10, 2, 5, 4), NSMakeRect(0, 4, 5, 4), 1); });
  EXPECT_EQ(inkOf(part), (Ink{12, 14, 11, 13, 9.0}));
}

TEST_F(Image, APngKeepsItsPixels) {
  const Drawn original({3, 2}, 1, [] {
    Blue.setFill();
    fill(NSMakeRect(1, 0, 2, 1));
  });
  EXPECT_THROW(original.writePng("/nowhere/at/all.png"), std::runtime_error);
  original.writePng((folder / "a.png").string());
  const auto image = NSImage::imageWithContentsOfFile(folder / "a.png");
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->size(), (NSSize{3, 2}));
  const Drawn surface({5, 5}, 1, [&] { image->drawAtPoint({1, 1}); });
  EXPECT_EQ(inkOf(surface), (Ink{2, 3, 3, 3, 2.0}));
  EXPECT_EQ(surface.pixelAt(2, 3), Blue);
  const Drawn faint({5, 5}, 1, [&] { image->drawAtPoint({1, 1}, 0.5); });
  EXPECT_NEAR(faint.pixelAt(2, 3).alphaComponent(), 0.5, 0.01);
  EXPECT_THROW((void)image->lockFocus(), std::logic_error);
}

TEST_F(Image, WhatIsNoPictureGivesNone) {
  for (size_t length = 0; length < Svg.size() - 1; ++length) {
    writeFile(folder / "cut.svg", Svg.substr(0, length));
    EXPECT_EQ(NSImage::imageWithContentsOfFile(folder / "cut.svg"), nullptr) << length;
  }
  BitmapSurface({30, 20}, 1).writePng((folder / "whole.png").string());
  const std::string bytes = readFile(folder / "whole.png");
  for (size_t length = 0; length + 12 < bytes.size(); ++length) {  // The last chunk says nothing.
    writeFile(folder / "cut.png", bytes.substr(0, length));
    ASSERT_EQ(NSImage::imageWithContentsOfFile(folder / "cut.png"), nullptr) << length;
  }
  std::filesystem::create_directory(folder / "folder.svg");
  writeFile(folder / "text.png", "no picture at all, but long enough for a header");
  const std::string begin = "<svg xmlns=\"http://www.w3.org/2000/svg\" height=\"8\" ";
  writeFile(folder / "vast.svg", begin + "width=\"9999999\"/>");
  writeFile(folder / "flat.svg", begin + "width=\"0\"/>");
  for (const char* name :
       {"missing.svg", "missing.png", "folder.svg", "text.png", "vast.svg", "flat.svg"}) {
    EXPECT_EQ(NSImage::imageWithContentsOfFile(folder / name), nullptr) << name;
  }
}

// 12000 x 12000 pixels in a few kilobytes would take 576 MB.
TEST_F(Image, AVastPngDoesNotFillTheMemory) {
  const auto peak = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
  };
  const long before = peak();
  EXPECT_EQ(NSImage::imageWithContentsOfFile(fixture("vast.png")), nullptr);
  EXPECT_LT(peak() - before, 100);
}

TEST_F(Image, ThatIsRecordedIsCrispAtAScaleThatCameLater) {
  const auto picture = svg();
  const auto image = NSImage::imageWithSize({10, 8});
  EXPECT_EQ(image->size(), (NSSize{10, 8}));
  // Drawing that fails must not leave later drawing in the image.
  const auto draw = [&] {
    const NSImageFocus focus = image->lockFocus();
    Blue.setFill();
    // Half points: pixels at scale 2. At 1 they would be smoothed for good if this were a bitmap.
    fill(NSMakeRect(0.5, 0.5, 2, 1));
    picture->drawInRect(NSMakeRect(4.5, 0, 5, 4));
    throw std::runtime_error("of the drawing");
  };
  EXPECT_THROW(draw(), std::runtime_error);
  EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);

  for (const int scale : {1, 2}) {
    const Drawn surface({10, 8}, scale, [&] { image->drawAtPoint({0, 0}); });
    const Ink ink = inkOf(surface);
    EXPECT_EQ(ink.isCrisp, scale == 2);
    // The half-size rectangle of the picture is 2 by 1.5 points.
    EXPECT_NEAR(ink.area, (2 * 1 + 2 * 1.5) * scale * scale, 0.1);
    if (scale == 1) continue;
    EXPECT_EQ(surface.pixelAt(1, 14), Blue);
    EXPECT_EQ(surface.pixelAt(11, 9), Red);
    EXPECT_EQ(ink.left, 1);
    EXPECT_EQ(ink.bottom, 14);
  }
  const Drawn stretched({20, 16}, 1, [&] { image->drawInRect(NSMakeRect(0, 0, 20, 16), 0.5); });
  EXPECT_NEAR(inkOf(stretched).area, (2 * 1 + 2 * 1.5) * 4 * 0.5, 0.2);
}

}  // namespace
