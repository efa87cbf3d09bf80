#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "Platform/AppKit/NSImage.h"

/// Pictures by name, from the family's resource bundle, each read once and kept. Main thread only.
class ZEVImageCache_Time {
 public:
  static ZEVImageCache_Time& sharedCache();

  /// Null for an empty name or a picture that is missing or damaged, which is tried again next
  /// time.
  std::shared_ptr<NSImage> imageNamed(std::string_view name);

 private:
  std::map<std::string, std::shared_ptr<NSImage>, std::less<>> cache_;
};

/// The shared cache's picture of that name.
std::shared_ptr<NSImage> ZEVImageNamed(std::string_view name);
