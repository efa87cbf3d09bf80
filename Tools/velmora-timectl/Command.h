#pragma once

#include <span>
#include <string>
#include <string_view>

#include "Tools/velmora-timectl/Arguments.h"
#include "Tools/velmora-timectl/Json.h"

/// One command of the program: what it is called with, and what answers it.
struct Command {
  std::string_view name;
  std::string_view synopsis;  ///< Arguments besides the options.
  std::string_view summary;
  std::span<const OptionSpec> options;
  Json (*run)(const Arguments& arguments);
};

std::span<const Command> clockCommands();
std::span<const Command> astronomyCommands();
std::span<const Command> defaultsCommands();
std::span<const Command> cityCommands();
std::span<const Command> renderCommands();
std::span<const Command> dropdownCommands();
std::span<const Command> calendarCommands();
