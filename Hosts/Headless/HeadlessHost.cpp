#include "Hosts/Headless/HeadlessHost.h"

#include <array>
#include <charconv>
#include <stdexcept>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"

namespace {

/// What stands free of the bar on both sides of the item.
constexpr double Margin = 8;

std::string fileName(const HeadlessOptions& options) {
  std::array<char, 32> scale{};
  const auto [end, error] = std::to_chars(scale.data(), scale.data() + scale.size(), options.scale);
  return std::string("menubar-") + (options.isDark ? "dark" : "light") + "@" +
         std::string(scale.data(), end) + "x.png";
}

}  // namespace

HeadlessPicture drawHeadless(const HeadlessOptions& options) {
  std::error_code error;
  std::filesystem::create_directories(options.output, error);
  if (error) {
    throw std::runtime_error(options.output.string() + " cannot be made: " + error.message());
  }
  NSMenuBarSlot slot;
  slot.load(NSMenuExtraBundle(options.bundle));
  // The extra starts on the next pass of the loop, behind its host.
  NSRunLoop::mainRunLoop().runPending();

  RecordingGraphicsContext words;
  slot.draw(words);
  BitmapSurface surface({slot.length() + 2 * Margin, NSMenuExtra::Height}, options.scale);
  {
    const NSCurrentGraphicsContext current(surface.context());
    menuBarBackgroundColor(options.isDark).setFill();
    NSBezierPath::bezierPathWithRect(
        NSMakeRect(0, 0, slot.length() + 2 * Margin, NSMenuExtra::Height))
        .fill();
  }
  surface.context().saveGraphicsState();
  surface.context().translateBy({Margin, 0});
  slot.draw(surface.context());
  surface.context().restoreGraphicsState();

  HeadlessPicture picture{words.joinedText(), options.output / fileName(options)};
  surface.writePng(picture.file.string());
  slot.unload();
  return picture;
}
