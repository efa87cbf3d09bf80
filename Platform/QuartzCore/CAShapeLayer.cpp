#include "Platform/QuartzCore/CAShapeLayer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"

namespace {

/// What lies further from a point than this, in standard deviations, is no part of its blur.
constexpr double Reach = 3;

/// Weights of a Gaussian blur from the middle sample on to one side, which with the other side add
/// up to 1.
std::vector<float> gaussianWeights(double deviation) {
  std::vector<float> weights;
  const auto reach = static_cast<int>(std::ceil(Reach * deviation));
  float sum = 0;
  for (int distance = 0; distance <= reach; ++distance) {
    const double share =
        distance == 0 ? 1 : std::exp(-distance * distance / (2 * deviation * deviation));
    weights.push_back(static_cast<float>(share));
    sum += (distance == 0 ? 1.F : 2.F) * weights.back();
  }
  for (float& weight : weights)
    weight /= sum;
  return weights;
}

/// Rows of samples from 0 to 255, from the top down.
struct Samples {
  size_t width;
  size_t height;
  std::vector<float> values;

  float* row(size_t index) { return values.data() + index * width; }
};

Samples filledPath(const NSBezierPath& path, NSSize size) {
  const auto width = static_cast<size_t>(std::ceil(size.width));
  const auto height = static_cast<size_t>(std::ceil(size.height));
  std::vector<uint32_t> pixels(width * height);
  {
    BitmapSurface surface(pixels.data(), static_cast<int>(width), static_cast<int>(height), 1);
    NSGraphicsContext& context = surface.context();
    context.flip(static_cast<double>(height));
    context.setFillColor(NSColor::blackColor());
    context.fillPath(path);
  }
  Samples samples{width, height, std::vector<float>(pixels.size())};
  std::ranges::transform(pixels, samples.values.begin(),
                         [](uint32_t pixel) { return static_cast<float>(pixel >> 24); });
  return samples;
}

void blurRows(Samples& samples, const std::vector<float>& weights, bool wraps) {
  const size_t width = samples.width;
  const size_t reach = weights.size() - 1;
  const auto count = static_cast<int64_t>(width);
  if (count == 0) return;
  std::vector<float> line(width + 2 * reach);
  for (size_t y = 0; y < samples.height; ++y) {
    float* row = samples.row(y);
    for (size_t x = 0; x < line.size(); ++x) {
      const int64_t place = static_cast<int64_t>(x) - static_cast<int64_t>(reach);
      line[x] =
          row[wraps ? (place % count + count) % count : std::clamp<int64_t>(place, 0, count - 1)];
    }
    for (size_t x = 0; x < width; ++x)
      row[x] = weights[0] * line[x + reach];
    for (size_t distance = 1; distance <= reach; ++distance) {
      const float* before = line.data() + reach - distance;
      const float* behind = line.data() + reach + distance;
      const float weight = weights[distance];
      for (size_t x = 0; x < width; ++x)
        row[x] += weight * (before[x] + behind[x]);
    }
  }
}

void blurColumns(Samples& samples, const std::vector<float>& weights) {
  Samples source = samples;
  const size_t last = samples.height - 1;
  for (size_t y = 0; y < samples.height; ++y) {
    float* row = samples.row(y);
    for (size_t x = 0; x < samples.width; ++x)
      row[x] *= weights[0];
    for (size_t distance = 1; distance < weights.size(); ++distance) {
      const float* above = source.row(y < distance ? 0 : y - distance);
      const float* below = source.row(std::min(last, y + distance));
      const float weight = weights[distance];
      for (size_t x = 0; x < samples.width; ++x)
        row[x] += weight * (above[x] + below[x]);
    }
  }
}

}  // namespace

void CAShapeLayer::setFrame(NSRect frame) {
  if (frame.size != this->frame().size) coverage_.reset();
  CALayer::setFrame(frame);
}

void CAShapeLayer::setPath(NSBezierPath path) {
  if (path == path_) return;
  path_ = std::move(path);
  coverage_.reset();
}

void CAShapeLayer::setShadowRadius(double radius) {
  shadowRadius_ = std::max(0.0, radius);
  coverage_.reset();
}

void CAShapeLayer::setWrapsHorizontally(bool wraps) {
  wrapsHorizontally_ = wraps;
  coverage_.reset();
}

std::shared_ptr<NSImage> CAShapeLayer::coverage() const {
  if (coverage_ || path_.elements().empty() || NSIsEmptyRect(frame())) return coverage_;
  Samples samples = filledPath(path_, frame().size);
  const std::vector<float> weights = gaussianWeights(shadowRadius_);
  blurRows(samples, weights, wrapsHorizontally_);
  blurColumns(samples, weights);
  std::vector<uint8_t> opacity(samples.values.size());
  std::ranges::transform(samples.values, opacity.begin(), [](float value) {
    return static_cast<uint8_t>(std::clamp(value + 0.5F, 0.F, 255.F));
  });
  coverage_ = NSImage::imageWithOpacity(static_cast<int>(samples.width),
                                        static_cast<int>(samples.height), std::move(opacity));
  return coverage_;
}
