#include "Shared/Extensions/ImageParts.h"

#include <algorithm>

#include "Platform/AppKit/Drawing/NSDrawing.h"

namespace {

/// A stretch of one direction, from the picture's left or lower side.
struct Span {
  double from;
  double length;
};

std::vector<Span> spans(double length, double lowInset, double highInset) {
  return {
      {0, lowInset}, {lowInset, length - lowInset - highInset}, {length - highInset, highInset}};
}

std::shared_ptr<NSImage> part(const NSImage& image, Span across, Span up) {
  if (across.length <= 0 || up.length <= 0) return nullptr;
  auto cut = NSImage::imageWithSize({across.length, up.length});
  const NSImageFocus focus = cut->lockFocus();
  image.drawAtPoint({-across.from, -up.from});
  return cut;
}

template <size_t Count>
std::array<std::shared_ptr<NSImage>, Count> asArray(
    const std::vector<std::shared_ptr<NSImage>>& parts) {
  std::array<std::shared_ptr<NSImage>, Count> array;
  std::copy(parts.begin(), parts.end(), array.begin());
  return array;
}

}  // namespace

std::vector<std::shared_ptr<NSImage>> imageParts(const NSImage& image, ImagePartsLayout layout,
                                                 const ImageInsets& insets) {
  const NSSize size = image.size();
  if (size == NSSize{}) return {};
  const auto columns = layout == ImagePartsLayout::Column
                           ? std::vector<Span>{{0, size.width}}
                           : spans(size.width, insets.left, insets.right);
  auto rows = layout == ImagePartsLayout::Row ? std::vector<Span>{{0, size.height}}
                                              : spans(size.height, insets.bottom, insets.top);
  std::reverse(rows.begin(), rows.end());
  std::vector<std::shared_ptr<NSImage>> parts;
  for (const Span row : rows) {
    for (const Span column : columns)
      parts.push_back(part(image, column, row));
  }
  return parts;
}

void drawImageParts(const std::vector<std::shared_ptr<NSImage>>& parts, NSRect rect, bool vertical,
                    double alpha, bool flipped) {
  if (parts.size() == 3) {
    NSDrawThreePartImage(rect, asArray<3>(parts), vertical, alpha, flipped);
  } else if (parts.size() == 9) {
    NSDrawNinePartImage(rect, asArray<9>(parts), alpha, flipped);
  }
}
