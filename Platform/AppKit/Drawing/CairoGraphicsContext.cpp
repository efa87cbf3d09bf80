#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"

#include <cairo.h>

#include <cmath>
#include <stdexcept>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/NSGradient.h"
#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/AppKit/Drawing/NSImageRep_p.h"
#include "Platform/AppKit/Text/TextLine_p.h"

CairoGraphicsContext::CairoGraphicsContext(_cairo* cairo, double height, Purpose purpose)
    : cairo_(cairo), purpose_(purpose) {
  cairo_save(cairo_);
  cairo_translate(cairo_, 0, height);
  cairo_scale(cairo_, 1, -1);
}

CairoGraphicsContext::~CairoGraphicsContext() {
  // Saves left open must not change the coordinates of whoever draws on the surface next.
  while (savedStateCount() > 0)
    restoreGraphicsState();
  endMasks(0);
  cairo_restore(cairo_);
}

std::string_view CairoGraphicsContext::className() const {
  return purpose_ == Purpose::Snapshot ? "NSBitmapGraphicsContext" : "NSCairoGraphicsContext";
}

void CairoGraphicsContext::tracePath(const NSBezierPath& path) {
  cairo_new_path(cairo_);
  for (const auto& element : path.elements()) {
    using Kind = NSBezierPath::Element::Kind;
    switch (element.kind) {
      case Kind::MoveTo:
        cairo_move_to(cairo_, element.point.x, element.point.y);
        break;
      case Kind::LineTo:
        cairo_line_to(cairo_, element.point.x, element.point.y);
        break;
      case Kind::CurveTo:
        cairo_curve_to(cairo_, element.controlPoint1.x, element.controlPoint1.y,
                       element.controlPoint2.x, element.controlPoint2.y, element.point.x,
                       element.point.y);
        break;
      case Kind::Close:
        cairo_close_path(cairo_);
        break;
    }
  }
}

void CairoGraphicsContext::paintPath(const NSBezierPath& path) {
  tracePath(path);
  const NSColor& color = fillColor();
  cairo_set_source_rgba(cairo_, color.redComponent(), color.greenComponent(), color.blueComponent(),
                        color.alphaComponent());
  cairo_fill(cairo_);
}

void CairoGraphicsContext::paintGradient(const NSBezierPath& path, const NSGradient& gradient,
                                         NSPoint start, NSPoint end) {
  cairo_pattern_t* pattern = cairo_pattern_create_linear(start.x, start.y, end.x, end.y);
  const auto addStop = [&](double offset, const NSColor& color) {
    cairo_pattern_add_color_stop_rgba(pattern, offset, color.redComponent(), color.greenComponent(),
                                      color.blueComponent(), color.alphaComponent());
  };
  addStop(0, gradient.startingColor());
  addStop(1, gradient.endingColor());
  tracePath(path);
  cairo_set_source(cairo_, pattern);
  cairo_fill(cairo_);
  cairo_pattern_destroy(pattern);
}

void CairoGraphicsContext::narrowClip(const NSBezierPath& path) {
  tracePath(path);
  cairo_set_fill_rule(cairo_, CAIRO_FILL_RULE_EVEN_ODD);
  cairo_clip(cairo_);
  cairo_set_fill_rule(cairo_, CAIRO_FILL_RULE_WINDING);
}

void CairoGraphicsContext::narrowClip(const NSImage& mask, NSRect rect) {
  // Keeps the groups as small as what they hold.
  cairo_rectangle(cairo_, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
  cairo_clip(cairo_);
  cairo_push_group_with_content(cairo_, CAIRO_CONTENT_ALPHA);
  paintImage(mask, rect, NSZeroRect, 1);
  masks_.push_back({savedStateCount(), cairo_pop_group(cairo_)});
  cairo_push_group(cairo_);
}

void CairoGraphicsContext::endMasks(size_t depth) {
  while (!masks_.empty() && masks_.back().depth >= depth) {
    cairo_pop_group_to_source(cairo_);
    cairo_mask(cairo_, masks_.back().pattern);
    cairo_pattern_destroy(masks_.back().pattern);
    masks_.pop_back();
  }
}

void CairoGraphicsContext::paintText(std::string_view text, NSPoint point,
                                     const NSTextAttributes& attributes) {
  // The line box stands on `point`; fonts of other scripts in the line must not move its baseline.
  const NSFont& font = attributes.font;
  const NSPoint baseline{point.x, point.y + (isFlipped() ? font.ascender() : font.descender())};
  const auto draw = [&](NSPoint at, const NSColor& color) {
    cairo_save(cairo_);
    cairo_translate(cairo_, at.x, at.y);
    if (!isFlipped()) cairo_scale(cairo_, 1, -1);
    cairo_set_source_rgba(cairo_, color.redComponent(), color.greenComponent(),
                          color.blueComponent(), color.alphaComponent());
    showTextLine(cairo_, text, font);
    cairo_restore(cairo_);
  };
  if (const auto& shadow = attributes.shadow) {
    // A shadow falls by its offset on the screen, whichever way the coordinates go.
    const double rise = isFlipped() ? -shadow->shadowOffset.height : shadow->shadowOffset.height;
    draw({baseline.x + shadow->shadowOffset.width, baseline.y + rise}, shadow->shadowColor);
  }
  draw(baseline, attributes.foregroundColor);
}

void CairoGraphicsContext::paintImage(const NSImage& image, NSRect target, NSRect source,
                                      double fraction) {
  const NSSize size = image.size();
  const bool isWhole = source == NSZeroRect;
  if (isWhole) source = {{0, 0}, size};
  cairo_save(cairo_);
  if (!isWhole) {
    cairo_rectangle(cairo_, target.origin.x, target.origin.y, target.size.width,
                    target.size.height);
    cairo_clip(cairo_);
  }
  cairo_translate(cairo_, target.origin.x, target.origin.y);
  if (!isFlipped()) {
    cairo_translate(cairo_, 0, target.size.height);
    cairo_scale(cairo_, 1, -1);
  }
  cairo_scale(cairo_, target.size.width / source.size.width,
              target.size.height / source.size.height);
  // The picture hangs from its upper left corner.
  cairo_translate(cairo_, -source.origin.x, source.origin.y + source.size.height - size.height);
  image.representation().paint(cairo_, fraction);
  cairo_restore(cairo_);
}

void CairoGraphicsContext::pushState() { cairo_save(cairo_); }

void CairoGraphicsContext::popState() {
  endMasks(savedStateCount() + 1);
  cairo_restore(cairo_);
}

void CairoGraphicsContext::applyTransform(const NSAffineTransform& transform) {
  cairo_matrix_t matrix;
  cairo_matrix_init(&matrix, transform.m11, transform.m12, transform.m21, transform.m22,
                    transform.tX, transform.tY);
  cairo_transform(cairo_, &matrix);
}

NSPoint CairoGraphicsContext::alignedToPixels(NSPoint point) const {
  cairo_surface_t* surface = cairo_get_target(cairo_);
  if (cairo_surface_get_type(surface) == CAIRO_SURFACE_TYPE_RECORDING) return point;
  double scaleX = 1;
  double scaleY = 1;
  cairo_surface_get_device_scale(surface, &scaleX, &scaleY);
  cairo_user_to_device(cairo_, &point.x, &point.y);
  point = {std::round(point.x * scaleX) / scaleX, std::round(point.y * scaleY) / scaleY};
  cairo_device_to_user(cairo_, &point.x, &point.y);
  return point;
}

double CairoGraphicsContext::drawnWidth(std::string_view text, const NSFont& font) const {
  return textLineWidthAtScale(text, font, scaleOfContext(cairo_));
}

struct BitmapSurface::Implementation {
  cairo_surface_t* surface;
  cairo_t* cairo;
};

BitmapSurface::BitmapSurface(NSSize size, double scale)
    : implementation_(std::make_unique<Implementation>()) {
  const auto pixels = [scale](double points) {
    return std::max(1, static_cast<int>(std::ceil(points * scale - 1e-6)));
  };
  implementation_->surface =
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels(size.width), pixels(size.height));
  cairo_surface_set_device_scale(implementation_->surface, scale, scale);
  implementation_->cairo = cairo_create(implementation_->surface);
  context_ = std::make_unique<CairoGraphicsContext>(implementation_->cairo, size.height);
}

BitmapSurface::BitmapSurface(uint32_t* pixels, int width, int height, double scale)
    : implementation_(std::make_unique<Implementation>()) {
  implementation_->surface = cairo_image_surface_create_for_data(
      reinterpret_cast<unsigned char*>(pixels), CAIRO_FORMAT_ARGB32, width, height,
      width * static_cast<int>(sizeof(uint32_t)));
  cairo_surface_set_device_scale(implementation_->surface, scale, scale);
  implementation_->cairo = cairo_create(implementation_->surface);
  context_ = std::make_unique<CairoGraphicsContext>(implementation_->cairo, height / scale);
}

BitmapSurface::~BitmapSurface() {
  context_.reset();
  cairo_destroy(implementation_->cairo);
  cairo_surface_destroy(implementation_->surface);
}

int BitmapSurface::pixelWidth() const {
  return cairo_image_surface_get_width(implementation_->surface);
}

int BitmapSurface::pixelHeight() const {
  return cairo_image_surface_get_height(implementation_->surface);
}

NSColor BitmapSurface::pixelAt(int column, int row) const {
  cairo_surface_flush(implementation_->surface);
  const unsigned char* data = cairo_image_surface_get_data(implementation_->surface);
  const int stride = cairo_image_surface_get_stride(implementation_->surface);
  const auto pixel = reinterpret_cast<const uint32_t*>(data + row * stride)[column];
  const auto alpha = static_cast<double>(pixel >> 24);
  if (alpha == 0) return NSColor::colorWithDeviceWhite(0, 0);
  const auto part = [&](int shift) { return static_cast<double>(pixel >> shift & 255) / alpha; };
  return NSColor::colorWithDeviceRed(part(16), part(8), part(0), alpha / 255);
}

void BitmapSurface::writePng(const std::string& path) const {
  cairo_surface_flush(implementation_->surface);
  const cairo_status_t status = cairo_surface_write_to_png(implementation_->surface, path.c_str());
  if (status != CAIRO_STATUS_SUCCESS) {
    throw std::runtime_error(path + " cannot be written: " + cairo_status_to_string(status));
  }
}
