#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/AppKit/Drawing/NSImage.h"

/// A picture cut into parts when it was loaded, to be laid out at any size: the ends keep theirs,
/// what lies between is stretched.
class ZEVImageCacheItem_Time {
 public:
  /// Three parts from left to right (from top to bottom where `vertical`), or nine row by row.
  ZEVImageCacheItem_Time(std::vector<std::shared_ptr<NSImage>> parts, bool vertical)
      : parts_(std::move(parts)), vertical_(vertical) {}

  const std::vector<std::shared_ptr<NSImage>>& parts() const { return parts_; }
  bool vertical() const { return vertical_; }

  void drawInRect(NSRect rect) const { drawInRect(rect, 1); }
  void drawInRect(NSRect rect, double alpha) const;

 private:
  std::vector<std::shared_ptr<NSImage>> parts_;
  bool vertical_;
};

/// Pictures by name, from the family's resource bundle, each read once and kept. A picture that is
/// missing or damaged is null, and tried again next time. Main thread only.
class ZEVImageCache_Time {
 public:
  static ZEVImageCache_Time& sharedCache();

  std::shared_ptr<NSImage> imageNamed(std::string_view name);

  /// The picture with caps of those widths or heights, in points. Only `left`: three parts in a
  /// row; only `top`: three in a column; a far cap of 0 is as large as the near one. Else nine
  /// parts. Caps leave at least one point between them. Read anew for each set of caps.
  std::shared_ptr<ZEVImageCacheItem_Time> imageWithInset(std::string_view name, double top,
                                                         double left, double bottom, double right);
  std::shared_ptr<ZEVImageCacheItem_Time> imageWithLeftCap(std::string_view name, double cap) {
    return imageWithInset(name, 0, cap, 0, cap);
  }
  std::shared_ptr<ZEVImageCacheItem_Time> imageWithTopCap(std::string_view name, double cap) {
    return imageWithInset(name, cap, 0, 0, 0);
  }
  std::shared_ptr<ZEVImageCacheItem_Time> imageWithTopCap(std::string_view name, double cap,
                                                          double bottomCap) {
    return imageWithInset(name, cap, 0, bottomCap, 0);
  }

 private:
  std::map<std::string, std::shared_ptr<NSImage>, std::less<>> images_;
  std::map<std::string, std::shared_ptr<ZEVImageCacheItem_Time>, std::less<>> items_;
};

/// The shared cache's picture of that name.
std::shared_ptr<NSImage> ZEVImageNamed(std::string_view name);
