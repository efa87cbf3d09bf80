#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSImage.h"

class CAShapeLayer;

/// A picture in a rectangle, with others on it. Coordinates are points with y downwards from the
/// upper left corner of the layer around it. Nothing redraws itself: the view that holds a tree of
/// layers has it drawn. Main thread only.
class CALayer {
 public:
  CALayer() = default;
  CALayer(const CALayer&) = delete;
  CALayer& operator=(const CALayer&) = delete;
  virtual ~CALayer() = default;

  const NSRect& frame() const { return frame_; }
  NSRect bounds() const { return {{0, 0}, frame_.size}; }
  virtual void setFrame(NSRect frame) { frame_ = frame; }

  /// Stretched over the layer; null shows nothing.
  const std::shared_ptr<NSImage>& contents() const { return contents_; }
  void setContents(std::shared_ptr<NSImage> contents) { contents_ = std::move(contents); }

  /// Lets the layer and all on it show only as far as the mask covers them. A mask has the frame
  /// of the layer's bounds.
  void setMask(std::shared_ptr<CAShapeLayer> mask) { mask_ = std::move(mask); }

  /// In front of those already there.
  void addSublayer(std::shared_ptr<CALayer> layer) { sublayers_.push_back(std::move(layer)); }

  /// Draws the layer and all on it. The context is flipped, with its origin where the layer around
  /// this one has its own.
  void renderInContext(NSGraphicsContext& context) const;

 private:
  /// What the layer shows itself, in its own coordinates.
  virtual void drawInContext(NSGraphicsContext& context) const;

  NSRect frame_;
  std::shared_ptr<NSImage> contents_;
  std::shared_ptr<CAShapeLayer> mask_;
  std::vector<std::shared_ptr<CALayer>> sublayers_;
};
