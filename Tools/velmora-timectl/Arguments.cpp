#include "Tools/velmora-timectl/Arguments.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>

#include "Tools/velmora-timectl/Errors.h"

namespace {

const OptionSpec* specNamed(std::span<const OptionSpec> options, std::string_view name) {
  const auto found = std::find_if(options.begin(), options.end(),
                                  [&](const OptionSpec& option) { return option.name == name; });
  return found != options.end() ? &*found : nullptr;
}

std::optional<double> wholeNumber(std::string_view text) {
  double value = 0;
  if (text.starts_with('+')) text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

/// Reads the parts of a date from the front of a text.
struct DateReader {
  std::string_view text;
  bool ok = true;

  bool take(char expected) {
    if (!text.starts_with(expected)) return false;
    text.remove_prefix(1);
    return true;
  }

  void expect(char expected) { ok = take(expected) && ok; }

  int digits(size_t count, int maximum) {
    int value = 0;
    for (size_t index = 0; index < count; ++index) {
      if (text.empty() || text.front() < '0' || text.front() > '9') return ok = false, 0;
      value = value * 10 + (text.front() - '0');
      text.remove_prefix(1);
    }
    if (value > maximum) ok = false;
    return value;
  }

  double fraction() {
    double value = 0;
    double weight = 0.1;
    if (text.empty() || text.front() < '0' || text.front() > '9') ok = false;
    while (!text.empty() && text.front() >= '0' && text.front() <= '9') {
      value += weight * (text.front() - '0');
      weight /= 10;
      text.remove_prefix(1);
    }
    return value;
  }
};

std::optional<double> secondsOfIsoText(std::string_view text) {
  DateReader reader{text};
  const bool isNegative = reader.take('-');
  if (!isNegative) reader.take('+');
  const int year = reader.digits(4, 9999);
  reader.expect('-');
  const int month = reader.digits(2, 12);
  reader.expect('-');
  const int day = reader.digits(2, 31);
  if (!reader.take('T')) reader.expect(' ');
  const int hour = reader.digits(2, 23);
  reader.expect(':');
  const int minute = reader.digits(2, 59);
  int second = 0;
  double fraction = 0;
  if (reader.take(':')) {
    second = reader.digits(2, 59);
    if (reader.take('.')) fraction = reader.fraction();
  }
  int offset = 0;
  if (!reader.take('Z')) {
    const bool isWest = reader.take('-');
    if (!isWest) reader.expect('+');
    offset = reader.digits(2, 23) * 3600;
    if (reader.take(':') || !reader.text.empty()) offset += reader.digits(2, 59) * 60;
    if (isWest) offset = -offset;
  }
  const std::chrono::year_month_day date =
      std::chrono::year(isNegative ? -year : year) / month / day;
  if (!reader.ok || !reader.text.empty() || !date.ok()) return std::nullopt;
  const int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  return static_cast<double>(days * 86'400 + hour * 3600 + minute * 60 + second - offset) +
         fraction;
}

}  // namespace

Arguments::Arguments(std::span<const std::string> arguments, std::span<const OptionSpec> options,
                     bool stopsAtCommand, size_t& taken) {
  bool onlyRest = false;
  for (taken = 0; taken < arguments.size(); ++taken) {
    const std::string& argument = arguments[taken];
    const bool isOption = !onlyRest && argument.starts_with('-') && argument.size() > 1;
    if (!isOption) {
      if (stopsAtCommand) return;
      rest_.push_back(argument);
      continue;
    }
    if (argument == "--") {
      onlyRest = true;
      continue;
    }
    const size_t equals = argument.starts_with("--") ? argument.find('=') : std::string::npos;
    const OptionSpec* option = specNamed(options, std::string_view(argument).substr(0, equals));
    if (option == nullptr) {
      // A negative number is a value, but no command.
      if (!stopsAtCommand && wholeNumber(argument)) {
        rest_.push_back(argument);
        continue;
      }
      throw UsageError("there is no option '" + argument + "'; --help lists them");
    }
    if (option->value.empty()) {
      if (equals != std::string::npos) {
        throw UsageError("the option " + std::string(option->name) + " takes no value");
      }
      given_.push_back({option->name, ""});
    } else if (equals != std::string::npos) {
      given_.push_back({option->name, argument.substr(equals + 1)});
    } else if (taken + 1 < arguments.size()) {
      given_.push_back({option->name, arguments[++taken]});
    } else {
      throw UsageError("the option " + std::string(option->name) +
                       " needs a value: " + std::string(option->value));
    }
  }
  for (const OptionSpec& option : options) {
    if (option.isRequired && !has(option.name) && !has("--help")) {
      throw UsageError("the option " + std::string(option.name) + " " + std::string(option.value) +
                       " is missing");
    }
  }
}

bool Arguments::has(std::string_view option) const {
  return std::any_of(given_.begin(), given_.end(),
                     [&](const Given& given) { return given.name == option; });
}

std::optional<std::string> Arguments::value(std::string_view option) const {
  const auto all = values(option);
  if (all.empty()) return std::nullopt;
  return all.back();
}

std::vector<std::string> Arguments::values(std::string_view option) const {
  std::vector<std::string> result;
  for (const Given& given : given_) {
    if (given.name == option) result.push_back(given.value);
  }
  return result;
}

const std::string Arguments::required(std::string_view option) const { return *value(option); }

void Arguments::expectRest(std::span<const std::string_view> names) const {
  if (rest_.size() < names.size()) {
    throw UsageError(std::string(names[rest_.size()]) + " is missing");
  }
  if (rest_.size() > names.size()) {
    throw UsageError("'" + rest_[names.size()] + "' is one argument too many");
  }
}

NSDate instantFromText(const std::string& text, std::string_view option) {
  // Calendars answer nonsense far beyond the years that a text can name.
  constexpr double Furthest = 10'000 * 365.25 * 86'400;
  std::optional<double> seconds = wholeNumber(text);
  if (!seconds) seconds = secondsOfIsoText(text);
  if (!seconds || std::abs(*seconds) > Furthest) {
    throw UsageError(
        std::string(option) + ": '" + text +
        "' is no instant; write 2026-11-21T15:04:05Z, an offset in the place of the Z, "
        "or seconds since 1970");
  }
  return NSDate::dateWithTimeIntervalSince1970(*seconds);
}

NSTimeZone zoneFromText(const std::string& text, std::string_view option) {
  const auto zone = NSTimeZone::timeZoneWithName(text);
  if (!zone) {
    throw UsageError(std::string(option) + ": there is no time zone '" + text +
                     "'; write a name such as Europe/Paris");
  }
  return *zone;
}

double numberFromText(const std::string& text, std::string_view option, double minimum,
                      double maximum) {
  const auto number = wholeNumber(text);
  if (!number || *number < minimum || *number > maximum) {
    const auto shown = [](double value) {
      std::string digits = std::to_string(value);
      digits.erase(digits.find_last_not_of('0') + 1);
      if (digits.ends_with('.')) digits.pop_back();
      return digits;
    };
    throw UsageError(std::string(option) + ": '" + text + "' is no number from " + shown(minimum) +
                     " to " + shown(maximum));
  }
  return *number;
}

int64_t integerFromText(const std::string& text, std::string_view option, double minimum,
                        double maximum) {
  const double number = numberFromText(text, option, minimum, maximum);
  if (number != std::floor(number)) {
    throw UsageError(std::string(option) + ": '" + text + "' is no whole number");
  }
  return static_cast<int64_t>(number);
}
