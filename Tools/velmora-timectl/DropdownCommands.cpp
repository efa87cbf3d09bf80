#include <stdexcept>
#include <typeinfo>

#include "Platform/AppKit/Menus/RowText.h"
#include "Platform/Foundation/Notifications/RemoteCommands.h"
#include "Platform/Foundation/Text/TypeName.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"
#include "Tools/velmora-timectl/OpenedDropdown.h"

namespace {

Json dropdown(const Arguments& arguments) {
  const auto& rest = arguments.rest();
  const bool isKnown =
      rest.size() == 1 && (rest[0] == "open" || rest[0] == "close" || rest[0] == "toggle");
  if (!isKnown) throw UsageError("dropdown: write 'open', 'close' or 'toggle'");
  Json json = Json::object();
  try {
    json["open"] = RemoteCommands::perform("MenuBar", rest[0]);
  } catch (const std::runtime_error& error) {
    throw CommandFailure("the bar cannot be asked: " + std::string(error.what()));
  }
  return json;
}

Json rowJson(const ZEVMenu_Time& menu, const NSMenuItem& item) {
  const auto key = menu.keyOfItem(item);
  const NSView& view = *item.view();
  return {{"key", key ? Json(*key) : Json()}, {"class", typeName(typeid(view))},
          {"width", view.frame().size.width}, {"height", view.frame().size.height},
          {"texts", rowTexts(item)},          {"submenu", item.submenu() != nullptr}};
}

Json menuCommand(const Arguments& arguments) {
  arguments.expectRest({});
  const OpenedDropdown dropdown(arguments);
  Json rows = Json::array();
  for (const auto& item : dropdown.menu().itemArray())
    rows.push_back(rowJson(dropdown.menu(), *item));
  return rows;
}

constexpr OptionSpec MenuOptions[] = {CalendarFolderOption};

constexpr Command Commands[] = {
    {"menu", "", "the rows of the dropdown as it is now", MenuOptions, menuCommand},
    {"dropdown",
     "open | close | toggle",
     "has the running bar show or hide its dropdown, with the keyboard on it",
     {},
     dropdown},
};

}  // namespace

std::span<const Command> dropdownCommands() { return Commands; }
