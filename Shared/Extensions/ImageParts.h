#pragma once

#include <memory>
#include <vector>

#include "Platform/AppKit/Drawing/NSImage.h"

/// What of a picture keeps its size when it is stretched, in points from each side.
struct ImageInsets {
  double top = 0;
  double left = 0;
  double bottom = 0;
  double right = 0;
};

enum class ImagePartsLayout { Row, Column, Grid };

/// Cuts a picture into 3 or 9 pictures, from left to right and from top to bottom. A part without
/// extent is null. A picture of size 0 by 0 has no parts.
std::vector<std::shared_ptr<NSImage>> imageParts(const NSImage& image, ImagePartsLayout layout,
                                                 const ImageInsets& insets);

/// Lays 3 or 9 parts out in a rectangle of the current context; any other number draws nothing.
/// Three stand in a row, or in a column where `vertical`.
void drawImageParts(const std::vector<std::shared_ptr<NSImage>>& parts, NSRect rect, bool vertical,
                    double alpha, bool flipped);
