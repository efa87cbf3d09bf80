#include "Hosts/Gtk/SlotPicture.h"

#include <algorithm>
#include <cmath>

#include "Platform/AppKit/CairoGraphicsContext.h"

namespace {

constexpr int Height = static_cast<int>(NSMenuExtra::Height);

/// A width that follows from the drawing settles in the second pass. The bound is for an item whose
/// width never does.
constexpr int MaximumPasses = 3;

/// No item is wider than a row of monitors; Cairo's own bound is 32767 pixels.
constexpr double MaximumWidth = 8000;

}  // namespace

bool SlotPicture::render(const NSMenuBarSlot& slot, int scale) {
  const Surface old = std::move(surface_);
  renderSettled(slot, scale);
  return !std::ranges::equal(pixelsOf(old), pixelsOf(surface_));
}

void SlotPicture::renderSettled(const NSMenuBarSlot& slot, int scale) {
  for (int pass = 0; pass < MaximumPasses; ++pass) {
    const double length = slot.length();
    width_ = static_cast<int>(std::ceil(std::clamp(length, 0.0, MaximumWidth)));
    surface_.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width_ * scale, Height * scale));
    cairo_surface_set_device_scale(surface_.get(), scale, scale);
    const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cairo(cairo_create(surface_.get()),
                                                                   cairo_destroy);
    CairoGraphicsContext context(cairo.get(), Height);
    slot.draw(context);
    if (slot.length() == length) return;
  }
}

std::span<const unsigned char> SlotPicture::pixelsOf(const Surface& surface) {
  if (!surface) return {};
  cairo_surface_flush(surface.get());
  const int size =
      cairo_image_surface_get_stride(surface.get()) * cairo_image_surface_get_height(surface.get());
  return {cairo_image_surface_get_data(surface.get()), static_cast<size_t>(size)};
}

void SlotPicture::paint(cairo_t* cairo, double x, double y) const {
  if (!surface_) return;
  cairo_set_source_surface(cairo, surface_.get(), x, y);
  cairo_paint(cairo);
}
