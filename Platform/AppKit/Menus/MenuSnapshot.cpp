#include "Platform/AppKit/Menus/MenuSnapshot.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Menus/MenuPicture.h"

namespace {

/// One premultiplied pixel over another.
uint32_t over(uint32_t above, uint32_t below) {
  const uint32_t rest = 255 - (above >> 24);
  uint32_t result = 0;
  for (const int shift : {0, 8, 16, 24}) {
    const uint32_t part = ((below >> shift & 255) * rest + 127) / 255;
    result |= std::min<uint32_t>(255, (above >> shift & 255) + part) << shift;
  }
  return result;
}

}  // namespace

class MenuSnapshot::Surface : public MenuSurface {
  void requestFrame() override {}
};

std::unique_ptr<MenuSurface> MenuSnapshot::makeSurface(MenuPanel&) {
  return std::make_unique<Surface>();
}

NSSize MenuSnapshot::writePng(const std::filesystem::path& file, double scale) {
  tracker_.prepareFrame();
  if (!tracker_.isTracking()) throw std::logic_error("no menu is open");
  std::vector<MenuPicture> pictures;
  NSRect around;
  for (size_t depth = 0; depth < tracker_.depth(); ++depth) {
    MenuPicture& picture = pictures.emplace_back(scale, 1, true);
    picture.render(tracker_.panel(depth), menuArea_.origin);
    const MenuPicture::Part& frame = picture.frame();
    around = NSUnionRect(around, NSMakeRect(frame.x, frame.y, frame.width, frame.height));
  }
  const auto width = static_cast<int>(around.size.width);
  const auto height = static_cast<int>(around.size.height);
  std::vector<uint32_t> canvas(static_cast<size_t>(width) * static_cast<size_t>(height));
  for (const MenuPicture& picture : pictures) {
    const MenuPicture::Part& frame = picture.frame();
    const int left = frame.x - static_cast<int>(around.origin.x);
    const int top = frame.y - static_cast<int>(around.origin.y);
    const uint32_t* pixel = picture.pixels().data();
    for (int y = 0; y < frame.height; ++y) {
      for (int x = 0; x < frame.width; ++x, ++pixel) {
        uint32_t& below = canvas[static_cast<size_t>(top + y) * static_cast<size_t>(width) +
                                 static_cast<size_t>(left + x)];
        below = over(*pixel, below);
      }
    }
  }
  BitmapSurface(canvas.data(), width, height, scale).writePng(file.string());
  return around.size;
}
