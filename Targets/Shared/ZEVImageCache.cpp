#include "Targets/Shared/ZEVImageCache.h"

#include <algorithm>
#include <cstdio>

#include "Platform/AppKit/Drawing/NSDrawing.h"
#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/Foundation/SharedInstance.h"
#include "Shared/Extensions/ImageParts.h"
#include "Targets/Shared/ZEVPreferences.h"

namespace {

std::shared_ptr<NSImage> loadedImage(std::string_view name) {
  const auto path = ZEVPreferences_Time::sharedPreferences()->pathForImage(name);
  auto image = NSImage::imageWithContentsOfFile(path);
  if (image) image->setName(nameWithoutImageExtension(name));
  return image;
}

std::string keyOf(std::string_view name, double top, double left, double bottom, double right) {
  char insets[128];
  std::snprintf(insets, sizeof insets, " - %.0f, %.0f, %.0f, %.0f", top, left, bottom, right);
  return std::string(name) + insets;
}

/// Shrinks the far cap so that a point is left between the two.
double farCap(double near, double far, double length) {
  return near + far > length - 1 ? std::max(0.0, length - near - 1) : far;
}

}  // namespace

void ZEVImageCacheItem_Time::drawInRect(NSRect rect, double alpha) const {
  const auto* context = NSGraphicsContext::currentContext();
  if (context != nullptr) drawImageParts(parts_, rect, vertical_, alpha, context->isFlipped());
}

ZEVImageCache_Time& ZEVImageCache_Time::sharedCache() {
  static SharedInstance<ZEVImageCache_Time> cache;
  return cache.get();
}

std::shared_ptr<NSImage> ZEVImageCache_Time::imageNamed(std::string_view name) {
  if (name.empty()) return nullptr;
  const auto found = images_.find(name);
  if (found != images_.end()) return found->second;
  auto image = loadedImage(name);
  if (image) images_.emplace(name, image);
  return image;
}

std::shared_ptr<ZEVImageCacheItem_Time> ZEVImageCache_Time::imageWithInset(std::string_view name,
                                                                           double top, double left,
                                                                           double bottom,
                                                                           double right) {
  const std::string key = keyOf(name, top, left, bottom, right);
  const auto found = items_.find(key);
  if (found != items_.end()) return found->second;
  const auto image = loadedImage(name);
  if (!image) return nullptr;

  const bool isRow = left > 0 && top == 0;
  const bool isColumn = left == 0 && top > 0;
  if (isRow && right == 0) right = left;
  if (isColumn && bottom == 0) bottom = top;
  right = farCap(left, right, image->size().width);
  bottom = farCap(top, bottom, image->size().height);
  const auto layout = isRow      ? ImagePartsLayout::Row
                      : isColumn ? ImagePartsLayout::Column
                                 : ImagePartsLayout::Grid;
  auto item = std::make_shared<ZEVImageCacheItem_Time>(
      imageParts(*image, layout, {top, left, bottom, right}), isColumn);
  items_.emplace(key, item);
  return item;
}

std::shared_ptr<NSImage> ZEVImageNamed(std::string_view name) {
  return ZEVImageCache_Time::sharedCache().imageNamed(name);
}
