#include <algorithm>
#include <array>
#include <iterator>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/AppKit/Menus/MenuSnapshot.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"
#include "Tools/velmora-timectl/MenubarContent.h"
#include "Tools/velmora-timectl/OpenedDropdown.h"

namespace {

struct PixelSize {
  int width = 0;
  int height = 0;
};

double itemWidth(VelmoraTimeMenuExtraView& view) {
  RecordingGraphicsContext measuring;
  const NSCurrentGraphicsContext current(measuring);
  const int64_t width = view.drawAtOffset(0);
  return static_cast<double>(width == 0 ? EmptySlotWidth : width);
}

/// The item's slot on the bar's background.
PixelSize renderMenubar(const Arguments&, const std::string& file, double scale) {
  const auto content = makeMenubarContent();
  const NSSize size{itemWidth(*content.view), NSMenuExtra::Height};
  BitmapSurface surface(size, scale);
  {
    const NSCurrentGraphicsContext current(surface.context());
    menuBarBackgroundColor(isMenuBarDark()).setFill();
    NSBezierPath::bezierPathWithRect({{0, 0}, size}).fill();
    content.view->drawAtOffset(0);
  }
  surface.writePng(file);
  return {surface.pixelWidth(), surface.pixelHeight()};
}

/// A menu below the item, which stands at the upper right of a monitor.
PixelSize renderMenu(const std::shared_ptr<NSMenu>& menu, const std::string& file, double scale) {
  constexpr NSSize Monitor{1920, 1080};
  const double width = itemWidth(*makeMenubarContent().view);
  const NSRect slot{{Monitor.width - width, 0}, {width, NSMenuExtra::Height}};
  MenuSnapshot snapshot(
      {{0, NSMenuExtra::Height}, {Monitor.width, Monitor.height - NSMenuExtra::Height}});
  snapshot.tracker().open(menu, slot, MenuOpening::Press, VelmoraTime::layoutDirection());
  const NSSize size = snapshot.writePng(file, scale);
  return {static_cast<int>(size.width), static_cast<int>(size.height)};
}

PixelSize renderDropdown(const Arguments& arguments, const std::string& file, double scale) {
  const OpenedDropdown dropdown(arguments);
  return renderMenu(dropdown.controller().menu(), file, scale);
}

PixelSize renderMoonMenu(const Arguments& arguments, const std::string& file, double scale) {
  const OpenedDropdown dropdown(arguments);
  return renderMenu(dropdown.controller().moon().moonMenu(), file, scale);
}

struct Surface {
  std::string_view name;
  PixelSize (*render)(const Arguments& arguments, const std::string& file, double scale);
};

constexpr Surface Surfaces[] = {
    {"menubar", renderMenubar},
    {"dropdown", renderDropdown},
    {"moon-menu", renderMoonMenu},
};

const Surface& surfaceNamed(const std::string& name) {
  const auto found = std::ranges::find(Surfaces, name, &Surface::name);
  if (found != std::end(Surfaces)) return *found;
  std::string names;
  for (const Surface& surface : Surfaces)
    names.append(names.empty() ? "" : ", ").append(surface.name);
  throw UsageError("there is no surface '" + name + "'; there are: " + names);
}

Json renderCommand(const Arguments& arguments) {
  arguments.expectRest(
      std::array<std::string_view, 1>{"the surface: menubar, dropdown or moon-menu"});
  const Surface& surface = surfaceNamed(arguments.rest().front());
  const std::string file = arguments.required("-o");
  const double scale =
      numberFromText(arguments.value("--scale").value_or("1"), "--scale", 0.25, 16);
  const PixelSize size = surface.render(arguments, file, scale);
  return {{"file", file}, {"width", size.width}, {"height", size.height}};
}

constexpr OptionSpec RenderOptions[] = {
    {"--dark", "", "on a dark bar"},
    {"--scale", "N", "pixels a point (1)"},
    CalendarFolderOption,
    {"-o", "FILE.png", "the picture to write", true},
};

constexpr Command Commands[] = {
    {"render", "menubar | dropdown | moon-menu", "draws a surface as it is now into a picture",
     RenderOptions, renderCommand},
};

}  // namespace

std::span<const Command> renderCommands() { return Commands; }
