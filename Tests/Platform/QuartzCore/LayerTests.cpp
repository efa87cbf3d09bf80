#include <gtest/gtest.h>

#include <cmath>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/QuartzCore/CAShapeLayer.h"

namespace {

constexpr NSRect Area = {{0, 0}, {90, 40}};

/// A black layer of 90 by 40 that shows as far as a bar from `left` to `right` covers it.
struct MaskedLayer {
  MaskedLayer(double left, double right, double radius, bool wraps) {
    mask->setFrame(Area);
    mask->setPath(NSBezierPath::bezierPathWithRect(NSMakeRect(left, -9, right - left, 58)));
    mask->setShadowRadius(radius);
    mask->setWrapsHorizontally(wraps);
    layer.setFrame(Area);
    layer.setColors({NSColor::blackColor(), NSColor::blackColor()});
    layer.setMask(mask);
  }

  /// How dark the middle of the pixel is that holds a point.
  std::vector<double> row(double y, double scale) const {
    BitmapSurface surface(Area.size, scale);
    surface.context().flip(Area.size.height);
    layer.renderInContext(surface.context());
    std::vector<double> opacities;
    for (int column = 0; column < surface.pixelWidth(); ++column)
      opacities.push_back(surface.pixelAt(column, static_cast<int>(y * scale)).alphaComponent());
    return opacities;
  }

  CAGradientLayer layer;
  std::shared_ptr<CAShapeLayer> mask = std::make_shared<CAShapeLayer>();
};

/// The normal distribution's integral: a blurred edge, at a distance in standard deviations.
double blurredEdge(double distance) { return std::erfc(-distance / std::sqrt(2.0)) / 2; }

// Also beside the upper and lower edge, where a bar that ends there would be fainter.
TEST(ShapeLayer, ItsShadowSoftensAMaskAlikeAtEveryScale) {
  const MaskedLayer bar(30, 60, 5, false);
  for (const double scale : {1.0, 1.5, 2.0}) {
    for (const double y : {0.0, 20.0, 39.5}) {
      const auto row = bar.row(y, scale);
      for (size_t column = 0; column < row.size(); ++column) {
        const double x = (static_cast<double>(column) + 0.5) / scale;
        ASSERT_NEAR(row[column], blurredEdge((x - 30) / 5) - blurredEdge((x - 60) / 5), 0.012)
            << x << " at scale " << scale;
      }
    }
  }
  const auto sharp = MaskedLayer(30, 60, 0, false).row(20, 1);
  EXPECT_EQ(sharp[29], 0);
  EXPECT_EQ(sharp[30], 1);
}

TEST(ShapeLayer, ABlurReachesTheSidesAndGoesOnAtTheOtherOne) {
  const auto open = MaskedLayer(-9, 5, 5, false).row(20, 1);
  EXPECT_NEAR(open[0], blurredEdge(4.5 / 5), 0.012) << "as if the bar had no other end";
  EXPECT_EQ(open[89], 0);
  const auto round = MaskedLayer(0, 5, 5, true).row(20, 1);
  EXPECT_NEAR(round[0], blurredEdge(4.5 / 5) - blurredEdge(-0.5 / 5), 0.012);
  EXPECT_NEAR(round[89], blurredEdge(5.5 / 5) - blurredEdge(0.5 / 5), 0.012);
}

TEST(ShapeLayer, IsWorkedOutOnceForAPathAndMasksAllWithoutOne) {
  const MaskedLayer bar(30, 60, 5, false);
  const auto first = bar.mask->coverage();
  bar.mask->setPath(NSBezierPath(bar.mask->path()));
  EXPECT_EQ(bar.mask->coverage(), first);
  bar.mask->setPath(NSBezierPath::bezierPathWithRect(Area));
  EXPECT_NE(bar.mask->coverage(), first);
  bar.mask->setPath({});
  EXPECT_EQ(bar.row(20, 1)[45], 0);
}

TEST(Layer, StandsInItsParentWithTheFirstColourAbove) {
  CALayer around;
  around.setFrame(NSMakeRect(2, 1, 8, 8));
  const auto inner = std::make_shared<CAGradientLayer>();
  inner->setFrame(NSMakeRect(1, 3, 2, 4));
  inner->setColors({NSColor::colorWithDeviceWhite(1, 1), NSColor::colorWithDeviceWhite(0, 1)});
  around.addSublayer(inner);
  BitmapSurface surface({10, 10}, 1);
  surface.context().flip(10);
  around.renderInContext(surface.context());
  EXPECT_NEAR(surface.pixelAt(3, 4).greenComponent(), 0.875, 0.02);
  EXPECT_NEAR(surface.pixelAt(4, 7).greenComponent(), 0.125, 0.02);
  EXPECT_EQ(surface.pixelAt(5, 5).alphaComponent(), 0);
  EXPECT_EQ(surface.pixelAt(3, 3).alphaComponent(), 0);
}

}  // namespace
