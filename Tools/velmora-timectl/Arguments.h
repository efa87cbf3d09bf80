#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"

/// An option of the program or of a command.
struct OptionSpec {
  std::string_view name;   ///< "--time".
  std::string_view value;  ///< What it takes, for the help; empty for a flag.
  std::string_view meaning;
  bool isRequired = false;
};

/// The arguments of one command, sorted into options and the rest. Every reader raises `UsageError`
/// with one line that says what is wrong and what would be right.
class Arguments {
 public:
  /// Takes arguments until the end or, with `stopsAtCommand`, until the first that is no option.
  /// Answers how many were taken through `taken`.
  Arguments(std::span<const std::string> arguments, std::span<const OptionSpec> options,
            bool stopsAtCommand, size_t& taken);

  bool has(std::string_view option) const;
  /// The last value of an option; nothing if it was not given.
  std::optional<std::string> value(std::string_view option) const;
  std::vector<std::string> values(std::string_view option) const;
  const std::string required(std::string_view option) const;

  const std::vector<std::string>& rest() const { return rest_; }
  /// Raises unless exactly these arguments are there besides the options.
  void expectRest(std::span<const std::string_view> names) const;

 private:
  struct Given {
    std::string_view name;
    std::string value;
  };

  std::vector<Given> given_;
  std::vector<std::string> rest_;
};

/// An instant: ISO 8601 with an offset or "Z", or seconds since 1970.
NSDate instantFromText(const std::string& text, std::string_view option);
NSTimeZone zoneFromText(const std::string& text, std::string_view option);
/// A finite number within bounds, both allowed.
double numberFromText(const std::string& text, std::string_view option, double minimum,
                      double maximum);
/// A whole number within bounds.
int64_t integerFromText(const std::string& text, std::string_view option, double minimum,
                        double maximum);
