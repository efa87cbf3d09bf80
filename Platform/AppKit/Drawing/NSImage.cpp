#include "Platform/AppKit/Drawing/NSImage.h"

#include <cairo.h>

#include <stdexcept>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSImageRep_p.h"

/// The members go in the reverse of their order.
struct NSImageFocus::Target {
  explicit Target(RecordedImageRep& recorded)
      : cairo(cairo_create(recorded.beginRecording()), cairo_destroy),
        context(cairo.get(), recorded.size().height),
        current(context) {}

  std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cairo;
  CairoGraphicsContext context;
  NSCurrentGraphicsContext current;
};

NSImageFocus::NSImageFocus(std::unique_ptr<Target> target) : target_(std::move(target)) {}

NSImageFocus::NSImageFocus(NSImageFocus&&) noexcept = default;

NSImageFocus::~NSImageFocus() = default;

NSImage::NSImage(Content content) : content_(std::move(content)) {}

NSImage::NSImage(NSSize size) : NSImage(Content{std::make_shared<RecordedImageRep>(size)}) {}

NSImage::~NSImage() = default;

std::shared_ptr<NSImage> NSImage::imageWithContentsOfFile(const std::filesystem::path& file) {
  auto representation = imageRepFromFile(file);
  return representation ? std::make_shared<NSImage>(Content{std::move(representation)}) : nullptr;
}

std::shared_ptr<NSImage> NSImage::imageWithSize(NSSize size) {
  return std::make_shared<NSImage>(size);
}

NSSize NSImage::size() const { return content_.representation->size(); }

NSImageFocus NSImage::lockFocus() {
  auto* recorded = dynamic_cast<RecordedImageRep*>(content_.representation.get());
  if (recorded == nullptr) throw std::logic_error("NSImage: a picture from a file is read-only");
  ++content_.version;
  return NSImageFocus(std::make_unique<NSImageFocus::Target>(*recorded));
}

void NSImage::drawAtPoint(NSPoint point, double alpha) const { drawInRect({point, size()}, alpha); }

void NSImage::drawInRect(NSRect rect, double alpha) const { drawInRect(rect, NSZeroRect, alpha); }

void NSImage::drawInRect(NSRect target, NSRect source, double fraction) const {
  if (auto* context = NSGraphicsContext::currentContext()) {
    context->drawImage(*this, target, source, fraction);
  }
}
