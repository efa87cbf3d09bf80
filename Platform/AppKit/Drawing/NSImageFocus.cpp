#include <cairo.h>

#include <stdexcept>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/AppKit/Drawing/NSImageRep_p.h"

/// The members go in the reverse of their order.
struct NSImageFocus::Target {
  explicit Target(RecordedImageRep& recorded)
      : cairo(cairo_create(recorded.beginRecording())),
        context(cairo.get(), recorded.size().height),
        current(context) {}

  LibraryHandle<cairo_t, cairo_destroy> cairo;
  CairoGraphicsContext context;
  NSCurrentGraphicsContext current;
};

NSImageFocus::NSImageFocus(std::unique_ptr<Target> target) : target_(std::move(target)) {}

NSImageFocus::NSImageFocus(NSImageFocus&&) noexcept = default;

NSImageFocus::~NSImageFocus() = default;

NSImageFocus NSImage::lockFocus() {
  auto* recorded = dynamic_cast<RecordedImageRep*>(content_.representation.get());
  if (recorded == nullptr) throw std::logic_error("NSImage: a picture from a file is read-only");
  ++content_.version;
  return NSImageFocus(std::make_unique<NSImageFocus::Target>(*recorded));
}
