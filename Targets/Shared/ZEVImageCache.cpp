#include "Targets/Shared/ZEVImageCache.h"

#include "Targets/Shared/ZEVPreferences.h"

ZEVImageCache_Time& ZEVImageCache_Time::sharedCache() {
  static ZEVImageCache_Time cache;
  return cache;
}

std::shared_ptr<NSImage> ZEVImageCache_Time::imageNamed(std::string_view name) {
  if (name.empty()) return nullptr;
  const auto found = cache_.find(name);
  if (found != cache_.end()) return found->second;
  const auto path = ZEVPreferences_Time::sharedPreferences()->pathForImage(name);
  auto image = NSImage::imageWithContentsOfFile(path);
  if (!image) return nullptr;
  image->setName(nameWithoutImageExtension(name));
  cache_.emplace(name, image);
  return image;
}

std::shared_ptr<NSImage> ZEVImageNamed(std::string_view name) {
  return ZEVImageCache_Time::sharedCache().imageNamed(name);
}
