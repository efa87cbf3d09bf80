#include "Shared/External/fmdb/FMDateFormat.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <map>

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr int SecondsPerDay = 86400;
constexpr double MicrosecondsPerSecond = 1e6;
constexpr int FractionDigits = 6;

bool isLetter(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

bool isField(char letter, int width) {
  if (letter == 'M') return width <= 2;  // Longer ones are names.
  if (letter == 'y') return width != 2;  // The year without its century, which is lost.
  return std::string_view("ydHmsS").find(letter) != std::string_view::npos;
}

std::string digits(int64_t value, int width) {
  std::string text = std::to_string(value < 0 ? -value : value);
  if (const auto missing = static_cast<size_t>(width); text.size() < missing) {
    text.insert(0, missing - text.size(), '0');
  }
  return value < 0 ? "-" + text : text;
}

/// The first `width` digits of a second's fraction.
std::string fraction(int64_t microseconds, int width) {
  std::string text = digits(microseconds, FractionDigits);
  text.resize(static_cast<size_t>(width), '0');
  return text;
}

}  // namespace

std::optional<FMDateFormat> FMDateFormat::formatWithPattern(std::string_view pattern) {
  FMDateFormat format;
  bool quoted = false;
  for (size_t position = 0; position < pattern.size(); ++position) {
    const char letter = pattern[position];
    if (letter == '\'') {
      // Two of them are one that stands for itself.
      if (pattern.substr(position).starts_with("''")) {
        format.addText(letter);
        ++position;
      } else {
        quoted = !quoted;
      }
    } else if (quoted || !isLetter(letter)) {
      format.addText(letter);
    } else {
      const size_t end = std::min(pattern.find_first_not_of(letter, position), pattern.size());
      const int width = static_cast<int>(end - position);
      if (!isField(letter, width)) return std::nullopt;
      format.pieces_.push_back({letter, width, {}});
      position = end - 1;
    }
  }
  return format;
}

void FMDateFormat::addText(char letter) {
  if (pieces_.empty() || pieces_.back().field != 0) pieces_.emplace_back();
  pieces_.back().text += letter;
}

std::string FMDateFormat::stringFromDate(const NSDate& date) const {
  const double seconds = std::floor(date.timeIntervalSince1970());
  // Rounded down, as every other field is.
  const auto microseconds = static_cast<int64_t>(
      std::floor((date.timeIntervalSince1970() - seconds) * MicrosecondsPerSecond));
  const auto day = static_cast<int>(std::floor(seconds / SecondsPerDay));
  const auto secondOfDay = static_cast<int>(seconds - static_cast<double>(day) * SecondsPerDay);
  const year_month_day calendar{sys_days(days(day))};
  const std::map<char, int> values = {{'y', static_cast<int>(calendar.year())},
                                      {'M', static_cast<unsigned>(calendar.month())},
                                      {'d', static_cast<unsigned>(calendar.day())},
                                      {'H', secondOfDay / 3600},
                                      {'m', secondOfDay / 60 % 60},
                                      {'s', secondOfDay % 60}};
  std::string text;
  for (const Piece& piece : pieces_) {
    if (piece.field == 0) {
      text += piece.text;
    } else if (piece.field == 'S') {
      text += fraction(microseconds, piece.width);
    } else {
      text += digits(values.at(piece.field), piece.width);
    }
  }
  return text;
}

std::optional<NSDate> FMDateFormat::dateFromString(std::string_view text) const {
  std::map<char, int> values = {{'y', 1970}, {'M', 1}, {'d', 1}, {'H', 0}, {'m', 0}, {'s', 0}};
  double fractionOfSecond = 0;
  for (size_t index = 0; index < pieces_.size(); ++index) {
    const Piece& piece = pieces_[index];
    if (piece.field == 0) {
      if (!text.starts_with(piece.text)) return std::nullopt;
      text.remove_prefix(piece.text.size());
      continue;
    }
    // Of fields that stand side by side only the width tells where one ends.
    const bool isBounded = index + 1 < pieces_.size() && pieces_[index + 1].field != 0;
    const auto digitsOfField =
        text.substr(0, isBounded ? static_cast<size_t>(piece.width) : text.size());
    int value = 0;
    const auto [end, error] =
        std::from_chars(digitsOfField.data(), digitsOfField.data() + digitsOfField.size(), value);
    const auto count = end - text.data();
    if (error != std::errc() || count < piece.width) return std::nullopt;
    if (piece.field == 'S') {
      fractionOfSecond = value / std::pow(10, count);
    } else {
      values[piece.field] = value;
    }
    text.remove_prefix(static_cast<size_t>(count));
  }
  const year_month_day calendar{std::chrono::year(values['y']),
                                std::chrono::month(static_cast<unsigned>(values['M'])),
                                std::chrono::day(static_cast<unsigned>(values['d']))};
  const bool isTime = values['H'] >= 0 && values['H'] < 24 && values['m'] >= 0 &&
                      values['m'] < 60 && values['s'] >= 0 && values['s'] < 60;
  if (!text.empty() || !calendar.ok() || !isTime) return std::nullopt;
  const auto day = static_cast<double>(sys_days(calendar).time_since_epoch().count());
  return NSDate::dateWithTimeIntervalSince1970(day * SecondsPerDay + values['H'] * 3600 +
                                               values['m'] * 60 + values['s'] + fractionOfSecond);
}
