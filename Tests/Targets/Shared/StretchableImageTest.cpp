// Pictures of nine coloured cells of 3 by 3 points, stretched with caps of 3: every pixel tells
// which part it is of.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Shared/Extensions/WENImage.h"
#include "Targets/Shared/ZEVImageCache.h"
#include "Tests/Platform/Support/CaseTable.h"

namespace {

constexpr int Cells = 3;
constexpr int CellSize = 3;
constexpr int RedStep = 25;
constexpr double FullRed = 255;

std::string cells() {
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\">";
  for (int cell = 0; cell < Cells * Cells; ++cell) {
    svg += "<path fill=\"rgb(" + std::to_string((cell + 1) * RedStep) + ",0,0)\" d=\"M" +
           std::to_string(cell % Cells * CellSize) + " " + std::to_string(cell / Cells * CellSize) +
           "h3v3h-3z\"/>";
  }
  return svg + "</svg>";
}

/// The cell whose colour a pixel has, counted from the upper left; -1 for a clear pixel and -2 for
/// a mixture.
int cellAt(const BitmapSurface& surface, int column, int row) {
  const NSColor color = surface.pixelAt(column, row);
  if (color.alphaComponent() == 0) return -1;
  const double cell = color.redComponent() * FullRed / RedStep - 1;
  const bool isPure = color.alphaComponent() == 1 && std::abs(cell - std::round(cell)) < 1e-6;
  return isPure ? static_cast<int>(std::round(cell)) : -2;
}

/// Where the cells change along a row or a column of pixels, with the cells: "0*4 1*17 2*4".
std::string runs(const BitmapSurface& surface, int fixed, bool isRow) {
  std::string text;
  int count = 0;
  const int length = isRow ? surface.pixelWidth() : surface.pixelHeight();
  for (int index = 0; index < length; ++index) {
    const auto cell = [&](int at) {
      return isRow ? cellAt(surface, at, fixed) : cellAt(surface, fixed, at);
    };
    ++count;
    if (index + 1 < length && cell(index + 1) == cell(index)) continue;
    text += (text.empty() ? "" : " ") + std::to_string(cell(index)) + "*" + std::to_string(count);
    count = 0;
  }
  return text;
}

/// A picture of so many points into which is drawn.
class Canvas : public BitmapSurface {
 public:
  explicit Canvas(NSSize size, double scale = 1) : BitmapSurface(size, scale) {}

 private:
  const NSCurrentGraphicsContext current_{context()};
};

class StretchableImage : public testing::Test {
 protected:
  StretchableImage() {
    std::filesystem::create_directory(folder / "Velmora.bundle");
    writeFile(file("cells"), cells());
  }

  std::filesystem::path file(const std::string& name) const {
    return folder / "Velmora.bundle" / (name + ".svg");
  }

  ZEVImageCache_Time cache;
  const std::filesystem::path folder = freshFolder();
  const EnvironmentVariable support{"VELMORA_SUPPORT_DIR", folder.string()};
};

TEST_F(StretchableImage, NinePartsMeetBetweenPixelsAtEveryScale) {
  const auto item = cache.imageWithInset("cells", CellSize, CellSize, 0, CellSize);
  ASSERT_NE(item, nullptr);
  // The lower cap is the last one told; without one the bottom row has none.
  EXPECT_EQ(item->parts()[7], nullptr);
  const auto nine = cache.imageWithInset("cells", CellSize, CellSize, CellSize, CellSize);
  for (const auto& [scale, across, down] :
       casesIn<double, std::string, std::string>("Targets/Shared/Cases/nine-parts.txt")) {
    const Canvas surface({20, 15}, scale);
    nine->drawInRect(NSMakeRect(0, 0, 20, 15));
    EXPECT_EQ(runs(surface, 1, true), across) << scale;
    EXPECT_EQ(runs(surface, surface.pixelWidth() / 2, false), down) << scale;
  }
}

TEST_F(StretchableImage, StandsUprightInAFlippedContext) {
  const auto nine = cache.imageWithInset("cells", CellSize, CellSize, CellSize, CellSize);
  const auto plain = cache.imageNamed("cells");
  Canvas surface({20, 15});
  surface.context().flip(15);
  nine->drawInRect(NSMakeRect(0, 0, 9, 15));
  plain->drawAtPoint({10, 2});
  EXPECT_EQ(runs(surface, 0, false), "0*3 3*9 6*3");
  EXPECT_EQ(runs(surface, 10, false), "-1*2 0*3 3*3 6*3 -1*4");
}

TEST_F(StretchableImage, ThreePartsStretchInOneDirection) {
  const Canvas surface({24, 20});
  cache.imageWithLeftCap("cells", 3)->drawInRect(NSMakeRect(0, 0, 12, 9));
  cache.imageWithTopCap("cells", 3)->drawInRect(NSMakeRect(13, 0, 9, 20));
  EXPECT_EQ(runs(surface, 19, true), "6*3 7*6 8*3 -1*1 6*3 7*3 8*3 -1*2");
  EXPECT_EQ(runs(surface, 1, false), "-1*11 0*3 3*3 6*3");
  EXPECT_EQ(runs(surface, 17, false), "1*3 4*14 7*3");

  const auto uneven = cache.imageWithTopCap("cells", 2, 3);
  EXPECT_EQ(uneven->parts()[1]->size(), (NSSize{9, 4}));
  const Canvas faint({9, 9});
  uneven->drawInRect(NSMakeRect(0, 0, 9, 9), 0.5);
  EXPECT_NEAR(faint.pixelAt(4, 4).alphaComponent(), 0.5, 0.01);

  // With caps of 7 the right one shrinks to 1 so that a point is left between.
  const auto narrow = cache.imageWithLeftCap("cells", 7);
  EXPECT_EQ(narrow->parts()[1]->size(), (NSSize{1, 9}));
  EXPECT_EQ(narrow->parts()[2]->size(), (NSSize{1, 9}));
}

TEST_F(StretchableImage, IsKeptForEachSetOfCapsAndForEachScreen) {
  const auto three = cache.imageWithLeftCap("cells", 3);
  const auto four = cache.imageWithLeftCap("cells", 4);
  EXPECT_NE(three, four);
  EXPECT_EQ(cache.imageWithInset("cells", 0, 3, 0, 3), three);
  const auto plain = cache.imageNamed("cells");
  EXPECT_EQ(plain->name(), "cells");
  std::filesystem::remove(file("cells"));
  EXPECT_EQ(cache.imageWithLeftCap("cells", 3), three);
  EXPECT_EQ(cache.imageNamed("cells"), plain);
  EXPECT_EQ(cache.imageWithLeftCap("cells", 5), nullptr) << "new caps read the file anew";
}

TEST_F(StretchableImage, WhatIsMissingIsTriedAgain) {
  EXPECT_EQ(cache.imageNamed(""), nullptr);
  EXPECT_EQ(cache.imageNamed("late.tiff"), nullptr);
  EXPECT_EQ(cache.imageWithLeftCap("late.tiff", 3), nullptr);
  writeFile(file("late"), cells());
  ASSERT_NE(cache.imageNamed("late.tiff"), nullptr);
  EXPECT_EQ(cache.imageNamed("late.tiff")->name(), "late");
  EXPECT_NE(cache.imageWithLeftCap("late.tiff", 3), nullptr);
}

TEST_F(StretchableImage, NamesNeverLeaveTheBundle) {
  writeFile(folder / "outside.svg", cells());
  std::filesystem::create_directory(folder / "Velmora.bundle" / "folder.svg");
  for (const char* name :
       {"../outside", "../outside.svg", "folder", "folder/../cells", "..", ".", "/etc/hostname"}) {
    EXPECT_EQ(cache.imageNamed(name), nullptr) << name;
    EXPECT_EQ(cache.imageWithLeftCap(name, 3), nullptr) << name;
  }
}

TEST_F(StretchableImage, AnImageWithPartsIsKeptUnderTheNameOfItsSource) {
  const auto source = cache.imageNamed("cells");
  const auto three = WENImage_Time::threePartImageFromImageLeftCapWidth(*source, 3);
  ASSERT_NE(three, nullptr);
  EXPECT_EQ(WENImage_Time::threePartImageFromImageLeftCapWidth(*source, 4), three);
  EXPECT_EQ(WENImage_Time::ninePartImageFromPath(file("cells"), 3, 3), three);
  EXPECT_EQ(WENImage_Time::threePartImageFromImageLeftCapWidth(*NSImage::imageWithSize({9, 9}), 3),
            nullptr);
  EXPECT_EQ(WENImage_Time::ninePartImageFromPath(folder / "missing.svg", 3, 3), nullptr);

  const Canvas surface({12, 12});
  std::static_pointer_cast<NSImage>(three)->drawInRect(NSMakeRect(0, 0, 12, 9));
  EXPECT_EQ(runs(surface, 11, true), "6*3 7*6 8*3");
}

TEST_F(StretchableImage, AnImageWithPartsCutsThemAsAsked) {
  const auto source = cache.imageNamed("cells");
  const WENImage_Time nine(*source, ImagePartsLayout::Grid, {2, 3, 2, 3});
  EXPECT_EQ(nine.parts().at(0)->size(), (NSSize{3, 2}));
  EXPECT_EQ(nine.parts().at(4)->size(), (NSSize{3, 5}));
  const Canvas surface({9, 9});
  WENImage_Time(*source, ImagePartsLayout::Grid, {3, 3, 3, 3})
      .drawInRect(NSMakeRect(0, 0, 9, 9), 1);
  EXPECT_EQ(runs(surface, 1, false), "0*3 3*3 6*3");
  const WENImage_Time column(*source, ImagePartsLayout::Column, {2, 0, 4, 0});
  EXPECT_TRUE(column.vertical());
  EXPECT_EQ(column.parts().at(1)->size(), (NSSize{9, 3}));
  const WENImage_Time empty(*NSImage::imageWithSize({0, 0}), ImagePartsLayout::Row, {0, 1, 0, 1});
  EXPECT_TRUE(empty.parts().empty());
  empty.drawInRect(NSMakeRect(0, 0, 10, 10), 1);
}

}  // namespace
