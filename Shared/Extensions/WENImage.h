#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "Platform/AppKit/Drawing/NSImage.h"
#include "Shared/Extensions/ImageParts.h"

/// A stretchable picture that is an image itself. Main thread only.
///
/// What the class-level operations make is kept under the source picture's name alone, which for a
/// file is its own without the extension: whoever asks for that name again gets the first caps. A
/// picture without a name, or a file that is no picture, gives null. Caps are whole points.
class WENImage_Time : public NSImage {
 public:
  WENImage_Time(const NSImage& image, ImagePartsLayout layout, const ImageInsets& insets);

  /// Three parts in a row, the outer ones of one width.
  static std::shared_ptr<WENImage_Time> threePartImageFromImageLeftCapWidth(const NSImage& image,
                                                                            int64_t leftCapWidth);
  static std::shared_ptr<WENImage_Time> threePartImageFromPathLeftCapWidth(
      const std::filesystem::path& path, int64_t leftCapWidth);

  /// Three parts in a column, the outer ones of one height or of two.
  static std::shared_ptr<WENImage_Time> threePartImageFromImageTopCapHeight(const NSImage& image,
                                                                            int64_t topCapHeight);
  static std::shared_ptr<WENImage_Time> threePartImageFromImageTopCapHeight(
      const NSImage& image, int64_t topCapHeight, int64_t bottomCapHeight);

  /// Nine parts with corners of `leftCapWidth` by `topCapHeight`.
  static std::shared_ptr<WENImage_Time> ninePartImage(const NSImage& image, int64_t leftCapWidth,
                                                      int64_t topCapHeight);
  static std::shared_ptr<WENImage_Time> ninePartImageFromPath(const std::filesystem::path& path,
                                                              int64_t leftCapWidth,
                                                              int64_t topCapHeight);

  bool vertical() const { return vertical_; }
  /// Three, nine, or none of a picture without size.
  const std::vector<std::shared_ptr<NSImage>>& parts() const { return parts_; }

  using NSImage::drawInRect;
  void drawInRect(NSRect rect, double alpha) const override;

 private:
  std::vector<std::shared_ptr<NSImage>> parts_;
  bool vertical_;
};
