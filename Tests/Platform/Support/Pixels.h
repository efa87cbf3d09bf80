#pragma once

#include <functional>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"

/// The pixels of a picture that are not clear: the box around them, ends included, and their sum.
struct Ink {
  int left = 0;
  int right = -1;
  int top = 0;
  int bottom = -1;
  double area = 0;      ///< In whole pixels; half covered ones count half.
  bool isCrisp = true;  ///< No pixel is covered in part.

  friend bool operator==(const Ink&, const Ink&) = default;
};

Ink inkOf(const BitmapSurface& surface);

/// A surface of so many points, drawn on.
class Drawn : public BitmapSurface {
 public:
  Drawn(NSSize size, double scale, const std::function<void()>& draw) : BitmapSurface(size, scale) {
    const NSCurrentGraphicsContext current(context());
    draw();
  }
};

/// Fills a rectangle in the current context.
void fill(NSRect rect);
