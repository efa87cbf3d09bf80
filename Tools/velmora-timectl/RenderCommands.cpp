#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"
#include "Tools/velmora-timectl/MenubarContent.h"

namespace {

/// The item's slot on the bar's background.
void renderMenubar(const std::string& file, double scale, int& pixelWidth, int& pixelHeight) {
  const auto content = makeMenubarContent();
  RecordingGraphicsContext measuring;
  int64_t width = 0;
  {
    const NSCurrentGraphicsContext current(measuring);
    width = content.view->drawAtOffset(0);
  }
  const NSSize size{static_cast<double>(width == 0 ? EmptySlotWidth : width), NSMenuExtra::Height};
  BitmapSurface surface(size, scale);
  {
    const NSCurrentGraphicsContext current(surface.context());
    menuBarBackgroundColor(isMenuBarDark()).setFill();
    NSBezierPath::bezierPathWithRect({{0, 0}, size}).fill();
    content.view->drawAtOffset(0);
  }
  surface.writePng(file);
  pixelWidth = surface.pixelWidth();
  pixelHeight = surface.pixelHeight();
}

Json renderCommand(const Arguments& arguments) {
  arguments.expectRest(std::array<std::string_view, 1>{"the surface: menubar"});
  if (arguments.rest().front() != "menubar") {
    throw UsageError("there is no surface '" + arguments.rest().front() + "'; there is: menubar");
  }
  const std::string file = arguments.required("-o");
  const double scale =
      numberFromText(arguments.value("--scale").value_or("1"), "--scale", 0.25, 16);
  int width = 0;
  int height = 0;
  renderMenubar(file, scale, width, height);
  return {{"file", file}, {"width", width}, {"height", height}};
}

constexpr OptionSpec RenderOptions[] = {
    {"--dark", "", "on a dark bar"},
    {"--scale", "N", "pixels a point (1)"},
    {"-o", "FILE.png", "the picture to write", true},
};

constexpr Command Commands[] = {
    {"render", "menubar", "draws a surface as it is now into a picture", RenderOptions,
     renderCommand},
};

}  // namespace

std::span<const Command> renderCommands() { return Commands; }
