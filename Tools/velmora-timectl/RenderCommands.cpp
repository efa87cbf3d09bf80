#include <algorithm>
#include <array>
#include <iterator>
#include <optional>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/AppKit/Menus/MenuSnapshot.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"
#include "Tools/velmora-timectl/MenubarContent.h"
#include "Tools/velmora-timectl/OpenedDropdown.h"

namespace {

struct PixelSize {
  int width = 0;
  int height = 0;
};

/// What is asked for.
struct Drawing {
  std::string file;
  double scale = 1;
  std::optional<int64_t> city;  ///< Its identifier.
};

double itemWidth(VelmoraTimeMenuExtraView& view) {
  RecordingGraphicsContext measuring;
  const NSCurrentGraphicsContext current(measuring);
  const int64_t width = view.drawAtOffset(0);
  return static_cast<double>(width == 0 ? EmptySlotWidth : width);
}

/// The item's slot on the bar's background.
PixelSize renderMenubar(const Arguments&, const Drawing& drawing) {
  const auto content = makeMenubarContent();
  const NSSize size{itemWidth(*content.view), NSMenuExtra::Height};
  BitmapSurface surface(size, drawing.scale);
  {
    const NSCurrentGraphicsContext current(surface.context());
    menuBarBackgroundColor(isMenuBarDark()).setFill();
    NSBezierPath::bezierPathWithRect({{0, 0}, size}).fill();
    content.view->drawAtOffset(0);
  }
  surface.writePng(drawing.file);
  return {surface.pixelWidth(), surface.pixelHeight()};
}

/// A menu below the item, which stands at the upper right of a monitor.
PixelSize renderMenu(const std::shared_ptr<NSMenu>& menu, const Drawing& drawing) {
  constexpr NSSize Monitor{1920, 1080};
  const double width = itemWidth(*makeMenubarContent().view);
  const NSRect slot{{Monitor.width - width, 0}, {width, NSMenuExtra::Height}};
  MenuSnapshot snapshot(
      {{0, NSMenuExtra::Height}, {Monitor.width, Monitor.height - NSMenuExtra::Height}});
  snapshot.tracker().open(menu, slot, MenuOpening::Press, VelmoraTime::layoutDirection());
  const NSSize size = snapshot.writePng(drawing.file, drawing.scale);
  return {static_cast<int>(size.width), static_cast<int>(size.height)};
}

PixelSize renderDropdown(const Arguments& arguments, const Drawing& drawing) {
  const OpenedDropdown dropdown(arguments);
  return renderMenu(dropdown.controller().menu(), drawing);
}

PixelSize renderMoonMenu(const Arguments& arguments, const Drawing& drawing) {
  const OpenedDropdown dropdown(arguments);
  return renderMenu(dropdown.controller().moon().moonMenu(), drawing);
}

/// Has the dropdown show a city in this run, behind the user's own.
void addCity(int64_t identifier) {
  constexpr std::string_view Key = "Time_Cities";
  if (!LoadedCities::collector().cityWithIdentifier(identifier)) {
    throw CommandFailure("there is no city " + std::to_string(identifier) +
                         " in the database; 'cities search TEXT' finds identifiers");
  }
  const PropertyList stored = ZEVObjectForKey(Key);
  auto cities = stored.array() != nullptr ? *stored.array() : PropertyList::Array();
  const bool isListed = std::ranges::any_of(
      cities, [identifier](const PropertyList& city) { return city.integerValue() == identifier; });
  if (isListed) return;
  cities.emplace_back(std::to_string(identifier));
  setPreferenceOverride(Key, cities, ZEVPreferences_Time::Domain);
  ZEVRefreshKey(Key);
}

/// The submenu of a city, or of the dropdown's first.
PixelSize renderCityMenu(const Arguments& arguments, const Drawing& drawing) {
  if (drawing.city) addCity(*drawing.city);
  const OpenedDropdown dropdown(arguments);
  const auto& clocks = dropdown.controller().items();
  if (clocks.empty()) throw CommandFailure("the dropdown has no city; give one by --city ID");
  const auto clock =
      drawing.city ? dropdown.controller().itemWithIdentifier(*drawing.city) : clocks.front();
  return renderMenu(clock->submenu(), drawing);
}

struct Surface {
  std::string_view name;
  PixelSize (*render)(const Arguments& arguments, const Drawing& drawing);
};

constexpr Surface Surfaces[] = {
    {"menubar", renderMenubar},
    {"dropdown", renderDropdown},
    {"moon-menu", renderMoonMenu},
    {"city-menu", renderCityMenu},
};

const Surface& surfaceNamed(const std::string& name) {
  const auto found = std::ranges::find(Surfaces, name, &Surface::name);
  if (found != std::end(Surfaces)) return *found;
  std::string names;
  for (const Surface& surface : Surfaces)
    names.append(names.empty() ? "" : ", ").append(surface.name);
  throw UsageError("there is no surface '" + name + "'; there are: " + names);
}

std::optional<int64_t> cityArgument(const Arguments& arguments) {
  constexpr double Largest = 9e15;
  const auto text = arguments.value("--city");
  if (!text) return std::nullopt;
  return integerFromText(*text, "--city", 0, Largest);
}

Json renderCommand(const Arguments& arguments) {
  arguments.expectRest(
      std::array<std::string_view, 1>{"the surface: menubar, dropdown, moon-menu or city-menu"});
  const Surface& surface = surfaceNamed(arguments.rest().front());
  const Drawing drawing{
      arguments.required("-o"),
      numberFromText(arguments.value("--scale").value_or("1"), "--scale", 0.25, 16),
      cityArgument(arguments)};
  if (drawing.city && surface.render != renderCityMenu) {
    throw UsageError("--city is for the city-menu");
  }
  const PixelSize size = surface.render(arguments, drawing);
  return {{"file", drawing.file}, {"width", size.width}, {"height", size.height}};
}

constexpr OptionSpec RenderOptions[] = {
    {"--dark", "", "on a dark bar"},
    {"--scale", "N", "pixels a point (1)"},
    CalendarFolderOption,
    {"--city", "ID", "whose city-menu (the dropdown's first)"},
    {"-o", "FILE.png", "the picture to write", true},
};

constexpr Command Commands[] = {
    {"render", "menubar | dropdown | moon-menu | city-menu",
     "draws a surface as it is now into a picture", RenderOptions, renderCommand},
};

}  // namespace

std::span<const Command> renderCommands() { return Commands; }
