#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/NSGeometry.h"

class NSImageRep;

/// Drawing into an image: as long as this handle lives, what is drawn on this thread goes there.
/// The image may go before it. Handles go in the reverse of their order.
class [[nodiscard]] NSImageFocus {
 public:
  NSImageFocus(NSImageFocus&&) noexcept;
  NSImageFocus& operator=(NSImageFocus&&) = delete;
  ~NSImageFocus();

 private:
  friend class NSImage;
  struct Target;

  explicit NSImageFocus(std::unique_ptr<Target> target);

  std::unique_ptr<Target> target_;
};

/// A picture that is crisp at every scale: an SVG file kept as bitmaps for the scales in use, a PNG
/// file, or recorded drawing. The size is in points.
class NSImage {
 public:
  /// Null if the file is missing or is no picture.
  static std::shared_ptr<NSImage> imageWithContentsOfFile(const std::filesystem::path& file);

  /// An empty image, to be drawn into with `lockFocus`. A side that is not above 0, or beyond 4096
  /// points, makes it one of no size, which draws nothing.
  static std::shared_ptr<NSImage> imageWithSize(NSSize size);

  /// A black picture of nothing but opacity, for a mask: one sample a point, from 0 to 255, row by
  /// row from the top down. It is smooth between the samples at every scale. Throws
  /// `std::invalid_argument` if the samples do not fill the size.
  static std::shared_ptr<NSImage> imageWithOpacity(int width, int height,
                                                   std::vector<uint8_t> samples);

  /// What an image shows at one time: equal contents look alike. Drawing into the image changes it.
  struct Content {
    std::shared_ptr<NSImageRep> representation;
    uint64_t version = 0;  ///< Of what was drawn into the representation.

    bool operator==(const Content&) const = default;
  };

  explicit NSImage(Content content);
  explicit NSImage(NSSize size);
  NSImage(const NSImage&) = delete;
  NSImage& operator=(const NSImage&) = delete;
  virtual ~NSImage();

  NSSize size() const;
  const std::string& name() const { return name_; }
  void setName(std::string_view name) { name_ = name; }

  /// Makes this image the target of drawing. Only an image made with a size can be drawn into:
  /// any other raises `std::logic_error`.
  NSImageFocus lockFocus();

  /// Draws at the natural size, or stretched into a rectangle, over what is there; upright in
  /// flipped contexts too.
  void drawAtPoint(NSPoint point) const { drawAtPoint(point, 1); }
  void drawAtPoint(NSPoint point, double alpha) const;
  void drawInRect(NSRect rect) const { drawInRect(rect, 1); }
  virtual void drawInRect(NSRect rect, double alpha) const;

  /// The part `source` of the picture, or all of it for a zero rectangle.
  void drawInRect(NSRect target, NSRect source, double fraction) const;

  /// For graphics contexts.
  const NSImageRep& representation() const { return *content_.representation; }
  const Content& content() const { return content_; }

 private:
  Content content_;
  std::string name_;
};
