#include "Hosts/Bar/ItemPicture.h"

#include <algorithm>
#include <cmath>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"

namespace {

/// A width that follows from the drawing settles in the second pass. The bound is for an item whose
/// width never does.
constexpr int MaximumPasses = 3;

/// No item is wider than a row of monitors; Cairo's own bound is 32767 pixels.
constexpr double MaximumWidth = 8000;

/// Sums of points and scales that are whole up to a rounding are whole.
constexpr double Tolerance = 1e-6;

int pixelsDown(double pixels, int grid) {
  return static_cast<int>(std::floor(pixels / grid + Tolerance)) * grid;
}

int pixelsUp(double pixels, int grid) {
  return static_cast<int>(std::ceil(pixels / grid - Tolerance)) * grid;
}

}  // namespace

bool ItemPicture::render(const NSMenuBarSlot& slot, const ItemPlace& place,
                         const std::vector<uint32_t>& background) {
  DrawingList drawing = settledDrawing(slot, place.scale);
  const double width = std::ceil(std::clamp(slot.length(), 0.0, MaximumWidth));
  const double leftEdge = place.barWidth - RightMargin - width;
  const bool isSame = !pixels_.empty() && place == place_ && leftEdge == leftEdge_ &&
                      background == background_ && drawing == drawing_;
  changed_ = {};
  if (isSame) return false;
  place_ = place;
  leftEdge_ = leftEdge;
  drawing_ = std::move(drawing);
  background_ = background;

  const std::vector<uint32_t> old = std::move(pixels_);
  const PixelRect oldFrame = frame_;
  // The selection is wider than the item on both sides.
  const double selection = NSMenuBarSlot::SelectionMargin;
  frame_.x = std::max(0, pixelsDown((leftEdge - selection) * place.scale, place.pixelGrid));
  frame_.y = 0;
  frame_.width = pixelsUp((leftEdge + width + selection) * place.scale - frame_.x, place.pixelGrid);
  frame_.height = pixelsUp(static_cast<double>(background.size()), place.pixelGrid);
  draw(background);
  changed_ = frame_ == oldFrame
                 ? difference({old, frame_.width, frame_.height, frame_.width}, pixels())
                 : PixelRect{0, 0, frame_.width, frame_.height};
  return !changed_.isEmpty();
}

void ItemPicture::forget() { pixels_.clear(); }

DrawingList ItemPicture::settledDrawing(const NSMenuBarSlot& slot, double scale) {
  for (int pass = 1;; ++pass) {
    DrawingList drawing(scale);
    const double length = slot.length();
    slot.draw(drawing);
    if (slot.length() == length || pass == MaximumPasses) return drawing;
  }
}

void ItemPicture::draw(const std::vector<uint32_t>& background) {
  pixels_.assign(static_cast<size_t>(frame_.width) * static_cast<size_t>(frame_.height), 0);
  for (size_t row = 0; row < background.size(); ++row) {
    std::fill_n(pixels_.begin() + static_cast<ptrdiff_t>(row * static_cast<size_t>(frame_.width)),
                frame_.width, background[row]);
  }
  if (frame_.width == 0) return;
  BitmapSurface surface(pixels_.data(), frame_.width, static_cast<int>(background.size()),
                        place_.scale);
  // The item's own pixels begin on a whole one, wherever its points would lie.
  const double left = std::floor(leftEdge_ * place_.scale + Tolerance) - frame_.x;
  surface.context().translateBy({left / place_.scale, 0});
  drawing_.drawIn(surface.context());
}

PixelRect ItemPicture::difference(const PixelPicture& before, const PixelPicture& after) {
  if (before.pixels.size() != after.pixels.size()) return {0, 0, after.width, after.height};
  PixelRect changed;
  int right = 0;
  for (int y = 0; y < after.height; ++y) {
    const uint32_t* const a = before.row(y);
    const uint32_t* const b = after.row(y);
    const auto first = static_cast<int>(std::mismatch(a, a + after.width, b).first - a);
    if (first == after.width) continue;
    int last = after.width - 1;
    while (a[last] == b[last])
      --last;
    if (changed.height == 0) changed = {first, y, 0, 0};
    changed.x = std::min(changed.x, first);
    right = std::max(right, last + 1);
    changed.height = y + 1 - changed.y;
  }
  changed.width = right - changed.x;
  return changed;
}
