#include "Hosts/Bar/Options.h"

#include <array>
#include <charconv>

namespace {

constexpr double MaximumScale = 16;

/// What stands after an option.
enum class Operand { None, Needed };

struct OptionRow {
  std::string_view name;
  Operand operand;
  std::string_view meaning;  ///< Of the operand, for messages.
  void (*apply)(Options& options, std::string_view value);
};

double scaleFromText(std::string_view text) {
  double scale = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), scale);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  if (!isNumber || !(scale > 0 && scale <= MaximumScale)) {
    throw UsageError("--scale takes a number above 0 and up to 16, such as 2, not \"" +
                     std::string(text) + "\"");
  }
  return scale;
}

using Action = Options::Action;

constexpr std::array optionRows{
    OptionRow{"--help", Operand::None, "",
              [](Options& options, std::string_view) { options.action = Action::PrintHelp; }},
    OptionRow{"--version", Operand::None, "",
              [](Options& options, std::string_view) { options.action = Action::PrintVersion; }},
    OptionRow{"--headless", Operand::None, "",
              [](Options& options, std::string_view) { options.action = Action::DrawHeadless; }},
    OptionRow{"--dark", Operand::None, "",
              [](Options& options, std::string_view) { options.isDark = true; }},
    OptionRow{"--output", Operand::Needed, "a folder, such as --output pictures",
              [](Options& options, std::string_view value) { options.headlessFolder = value; }},
    OptionRow{"--scale", Operand::Needed, "a number, such as --scale 2",
              [](Options& options, std::string_view value) {
                options.headlessScale = scaleFromText(value);
              }},
    OptionRow{"--output-name", Operand::Needed, "a monitor's name, such as --output-name DP-1",
              [](Options& options, std::string_view value) { options.outputName = value; }},
    OptionRow{"--bundle", Operand::Needed, "a bundle's folder, such as --bundle Name.bundle",
              [](Options& options, std::string_view value) { options.bundle = value; }},
};

const OptionRow& rowNamed(std::string_view name) {
  for (const OptionRow& row : optionRows) {
    if (row.name == name) return row;
  }
  throw UsageError("unknown argument \"" + std::string(name) + "\"; --help lists the options");
}

/// Options that only mean something together.
void checkCombination(const Options& options) {
  if (options.action == Action::DrawHeadless) {
    if (!options.headlessFolder) {
      throw UsageError("--headless needs a folder to write to: --headless --output DIR");
    }
    if (options.outputName) {
      throw UsageError("--output-name chooses a monitor, which --headless does not use");
    }
  } else if (options.headlessFolder) {
    throw UsageError("--output goes with --headless: --headless --output DIR");
  } else if (options.headlessScale) {
    throw UsageError("--scale goes with --headless: --headless --output DIR --scale N");
  }
}

}  // namespace

Options parseOptions(std::span<const char* const> arguments) {
  Options options;
  for (size_t index = 0; index < arguments.size(); ++index) {
    const OptionRow& row = rowNamed(arguments[index]);
    std::string_view value;
    if (row.operand == Operand::Needed) {
      const bool isLast = index + 1 == arguments.size();
      value = isLast ? std::string_view() : std::string_view(arguments[++index]);
      if (value.empty() || value.starts_with("--")) {
        throw UsageError(std::string(row.name) + " needs " + std::string(row.meaning));
      }
    }
    row.apply(options, value);
    if (options.action == Action::PrintHelp || options.action == Action::PrintVersion) {
      return options;
    }
  }
  checkCombination(options);
  return options;
}

std::string_view helpText() {
  return R"(Usage: velmora-menubar [OPTION]...
Shows a bar with a clock at the upper edge of the screen.

  --output-name NAME  show the bar on the monitor of that name (default: the primary one)
  --dark              draw for a dark bar, whatever the desktop says
  --bundle PATH       load the item from this bundle
  --headless          draw the bar into a PNG file instead of showing it; this needs
    --output DIR      the folder for the file, made if it is missing
    --scale N         pixels a point (default: 1)
  --help              print this text
  --version           print the version
)";
}
