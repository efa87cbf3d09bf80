#include "Platform/AppKit/Drawing/NSDrawing.h"

#include <algorithm>

#include "Platform/AppKit/Drawing/NSGraphicsContext.h"

namespace {

/// Where the parts of one direction meet, from the frame's low side to its high side.
using Edges = std::array<double, 4>;

double widthOf(const std::shared_ptr<NSImage>& part) { return part ? part->size().width : 0; }
double heightOf(const std::shared_ptr<NSImage>& part) { return part ? part->size().height : 0; }

/// In a frame too short for both caps the far one starts where the near one ends.
Edges edgesWithCaps(double origin, double length, double lowCap, double highCap) {
  const double low = std::min(lowCap, length);
  return {origin, origin + low, origin + std::max(low, length - highCap), origin + length};
}

void drawParts(const std::array<std::shared_ptr<NSImage>, 9>& parts, const Edges& across,
               const Edges& up, double alpha, bool flipped) {
  const auto* context = NSGraphicsContext::currentContext();
  if (context == nullptr) return;
  for (size_t index = 0; index < parts.size(); ++index) {
    if (!parts[index]) continue;
    const size_t column = index % 3;
    const size_t row = flipped ? index / 3 : 2 - index / 3;
    const NSPoint from = context->alignedToPixels({across[column], up[row]});
    const NSPoint to = context->alignedToPixels({across[column + 1], up[row + 1]});
    const NSRect place{from, {to.x - from.x, to.y - from.y}};
    if (place.size.width > 0 && place.size.height > 0) parts[index]->drawInRect(place, alpha);
  }
}

}  // namespace

void NSDrawThreePartImage(NSRect frame, const std::array<std::shared_ptr<NSImage>, 3>& parts,
                          bool vertical, double alpha, bool flipped) {
  // The middle row or column of nine; with nothing beside it, it takes the whole frame.
  std::array<std::shared_ptr<NSImage>, 9> grid;
  for (size_t index = 0; index < parts.size(); ++index)
    grid[vertical ? 3 * index + 1 : 3 + index] = parts[index];
  NSDrawNinePartImage(frame, grid, alpha, flipped);
}

void NSDrawNinePartImage(NSRect frame, const std::array<std::shared_ptr<NSImage>, 9>& parts,
                         double alpha, bool flipped) {
  const double top = std::max({heightOf(parts[0]), heightOf(parts[1]), heightOf(parts[2])});
  const double bottom = std::max({heightOf(parts[6]), heightOf(parts[7]), heightOf(parts[8])});
  const double left = std::max({widthOf(parts[0]), widthOf(parts[3]), widthOf(parts[6])});
  const double right = std::max({widthOf(parts[2]), widthOf(parts[5]), widthOf(parts[8])});
  drawParts(parts, edgesWithCaps(frame.origin.x, frame.size.width, left, right),
            edgesWithCaps(frame.origin.y, frame.size.height, flipped ? top : bottom,
                          flipped ? bottom : top),
            alpha, flipped);
}
