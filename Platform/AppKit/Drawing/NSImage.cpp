#include "Platform/AppKit/Drawing/NSImage.h"

#include <utility>

#include "Platform/AppKit/Drawing/NSImageRep_p.h"

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

std::shared_ptr<NSImage> NSImage::imageWithOpacity(int width, int height,
                                                   std::vector<uint8_t> samples) {
  return std::make_shared<NSImage>(
      Content{std::make_shared<OpacityImageRep>(width, height, std::move(samples))});
}

NSSize NSImage::size() const { return content_.representation->size(); }

void NSImage::drawAtPoint(NSPoint point, double alpha) const { drawInRect({point, size()}, alpha); }

void NSImage::drawInRect(NSRect rect, double alpha) const { drawInRect(rect, NSZeroRect, alpha); }
