#include "Platform/AppKit/Menus/MenuPicture.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSBezierPath.h"

namespace {

// In points.
constexpr double ShadowMargin = 20;
constexpr double ShadowBlur = 7;  ///< The standard deviation.
constexpr double ShadowDrop = 3;
constexpr double ShadowOpacity = 0.34;
constexpr double CornerRadius = 6;

int down(int value, int grid) {
  return static_cast<int>(std::floor(static_cast<double>(value) / grid)) * grid;
}
int up(int value, int grid) { return -down(-value, grid); }

/// How much of a blurred edge's shadow falls on each pixel of a line, for a bar from `from` to
/// `to`.
std::vector<double> blurredBar(int length, double from, double to, double deviation) {
  std::vector<double> shares(static_cast<size_t>(length));
  for (size_t pixel = 0; pixel < shares.size(); ++pixel) {
    const double middle = static_cast<double>(pixel) + 0.5;
    const double reach = deviation * std::sqrt(2.0);
    shares[pixel] = (std::erf((middle - from) / reach) - std::erf((middle - to) / reach)) / 2;
  }
  return shares;
}

}  // namespace

bool MenuPicture::render(MenuPanel& panel, NSPoint origin) {
  const auto pixel = [&](double points) { return static_cast<int>(std::lround(points * scale_)); };
  const NSRect& menu = panel.frame();
  const int left = pixel(menu.origin.x - origin.x);
  const int top = pixel(menu.origin.y - origin.y);
  const int width = std::max(1, pixel(menu.size.width));
  const int height = std::max(1, pixel(menu.size.height));
  const int margin = isComposited_ ? pixel(ShadowMargin) : 0;
  Part frame;
  frame.x = down(left - margin, pixelGrid_);
  frame.y = down(top - margin, pixelGrid_);
  frame.width = up(left + width + margin - frame.x, pixelGrid_);
  frame.height = up(top + height + margin - frame.y, pixelGrid_);
  const Part inside{left - frame.x, top - frame.y, width, height};
  const NSColor& ground = panel.menu()->backgroundColor();
  const bool isResized = frame.width != frame_.width || frame.height != frame_.height ||
                         !(inside == panelPart_) || ground != ground_ || pixels_.empty();
  const bool isMoved = frame.x != frame_.x || frame.y != frame_.y;
  frame_ = frame;
  const NSRect dirty = panel.takeDirtyRect();
  if (isResized) {
    panelPart_ = inside;
    ground_ = ground;
    drawSurroundings(ground);
    pixels_ = surroundings_;
    drawPanel(panel, {0, 0, width, height});
    changed_ = {0, 0, frame.width, frame.height};
    return true;
  }
  changed_ = {};
  if (NSIsEmptyRect(dirty)) return isMoved;
  const int x = std::max(0, static_cast<int>(std::floor(dirty.origin.x * scale_)));
  const int y = std::max(0, static_cast<int>(std::floor(dirty.origin.y * scale_)));
  const auto end = [&](double points, int limit) {
    return std::min(limit, static_cast<int>(std::ceil(points * scale_)));
  };
  const Part part{x, y, end(dirty.origin.x + dirty.size.width, width) - x,
                  end(dirty.origin.y + dirty.size.height, height) - y};
  if (part.width <= 0 || part.height <= 0) return isMoved;
  drawPanel(panel, part);
  changed_ = {part.x + panelPart_.x, part.y + panelPart_.y, part.width, part.height};
  return true;
}

void MenuPicture::drawSurroundings(const NSColor& ground) {
  const auto columns = static_cast<size_t>(frame_.width);
  surroundings_.assign(columns * static_cast<size_t>(frame_.height), 0);
  if (isComposited_) {
    const double drop = ShadowDrop * scale_;
    const double blur = ShadowBlur * scale_;
    const std::vector<double> across =
        blurredBar(frame_.width, panelPart_.x, panelPart_.x + panelPart_.width, blur);
    const std::vector<double> along = blurredBar(frame_.height, panelPart_.y + drop,
                                                 panelPart_.y + panelPart_.height + drop, blur);
    for (size_t row = 0; row < along.size(); ++row) {
      for (size_t column = 0; column < columns; ++column) {
        const double alpha = ShadowOpacity * along[row] * across[column] * 255;
        surroundings_[row * columns + column] = static_cast<uint32_t>(alpha + 0.5) << 24;
      }
    }
  }
  BitmapSurface surface(surroundings_.data(), frame_.width, frame_.height, scale_);
  const NSCurrentGraphicsContext current(surface.context());
  const double pixel = 1 / scale_;
  const NSRect panel =
      NSMakeRect(panelPart_.x * pixel, (frame_.height - panelPart_.y - panelPart_.height) * pixel,
                 panelPart_.width * pixel, panelPart_.height * pixel);
  if (isComposited_) {
    // A hem one pixel wide sets the menu off from what is as light or as dark as it.
    NSColor::colorWithDeviceWhite(0, 0.22).setFill();
    NSBezierPath::bezierPathWithRoundedRect(NSInsetRect(panel, -pixel, -pixel),
                                            CornerRadius + pixel)
        .fill();
  }
  ground.setFill();
  const double radius = isComposited_ ? CornerRadius : 0;
  NSBezierPath::bezierPathWithRoundedRect(panel, radius).fill();
}

void MenuPicture::drawPanel(const MenuPanel& panel, Part part) {
  // From the surroundings on, so that nothing is drawn twice over smooth corners.
  const auto columns = static_cast<size_t>(frame_.width);
  for (int row = part.y; row < part.y + part.height; ++row) {
    const size_t start = static_cast<size_t>(row + panelPart_.y) * columns +
                         static_cast<size_t>(part.x + panelPart_.x);
    std::copy_n(surroundings_.begin() + static_cast<ptrdiff_t>(start), part.width,
                pixels_.begin() + static_cast<ptrdiff_t>(start));
  }
  BitmapSurface surface(pixels_.data(), frame_.width, frame_.height, scale_);
  NSGraphicsContext& context = surface.context();
  const NSCurrentGraphicsContext current(context);
  const double pixel = 1 / scale_;
  context.translateBy(
      {panelPart_.x * pixel, (frame_.height - panelPart_.y - panelPart_.height) * pixel});
  context.flip(panelPart_.height * pixel);
  const NSRect rect =
      NSMakeRect(part.x * pixel, part.y * pixel, part.width * pixel, part.height * pixel);
  context.clipToPath(NSBezierPath::bezierPathWithRect(rect));
  const NSRect whole = NSMakeRect(0, 0, panelPart_.width * pixel, panelPart_.height * pixel);
  if (isComposited_) {
    context.clipToPath(NSBezierPath::bezierPathWithRoundedRect(whole, CornerRadius));
  }
  panel.displayRect(rect);
  if (!isComposited_) drawEdge(ground_);
}

void MenuPicture::drawEdge(const NSColor& ground) {
  const double pixel = 1 / scale_;
  const NSRect whole = NSMakeRect(0, 0, panelPart_.width * pixel, panelPart_.height * pixel);
  NSBezierPath edge = NSBezierPath::bezierPathWithRect(whole);
  edge.appendBezierPath(NSBezierPath::bezierPathWithRect(NSInsetRect(whole, pixel, pixel)));
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  context->clipToPath(edge);
  NSColor::colorWithDeviceWhite(ground.greenComponent() > 0.5 ? 0.66 : 0.36, 1).setFill();
  NSBezierPath::bezierPathWithRect(whole).fill();
}
