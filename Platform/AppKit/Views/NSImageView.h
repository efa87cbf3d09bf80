#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "Platform/AppKit/Drawing/NSImage.h"
#include "Platform/AppKit/Views/NSView.h"

/// A picture in the middle of a view, at its natural size, or made smaller to fit.
class NSImageView : public NSView {
 public:
  explicit NSImageView(NSRect frame = NSZeroRect) : NSView(frame) {}

  const std::shared_ptr<NSImage>& image() const { return image_; }
  void setImage(std::shared_ptr<NSImage> image) {
    image_ = std::move(image);
    setNeedsDisplay(true);
  }
  int64_t tag() const { return tag_; }
  virtual void setTag(int64_t tag) { tag_ = tag; }

  void drawRect(NSRect rect) override;

 private:
  std::shared_ptr<NSImage> image_;
  int64_t tag_ = 0;
};
