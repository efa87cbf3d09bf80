#include "Hosts/Display/Pixels.h"

#include <algorithm>

PixelRect united(const PixelRect& a, const PixelRect& b) {
  if (a.isEmpty()) return b;
  if (b.isEmpty()) return a;
  const int x = std::min(a.x, b.x);
  const int y = std::min(a.y, b.y);
  return {x, y, std::max(a.x + a.width, b.x + b.width) - x,
          std::max(a.y + a.height, b.y + b.height) - y};
}

bool intersect(const PixelRect& a, const PixelRect& b) {
  return !a.isEmpty() && !b.isEmpty() && a.x < b.x + b.width && b.x < a.x + a.width &&
         a.y < b.y + b.height && b.y < a.y + a.height;
}

PixelRect difference(const PixelPicture& before, const PixelPicture& after) {
  if (before.width != after.width || before.height != after.height) {
    return {0, 0, after.width, after.height};
  }
  PixelRect changed;
  for (int y = 0; y < after.height; ++y) {
    const uint32_t* const a = before.row(y);
    const uint32_t* const b = after.row(y);
    const auto first = static_cast<int>(std::mismatch(a, a + after.width, b).first - a);
    if (first == after.width) continue;
    int last = after.width - 1;
    while (a[last] == b[last])
      --last;
    changed = united(changed, {first, y, last + 1 - first, 1});
  }
  return changed;
}
