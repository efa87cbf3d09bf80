#pragma once

// For the platform's own sources only: what an image is drawn from.

#include <cairo.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "Platform/AppKit/Drawing/ScaledBitmaps_p.h"
#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/NSGeometry.h"

using Surface = LibraryHandle<cairo_surface_t, cairo_surface_destroy>;

class NSImageRep {
 public:
  virtual ~NSImageRep() = default;

  /// In points.
  virtual NSSize size() const = 0;

  /// Paints the whole picture with its upper left corner at the origin of a user space with y
  /// downwards.
  virtual void paint(cairo_t* cairo, double fraction) const = 0;
};

/// Reads an SVG or PNG file. Null if it is missing, damaged or beyond any sensible size.
std::unique_ptr<NSImageRep> imageRepFromFile(const std::filesystem::path& file);

/// Holds drawing commands, replayed at each scale in use and kept as bitmaps.
class RecordedImageRep : public NSImageRep {
 public:
  explicit RecordedImageRep(NSSize size);

  NSSize size() const override { return size_; }
  void paint(cairo_t* cairo, double fraction) const override;

  /// The surface to record further drawing on.
  cairo_surface_t* beginRecording();

 private:
  NSSize size_;
  Surface surface_;
  mutable ScaledBitmaps bitmaps_;
};

/// Samples of opacity, one a point, enlarged once for each scale in use.
class OpacityImageRep : public NSImageRep {
 public:
  OpacityImageRep(int width, int height, std::vector<uint8_t> samples);

  NSSize size() const override {
    return {static_cast<double>(width_), static_cast<double>(height_)};
  }
  void paint(cairo_t* cairo, double fraction) const override;

 private:
  void enlargeInto(cairo_surface_t* bitmap) const;
  void paintSamples(cairo_t* cairo) const;

  int width_;
  int height_;
  std::vector<uint8_t> samples_;
  mutable ScaledBitmaps bitmaps_;
};
