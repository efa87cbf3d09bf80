#include <stdexcept>

#include "Platform/Foundation/Notifications/RemoteCommands.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"

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

constexpr Command Commands[] = {
    {"dropdown",
     "open | close | toggle",
     "has the running bar show or hide its dropdown, with the keyboard on it",
     {},
     dropdown},
};

}  // namespace

std::span<const Command> dropdownCommands() { return Commands; }
