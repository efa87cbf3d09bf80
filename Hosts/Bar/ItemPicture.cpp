#include "Hosts/Bar/ItemPicture.h"

#include <algorithm>
#include <cmath>
#include <utility>

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
  const bool isInPlace =
      !pixels_.empty() && place == place_ && leftEdge == leftEdge_ && background == background_;
  changed_ = {};
  if (isInPlace && drawing == drawing_) return false;
  if (isInPlace) {
    const auto exchanged = digits_.exchange(
        drawing_, drawing, [this](const DrawingList& list) { return pictureOf(list); }, pixels_,
        frame_.width);
    if (exchanged) {
      drawing_ = std::move(drawing);
      changed_ = *exchanged;
      return !changed_.isEmpty();
    }
  } else {
    digits_.forget();
  }
  place_ = place;
  leftEdge_ = leftEdge;
  drawing_ = std::move(drawing);
  background_ = background;

  const PixelRect oldFrame = std::exchange(frame_, frameFor(width));
  const std::vector<uint32_t> old = std::exchange(pixels_, pictureOf(drawing_));
  changed_ = frame_ == oldFrame && old.size() == pixels_.size()
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

PixelRect ItemPicture::frameFor(double width) const {
  // The selection is wider than the item on both sides.
  const double selection = NSMenuBarSlot::SelectionMargin;
  const int grid = place_.pixelGrid;
  PixelRect frame;
  frame.x = std::max(0, pixelsDown((leftEdge_ - selection) * place_.scale, grid));
  frame.width = pixelsUp((leftEdge_ + width + selection) * place_.scale - frame.x, grid);
  frame.height = pixelsUp(static_cast<double>(background_.size()), grid);
  return frame;
}

std::vector<uint32_t> ItemPicture::pictureOf(const DrawingList& drawing) const {
  const auto width = static_cast<size_t>(frame_.width);
  std::vector<uint32_t> pixels(width * static_cast<size_t>(frame_.height));
  for (size_t row = 0; row < background_.size(); ++row) {
    std::fill_n(pixels.begin() + static_cast<ptrdiff_t>(row * width), width, background_[row]);
  }
  if (frame_.width == 0) return pixels;
  BitmapSurface surface(pixels.data(), frame_.width, static_cast<int>(background_.size()),
                        place_.scale);
  // The item's own pixels begin on a whole one, wherever its points would lie.
  const double left = std::floor(leftEdge_ * place_.scale + Tolerance) - frame_.x;
  surface.context().translateBy({left / place_.scale, 0});
  drawing.drawIn(surface.context());
  return pixels;
}
