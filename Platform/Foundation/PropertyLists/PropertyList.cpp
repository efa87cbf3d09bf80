#include "Platform/Foundation/PropertyLists/PropertyList.h"

#include <array>
#include <cmath>
#include <limits>

#include "Platform/Foundation/Text/NSString.h"

bool PropertyList::isNumber() const {
  return boolean() != nullptr || integer() != nullptr || real() != nullptr;
}

bool PropertyList::boolValue() const {
  if (const auto* text = string()) {
    const size_t begin = text->find_first_not_of(" +-0");
    if (begin == std::string::npos) return false;
    constexpr std::string_view Truths = "YyTt123456789";
    return Truths.find((*text)[begin]) != std::string_view::npos;
  }
  return doubleValue() != 0;
}

int64_t PropertyList::integerValue() const {
  if (const auto* value = boolean()) return *value ? 1 : 0;
  if (const auto* value = integer()) return *value;
  if (const auto* text = string()) return ::integerValue(*text);
  const double value = doubleValue();
  constexpr auto Maximum = std::numeric_limits<int64_t>::max();
  if (std::isnan(value)) return 0;
  if (value >= static_cast<double>(Maximum)) return Maximum;
  if (value <= static_cast<double>(std::numeric_limits<int64_t>::min())) {
    return std::numeric_limits<int64_t>::min();
  }
  return static_cast<int64_t>(value);
}

double PropertyList::doubleValue() const {
  if (const auto* value = boolean()) return *value ? 1 : 0;
  if (const auto* value = integer()) return static_cast<double>(*value);
  if (const auto* value = real()) return *value;
  if (const auto* text = string()) return ::doubleValue(*text);
  return 0;
}

float PropertyList::floatValue() const {
  if (const auto* text = string()) return ::floatValue(*text);
  const double value = doubleValue();
  constexpr double Maximum = std::numeric_limits<float>::max();
  if (std::isfinite(value) && std::abs(value) > Maximum) {
    return std::copysign(std::numeric_limits<float>::max(), static_cast<float>(value > 0 ? 1 : -1));
  }
  return static_cast<float>(value);
}

std::string_view PropertyList::kindName() const {
  constexpr std::array<std::string_view, 9> Names = {"nothing",  "a truth value", "a number",
                                                     "a number", "a text",        "data",
                                                     "a date",   "a list",        "a dictionary"};
  return Names[value_.index()];
}

std::string base64Text(const PropertyList::Data& data) {
  constexpr std::string_view Alphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (size_t index = 0; index < data.size(); index += 3) {
    const size_t count = std::min<size_t>(3, data.size() - index);
    uint32_t group = 0;
    for (size_t byte = 0; byte < 3; ++byte) {
      group = group << 8 | (byte < count ? data[index + byte] : 0U);
    }
    for (size_t digit = 0; digit < 4; ++digit) {
      text += digit <= count ? Alphabet[group >> (18 - 6 * digit) & 63] : '=';
    }
  }
  return text;
}
