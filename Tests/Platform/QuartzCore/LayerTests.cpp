#include <gtest/gtest.h>

#include <cmath>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/QuartzCore/CAShapeLayer.h"

namespace {

constexpr NSRect Area = {{0, 0}, {90, 40}};

/// The normal distribution's integral: a blurred edge, at a distance in standard deviations.
double blurredEdge(double distance) { return std::erfc(-distance / std::sqrt(2.0)) / 2; }

// Bars across the layer; one ends far outside. Also beside the upper and the lower
// edge, where a bar that ended there would be fainter.
TEST(ShapeLayer, ItsShadowSoftensAMaskAlikeAtEveryScale) {
  for (const auto& [left, right, wraps] :
       {std::tuple{-900.0, 5.0, false}, {30.0, 60.0, false}, {0.0, 5.0, true}}) {
    const auto mask = std::make_shared<CAShapeLayer>();
    mask->setFrame(Area);
    mask->setPath(NSBezierPath::bezierPathWithRect(NSMakeRect(left, -9, right - left, 58)));
    mask->setShadowRadius(5);
    mask->setWrapsHorizontally(wraps);
    CAGradientLayer layer;
    layer.setFrame(Area);
    layer.setColors({NSColor::blackColor(), NSColor::whiteColor()});
    layer.setMask(mask);
    const auto coverage = mask->coverage();
    for (const double scale : {1.0, 1.5, 2.0}) {
      BitmapSurface surface(Area.size, scale);
      surface.context().flip(Area.size.height);
      layer.renderInContext(surface.context());
      for (int pixel = 0; pixel < 90 * scale; ++pixel) {
        const double x = (pixel + 0.5) / scale;
        double expected = blurredEdge((x - left) / 5) - blurredEdge((x - right) / 5);
        if (wraps) expected += blurredEdge((x - 90 - left) / 5) - blurredEdge((x - 90 - right) / 5);
        for (const int row : {0, static_cast<int>(20 * scale), surface.pixelHeight() - 1})
          ASSERT_NEAR(surface.pixelAt(pixel, row).alphaComponent(), expected, 0.02)
              << x << ' ' << row << " at scale " << scale;
      }
      EXPECT_LT(surface.pixelAt(1, 0).greenComponent(), 0.1) << "the first colour is above";
    }
    mask->setPath(NSBezierPath(mask->path()));
    EXPECT_EQ(mask->coverage(), coverage) << "worked out once for a path";
    mask->setPath(NSBezierPath::bezierPathWithRect(Area));
    EXPECT_NE(mask->coverage(), coverage);
  }
}

}  // namespace
