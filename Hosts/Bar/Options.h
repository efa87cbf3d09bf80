#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

/// What the command line asks for.
struct Options {
  enum class Action { ShowBar, DrawHeadless, PrintHelp, PrintVersion };

  Action action = Action::ShowBar;
  bool isDark = false;                    ///< Whatever the desktop says.
  std::optional<std::string> outputName;  ///< The connector of the monitor to be on.
  std::optional<std::filesystem::path> bundle;
  std::optional<std::filesystem::path> headlessFolder;
  std::optional<double> headlessScale;  ///< Pixels a point.
};

/// Arguments that cannot be used; its text is one line that says what would be right.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the arguments that follow the program's name. Throws `UsageError`.
Options parseOptions(std::span<const char* const> arguments);

/// What `--help` prints.
std::string_view helpText();
