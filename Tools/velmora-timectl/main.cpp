#include <algorithm>
#include <cctype>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "Platform/Foundation/Process/StandardDescriptors.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"
#include "Tools/velmora-timectl/GlobalOptions.h"

namespace {

enum Status { Success = 0, Failure = 1, Misuse = 2 };

/// What the makers of the data that the clock shows ask for.
constexpr std::string_view Attributions =
    "City data: GeoNames (https://www.geonames.org), CC BY 4.0, modified.\n"
    "Time-zone boundaries: © OpenStreetMap contributors (ODbL).\n"
    "Made with Natural Earth.\n";

std::vector<Command> allCommands() {
  std::vector<Command> commands;
  for (const auto& group :
       {clockCommands(), astronomyCommands(), cityCommands(), defaultsCommands(), renderCommands(),
        dropdownCommands(), calendarCommands()}) {
    commands.insert(commands.end(), group.begin(), group.end());
  }
  return commands;
}

std::string optionsText(std::span<const OptionSpec> options) {
  constexpr size_t Column = 26;
  std::string text;
  for (const OptionSpec& option : options) {
    std::string line = "  " + std::string(option.name);
    if (!option.value.empty()) line += " " + std::string(option.value);
    line.append(line.size() < Column ? Column - line.size() : 1, ' ');
    text += line + std::string(option.meaning) + "\n";
  }
  return text;
}

std::string programHelp() {
  std::string text =
      "Usage: velmora-timectl [GLOBAL OPTIONS] COMMAND [OPTIONS]\n\n"
      "Asks the clock what it would show, and changes its settings. Prints one line of JSON.\n\n"
      "Global options:\n" +
      optionsText(globalOptions()) + "\nCommands (COMMAND --help tells more):\n";
  for (const Command& command : allCommands()) {
    std::string line = "  " + std::string(command.name);
    line.append(line.size() < 26 ? 26 - line.size() : 1, ' ');
    text += line + std::string(command.summary) + "\n";
  }
  return text;
}

std::string commandHelp(const Command& command) {
  std::string usage = "Usage: velmora-timectl [GLOBAL OPTIONS] " + std::string(command.name);
  if (!command.synopsis.empty()) usage += " " + std::string(command.synopsis);
  if (!command.options.empty()) usage += " [OPTIONS]";
  std::string summary(command.summary);
  summary.front() = static_cast<char>(std::toupper(summary.front()));
  return usage + "\n\n" + summary + ".\n" +
         (command.options.empty() ? "" : "\nOptions:\n" + optionsText(command.options));
}

std::string answer(const std::vector<std::string>& arguments) {
  size_t taken = 0;
  const Arguments global(arguments, globalOptions(), true, taken);
  if (global.has("--help")) return programHelp();
  if (global.has("--version"))
    return "velmora-timectl " VELMORA_VERSION "\n" + std::string(Attributions);
  if (taken == arguments.size()) throw UsageError("a command is missing; --help lists them");

  const std::string& name = arguments[taken];
  for (const Command& command : allCommands()) {
    if (command.name != name) continue;
    std::vector<OptionSpec> options(command.options.begin(), command.options.end());
    options.push_back({"--help", "", "show this"});
    const auto rest = std::span(arguments).subspan(taken + 1);
    const Arguments own(rest, options, false, taken);
    if (own.has("--help")) return commandHelp(command);
    applyGlobalOptions(global);
    if (own.has("--dark")) setMenubarDark(true);
    return jsonText(command.run(own)) + "\n";
  }
  throw UsageError("there is no command '" + name + "'; --help lists them");
}

}  // namespace

int main(int argc, char** argv) {
  openMissingStandardDescriptors();
  const auto fail = [](const std::exception& error, Status status) {
    // One line, also where the message quotes an argument that has several.
    std::string line = error.what();
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::fprintf(stderr, "velmora-timectl: %s\n", line.c_str());
    return status;
  };
  try {
    const std::string text = answer({argv + 1, argv + argc});
    const bool written = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
    if (!written) throw CommandFailure("the answer could not be written");
    return Success;
  } catch (const UsageError& error) {
    return fail(error, Misuse);
  } catch (const std::logic_error& error) {
    // A format list that the clock cannot draw.
    return fail(error, Misuse);
  } catch (const std::exception& error) {
    return fail(error, Failure);
  }
}
